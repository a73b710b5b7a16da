// SPDX-License-Identifier: Apache-2.0
// A list in a file, and its delivery.
#pragma once

#include "trust/crl_fixture.hpp"

#include <unistd.h>

namespace test
{

constexpr const char *list_path = "/tmp/new.crl";
constexpr const char *link_path = "/tmp/link.crl";

class CrlDeliverTest : public CrlTest
{
  protected:
    void SetUp() override
    {
        CrlTest::SetUp();
        unlink(list_path);
        unlink(link_path);
    }
    void expect(const char *path, std::uint32_t result, const std::vector<std::string> &lines)
    {
        forget_calls();
        EXPECT_EQ(during([&] { EXPECT_EQ(MOX_WirteCrl(path), result); }), crl_log(lines));
    }
    // The list got nowhere.
    void expect_refused(const char *path, const std::vector<std::string> &lines)
    {
        expect(path, minus_one, lines);
        EXPECT_TRUE(calls("open").empty());
        EXPECT_TRUE(calls("dlopen").empty());
        EXPECT_TRUE(crl_driver.lists.empty());
    }
};

} // namespace test
