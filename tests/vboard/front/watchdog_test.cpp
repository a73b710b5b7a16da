// SPDX-License-Identifier: Apache-2.0
// The watchdog of a running board, fed by programs through "/proc/wdt", or not.
#include "reset_board.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>

using namespace front;
using namespace reset_board;
using testing::HasSubstr;
using testing::Not;

namespace
{

// Two periods of 100 ms without a feed take the board down.
class RunningWatchdog : public testing::Test
{
  protected:
    RunningWatchdog()
    {
        std::ofstream(profile()) << "name = \"mine\"\nwatchdog-period-ms = 100\nwatchdog-threshold = 2\n";
    }
    std::string profile() const
    {
        return state.path() / "mine.toml";
    }
    Directory state;
};

constexpr const char *enable = "0x10002808";
// Commands of "/proc/wdt": two words, 9 clears the counter, 8 stops the kernel's feeder.
constexpr const char *clear = "printf '\\011\\0\\0\\0\\0\\0\\0\\0' > /proc/wdt;";
constexpr const char *stop_feeder = "printf '\\010\\0\\0\\0\\0\\0\\0\\0' > /proc/wdt;";

} // namespace

TEST_F(RunningWatchdog, ResetsTheBoardWhenNobodyFeedsIt)
{
    const Up board(state.path() / "board", {"--board", profile()});
    out(board.call_vboard({"set", "/dev/board0", enable, "1"}));
    EXPECT_EQ(board.exec({"sh", "-c", std::string(stop_feeder) + "sleep 300"}).status, 137);
    EXPECT_EQ(resets(board), "1 watchdog reset");
    EXPECT_THAT(out(board.call_vboard({"log"})), HasSubstr("watchdog reset"));
    EXPECT_EQ(out(board.call_vboard({"get", "/dev/board0", enable})), "0x0\n")
        << "a new start, a new watchdog";
}

TEST_F(RunningWatchdog, DoesNothingWhileItIsFed)
{
    const Up board(state.path() / "board", {"--board", profile()});
    out(board.call_vboard({"set", "/dev/board0", enable, "1"}));
    EXPECT_EQ(sh(board, std::string(stop_feeder) + "for i in 1 2 3 4 5 6 7 8 9 10 11 12; do " + clear +
                            " sleep 0.04; done; echo alive"),
              "alive\n");
}

TEST_F(RunningWatchdog, DoesNothingWhileTheKernelFeedsIt)
{
    const Up board(state.path() / "board", {"--board", profile()});
    out(board.call_vboard({"set", "/dev/board0", enable, "1"}));
    EXPECT_EQ(sh(board, "sleep 0.5; echo alive"), "alive\n");
}

TEST_F(RunningWatchdog, DoesNothingWhileItIsOff)
{
    const Up board(state.path() / "board", {"--board", profile()});
    EXPECT_EQ(sh(board, std::string(stop_feeder) + "sleep 0.5; echo alive"), "alive\n");
}

TEST_F(RunningWatchdog, EndsTheCommandThatTheBoardWasMadeFor)
{
    std::ofstream(profile(), std::ios::app) << "[items.\"/dev/board0\"]\n0x10002808 = 1\n";
    const Outcome outcome =
        call_vboard({"run", "--board", profile(), "--", "sh", "-c", std::string(stop_feeder) + "sleep 300"});
    EXPECT_EQ(outcome.status, 137);
    EXPECT_EQ(outcome.err, "vboard: the board was reset (watchdog reset)\n");
}
