// SPDX-License-Identifier: Apache-2.0
// An installation on a board out of thin air, held against the oracle.
#pragma once

#include "install/fake_board.hpp"

#include <moxboot/moxboot.h>

#include <gtest/gtest.h>

namespace test
{

class OracleTest : public testing::Test
{
  protected:
    OracleTest()
    {
        fake.package = "/tmp/package.cc";
        installed() = &fake;
    }
    ~OracleTest() override
    {
        be(nullptr);
    }

    const std::string root = "/opt/moxv8/install";
    const Oracle oracle{root};
    FakeBoard fake;

    static std::unordered_set<std::string> as_set(const std::vector<std::string> &files)
    {
        return {files.begin(), files.end()};
    }
    void expect_files()
    {
        fake.extracted.clear();
        fake.preloaded.clear();
        be(&fake);
        const std::int32_t noted = MOX_InstallPkgNotify(1, fake.package.c_str(), root.c_str());
        const std::uint32_t updated = DrvBootUpdateStartupFile(update, nullptr);
        be(nullptr);
        ASSERT_EQ(noted, 0);
        ASSERT_EQ(updated, 0u);
        ASSERT_EQ(fake.extracted, extraction(fake.machine));
        ASSERT_EQ(fake.preloaded, preload(fake.machine));
    }
    // Links where there were none before.
    void expect_links(const std::unordered_set<std::string> &files)
    {
        fake.files = files;
        fake.links.clear();
        be(&fake);
        const std::int32_t result = MOX_AfterInstallRunFile(root.c_str());
        be(nullptr);
        ASSERT_EQ(result, fake.machine.logic_id ? 0 : static_cast<std::int32_t>(logic_id_code));
        ASSERT_EQ(fake.links, oracle.links(fake.machine, [&](const std::string &source) {
            return files.count(source) != 0;
        }));
    }

  private:
    // For the updater, a plain function.
    static FakeBoard *&installed()
    {
        static FakeBoard *board;
        return board;
    }
    static std::uint32_t update(std::uint32_t type, const char *path)
    {
        installed()->preloaded.emplace_back(type, path);
        return 0;
    }
};

} // namespace test
