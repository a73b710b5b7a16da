// SPDX-License-Identifier: Apache-2.0
// The source on a clock of the test's own.
#pragma once

#include "support/board_test.hpp"
#include "support/direct_log.hpp"
#include "trust/entropy_model.hpp"

namespace test
{

class EntropyTest : public BoardTest
{
  protected:
    void TearDown() override
    {
        EXPECT_EQ(entropy_watch.other_clocks, 0u);
        EXPECT_TRUE(operations().empty()) << "the board was asked";
        replay(nullptr);
        BoardTest::TearDown();
    }
    // Leaves the library with this last reading, then sets the clock.
    void start(std::uint32_t last, const Clock &clock)
    {
        replay([=](std::size_t) { return Reading{last}; });
        heard([] { entropy_gettime(); });
        replay(clock);
        forget_calls();
    }
    Said heard(const std::function<void()> &action)
    {
        return with_direct_lines(during(action));
    }
    static Said logged(const std::vector<std::string> &lines)
    {
        Said said;
        for (const std::string &line : lines)
            said = said + logged_directly(line);
        return said;
    }
    static Said stalled(unsigned result, int error, int last, int now)
    {
        return logged_directly(
            text("get clock time unsuccessfully. ret(0x%x) error(%d) last_time(%d) now_time(%d)\r\n", result,
                 error, last, now));
    }
};

} // namespace test
