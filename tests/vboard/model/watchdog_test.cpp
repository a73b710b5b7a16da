// SPDX-License-Identifier: Apache-2.0
#include "vboard/model/board.hpp"
#include "vboard/model/journal.hpp"
#include "vboard/model/requests.hpp"

#include <gmock/gmock.h>

#include <cerrno>

using namespace vboard_test;
using vboard::Board;
using vboard::Event;
using vboard::Fault;
using vboard::Reset;

namespace
{

constexpr const char *wdt = "/proc/wdt";
constexpr std::uint32_t enable_item = 0x10002808;
constexpr std::uint32_t clear_item = 0x1000280a;

vboard::Profile watched_profile()
{
    auto profile = small_profile();
    profile.items[board0][enable_item] = 0;
    profile.items[board0][clear_item] = 0;
    profile.watchdog_threshold = 3;
    return profile;
}

// 0 or the errno.
int command(Board &board, std::uint32_t code, std::uint32_t value)
{
    const auto done = board.write(wdt, words({code, value}), 1);
    EXPECT_EQ(done.result, done.error == 0 ? 8 : -1);
    return done.error;
}

// Periods until it bites, at most `most`.
unsigned periods(Board &board, unsigned most = 100)
{
    for (unsigned i = 1; i <= most; ++i)
        if (board.watchdog_tick())
            return i;
    return 0;
}

class Watchdog : public testing::Test
{
  protected:
    Board board{watched_profile()};

    void enable()
    {
        board.ioctl(set(board0, enable_item, 1));
    }
};

TEST_F(Watchdog, IsOffAtFirstAndFedByTheKernel)
{
    const vboard::Watchdog state = board.watchdog();
    EXPECT_FALSE(state.enabled);
    EXPECT_TRUE(state.kernel_feeder);
    EXPECT_EQ(state.threshold, 3u);
    EXPECT_EQ(state.counter, 0u);
    EXPECT_EQ(periods(board), 0u);
}

TEST_F(Watchdog, FedByTheKernelNeverBites)
{
    enable();
    EXPECT_TRUE(board.watchdog().enabled);
    EXPECT_EQ(periods(board), 0u);
}

TEST_F(Watchdog, UnfedBitesAtTheThreshold)
{
    enable();
    EXPECT_EQ(command(board, 8, 0), 0);
    EXPECT_EQ(periods(board), 3u);
    EXPECT_TRUE(board.watchdog_tick()) << "and goes on biting until somebody resets the board";
}

TEST_F(Watchdog, ClearedStartsCountingAgain)
{
    enable();
    command(board, 8, 0);
    for (int i = 0; i < 20; ++i) {
        EXPECT_FALSE(board.watchdog_tick());
        EXPECT_FALSE(board.watchdog_tick());
        EXPECT_EQ(board.watchdog().counter, 2u);
        EXPECT_EQ(command(board, 9, 0), 0);
        EXPECT_EQ(board.watchdog().counter, 0u);
    }
    EXPECT_EQ(periods(board), 3u);
}

TEST_F(Watchdog, DisabledNeitherCountsNorBites)
{
    command(board, 8, 0);
    EXPECT_EQ(periods(board), 0u);
    EXPECT_EQ(board.watchdog().counter, 0u);
    enable();
    board.watchdog_tick();
    board.ioctl(set(board0, enable_item, 0));
    EXPECT_FALSE(board.watchdog().enabled);
    EXPECT_EQ(periods(board), 0u);
    enable();
    EXPECT_EQ(periods(board), 3u) << "it counts from the start when it is switched on";
}

TEST_F(Watchdog, SwitchingItOnWhileItIsOnIsNoFeeding)
{
    enable();
    command(board, 8, 0);
    board.watchdog_tick();
    board.watchdog_tick();
    enable();
    EXPECT_TRUE(board.watchdog_tick());
}

TEST_F(Watchdog, ClearThroughTheDriverTakesTheFeedingOverFromTheKernel)
{
    enable();
    board.ioctl(set(board0, clear_item, 0));
    EXPECT_FALSE(board.watchdog().kernel_feeder);
    board.watchdog_tick();
    board.watchdog_tick();
    board.ioctl(set(board0, clear_item, 0));
    EXPECT_EQ(periods(board), 3u);
}

TEST_F(Watchdog, ARefusedRequestDoesNothing)
{
    Fault fault;
    fault.code = 1;
    fault.times = 2;
    board.add_fault(fault);
    enable();
    EXPECT_FALSE(board.watchdog().enabled);
    board.ioctl(set(board0, clear_item, 0));
    EXPECT_TRUE(board.watchdog().kernel_feeder);
    board.remove_item(board0, enable_item);
    enable();
    EXPECT_FALSE(board.watchdog().enabled);
}

TEST_F(Watchdog, ItemsOfOtherDevicesAreNotItsOwn)
{
    board.set_item("/dev/chassis0", enable_item, 1);
    board.set_item("/dev/chassis0", clear_item, 0);
    EXPECT_FALSE(board.watchdog().enabled);
    EXPECT_TRUE(board.watchdog().kernel_feeder);
}

TEST_F(Watchdog, IsSwitchedFromOutsideToo)
{
    board.set_item(board0, enable_item, 1);
    EXPECT_TRUE(board.watchdog().enabled);
    EXPECT_EQ(word(board.ioctl(get(board0, enable_item)).out, 28), 1u);
}

TEST_F(Watchdog, KernelFeederCanBeStoppedOnce)
{
    EXPECT_EQ(command(board, 8, 0), 0);
    EXPECT_FALSE(board.watchdog().kernel_feeder);
    EXPECT_EQ(command(board, 8, 0), EINVAL);
}

TEST_F(Watchdog, ThresholdIsAtLeastOne)
{
    EXPECT_EQ(command(board, 4, 0), EINVAL);
    EXPECT_EQ(board.watchdog().threshold, 3u);
    EXPECT_EQ(command(board, 4, 1), 0);
    enable();
    command(board, 8, 0);
    EXPECT_EQ(periods(board), 1u);
}

TEST_F(Watchdog, EveryResetBringsItBackToItsStart)
{
    for (const Reset kind : {Reset::soft, Reset::cold, Reset::watchdog, Reset::power_cut}) {
        enable();
        command(board, 8, 0);
        command(board, 4, 50);
        board.watchdog_tick();
        board.reset(kind);
        const vboard::Watchdog state = board.watchdog();
        EXPECT_FALSE(state.enabled);
        EXPECT_TRUE(state.kernel_feeder);
        EXPECT_EQ(state.threshold, 3u);
        EXPECT_EQ(state.counter, 0u);
        EXPECT_EQ(word(board.ioctl(get(board0, enable_item)).out, 28), 0u);
    }
}

TEST_F(Watchdog, StartsAsTheProfileSays)
{
    auto profile = watched_profile();
    profile.items[board0][enable_item] = 1;
    Board enabled(profile);
    EXPECT_TRUE(enabled.watchdog().enabled);
    enabled.set_item(board0, enable_item, 0);
    enabled.reset(Reset::cold);
    EXPECT_TRUE(enabled.watchdog().enabled);
}

TEST_F(Watchdog, OtherSizesAndCommandsAreRefused)
{
    for (const std::uint32_t code : {0u, 1u, 2u, 3u, 5u, 6u, 7u, 10u, 0xffffffffu})
        EXPECT_EQ(command(board, code, 1), EINVAL) << code;
    for (const std::size_t size : {0u, 1u, 4u, 7u, 9u, 16u}) {
        Bytes data = words({9, 0, 9, 0});
        data.resize(size);
        const auto done = board.write(wdt, data, 1);
        EXPECT_EQ(done.result, -1) << size;
        EXPECT_EQ(done.error, EINVAL) << size;
        EXPECT_EQ(board.journal().back().what, "unknown");
    }
}

TEST_F(Watchdog, ServiceCannotBeReadAndKnowsNoRequests)
{
    EXPECT_EQ(board.open(wdt, 1, 1), 0);
    EXPECT_EQ(board.read(wdt, 8, 1).error, EINVAL);
    EXPECT_EQ(board.ioctl(get(wdt, enable_item)).error, ENOTTY);
    board.close(wdt, 1);
    EXPECT_EQ(board.open_files(), 0u);
    EXPECT_EQ(board.console(), "");
}

TEST_F(Watchdog, PlannedFaultsKeepACommandFromBeingCarriedOut)
{
    Fault fault;
    fault.op = vboard::Op::write;
    fault.device = wdt;
    fault.error = EIO;
    board.add_fault(fault);
    EXPECT_EQ(command(board, 4, 7), EIO);
    fault.error = 0;
    fault.cut = 4;
    board.add_fault(fault);
    const auto done = board.write(wdt, words({4, 7}), 1);
    EXPECT_EQ(done.result, 4);
    EXPECT_EQ(board.watchdog().threshold, 3u);
    EXPECT_EQ(board.journal()[0].what, "wdt set threshold");
    EXPECT_TRUE(board.journal()[0].faulted);
    EXPECT_EQ(board.journal()[1].result, 4);
}

TEST_F(Watchdog, CommandsReadAsWordsInTheJournal)
{
    command(board, 9, 0);
    command(board, 8, 0);
    command(board, 8, 0);
    command(board, 4, 1);
    command(board, 5, 1);
    board.write(wdt, {1, 2, 3}, 1);
    enable();
    std::vector<std::string> lines;
    for (const Event &event : board.journal()) {
        lines.push_back(readable(event));
        const Event back = vboard::event_from_json(nlohmann::json::parse(to_json(event).dump()));
        EXPECT_EQ(readable(back), readable(event));
        EXPECT_EQ(back.sent, event.sent);
    }
    EXPECT_THAT(lines, testing::ElementsAre("#1 wdt clear /proc/wdt",                           //
                                            "#2 wdt stop kernel feeder /proc/wdt",              //
                                            "#3 wdt stop kernel feeder /proc/wdt -> EINVAL",    //
                                            "#4 wdt set threshold /proc/wdt = 1",               //
                                            "#5 write /proc/wdt unknown command = 1 -> EINVAL", //
                                            "#6 write /proc/wdt unknown command -> EINVAL",     //
                                            "#7 set /dev/board0 0x10002808 watchdog enable = 1"));
    EXPECT_EQ(board.journal()[0].sent, 0u);
    EXPECT_EQ(board.journal()[3].sent, 1u);
}

} // namespace
