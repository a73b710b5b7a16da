// SPDX-License-Identifier: Apache-2.0
// A board with an MCU, and board-support libraries of the test's choice.
#pragma once

#include "support/board_test.hpp"
#include "support/direct_log.hpp"
#include "trust/library_use.hpp"
#include "trust/mcu_library.hpp"

namespace test
{

constexpr std::uint32_t item_mcu_status = 0x7f000001;
constexpr std::uint32_t item_mcu_die_id = 0x7f000002;

class McuTest : public BoardTest
{
  protected:
    void TearDown() override
    {
        remove_from_front();
        EXPECT_FALSE(loaded(basic)) << "the library is still open";
        EXPECT_FALSE(loaded(secure)) << "the library is still open";
        BoardTest::TearDown();
    }
    Said heard(const std::function<void()> &action)
    {
        forget_calls();
        return with_direct_lines(during(action));
    }
    // One library was opened, by this name and in the way that keeps its own symbols first; it was closed
    // again if it could be opened, before it was told what it had answered if it was asked.
    static void expect_opened(const std::string &name, bool closed = true, bool asked = true)
    {
        expect_one_use(name, 10, closed, asked);
    }
};

} // namespace test
