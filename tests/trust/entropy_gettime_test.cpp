// SPDX-License-Identifier: Apache-2.0
// Reading the clock: until it has moved, three times at most, whatever it says.
#include "trust/entropy_fixture.hpp"

namespace test
{
namespace
{

class EntropyClockTest : public EntropyTest
{
  protected:
    // These readings, and then the last of them for ever.
    void play(std::uint32_t last, std::vector<Reading> readings)
    {
        start(last, [=](std::size_t index) { return readings.at(std::min(index, readings.size() - 1)); });
    }
    void expect(std::uint32_t value, std::size_t readings, const Said &said)
    {
        entropy_watch.readings = 0;
        EXPECT_EQ(heard([&] { EXPECT_EQ(entropy_gettime(), value); }), said);
        EXPECT_EQ(entropy_watch.readings, readings);
    }
};

TEST_F(EntropyClockTest, TheFirstReadingOfAProcessIsHeldAgainstZero)
{
    if (clock_was_read)
        GTEST_SKIP() << "needs a process of its own";
    replay([](std::size_t) { return Reading{0, 0, 7}; });
    expect(0, 3, stalled(0, 7, 0, 0) + stalled(0, 7, 0, 0) + stalled(0, 7, 0, 0));
    replay([](std::size_t) { return Reading{1}; });
    expect(1, 1, nothing());
}

TEST_F(EntropyClockTest, AClockThatHasMovedIsReadOnce)
{
    play(5, {{6}});
    expect(6, 1, nothing());
    play(6, {{5}}); // backwards is moved, too
    expect(5, 1, nothing());
    play(5, {{0}});
    expect(0, 1, nothing());
    play(0, {{999999999}});
    expect(999999999, 1, nothing());
}

TEST_F(EntropyClockTest, OnlyNanosecondsCount)
{
    play(250, {{250}, {251}}); // a second later perhaps; it is a repetition
    expect(251, 2, stalled(0, 0, 250, 250));
}

TEST_F(EntropyClockTest, AClockThatStandsIsReadAgain)
{
    play(1000, {{1000, 0, 4}, {1001}});
    expect(1001, 2, stalled(0, 4, 1000, 1000));
    play(1000, {{1000, 0, 4}, {1000, 0, 11}, {1001}});
    expect(1001, 3, stalled(0, 4, 1000, 1000) + stalled(0, 11, 1000, 1000));
}

TEST_F(EntropyClockTest, AfterThreeReadingsAStandingClockIsTaken)
{
    play(1000, {{1000, 0, 1}, {1000, 0, 2}, {1000, 0, 3}, {1001}});
    expect(1000, 3, stalled(0, 1, 1000, 1000) + stalled(0, 2, 1000, 1000) + stalled(0, 3, 1000, 1000));
    play(1000, {{1001}});
    expect(1001, 1, nothing());
}

TEST_F(EntropyClockTest, AFailedReadingIsToldWithItsResultItsErrorAndWhatItLeft)
{
    play(70, {{71, -1, EINVAL}, {72, 5, EFAULT}, {73}});
    expect(73, 3, stalled(0xffffffff, EINVAL, 70, 71) + stalled(5, EFAULT, 70, 72));
}

TEST_F(EntropyClockTest, WhatAFailedReadingLeftIsNoRepetition)
{
    play(70, {{99, -1, EINVAL}, {99}}); // the last reading is still 70
    expect(99, 2, stalled(0xffffffff, EINVAL, 70, 99));
}

TEST_F(EntropyClockTest, AfterThreeFailuresTheValueAtHandIsTakenAndRemembered)
{
    play(70, {{111, -1, EINVAL}, {222, -1, EPERM}, {333, -1, EFAULT}});
    expect(333, 3,
           stalled(0xffffffff, EINVAL, 70, 111) + stalled(0xffffffff, EPERM, 70, 222) +
               stalled(0xffffffff, EFAULT, 70, 333));
    replay([](std::size_t index) { return index == 0 ? Reading{333, 0, 9} : Reading{334}; });
    expect(334, 2, stalled(0, 9, 333, 333));
}

TEST_F(EntropyClockTest, AFailureThatLeavesTheFieldAloneKeepsTheAttemptBefore)
{
    play(70, {{70, 0, 1}, {0, -1, EINVAL, false}, {0, -1, EINVAL, false}});
    expect(70, 3,
           stalled(0, 1, 70, 70) + stalled(0xffffffff, EINVAL, 70, 70) + stalled(0xffffffff, EINVAL, 70, 70));
    play(70, {{0, -1, EINVAL, false}}); // nothing at hand
    expect(0, 3,
           stalled(0xffffffff, EINVAL, 70, 0) + stalled(0xffffffff, EINVAL, 70, 0) +
               stalled(0xffffffff, EINVAL, 70, 0));
}

TEST_F(EntropyClockTest, TheLastReadingIsKeptOverCalls)
{
    play(1, {{2}, {2, 0, 5}, {3}, {3, 0, 6}, {3, 0, 6}, {2}});
    expect(2, 1, nothing());
    entropy_watch.clock = [](std::size_t index) { return index == 0 ? Reading{2, 0, 5} : Reading{3}; };
    expect(3, 2, stalled(0, 5, 2, 2));
    entropy_watch.clock = [](std::size_t) { return Reading{2}; };
    expect(2, 1, nothing());
}

TEST_F(EntropyClockTest, NumbersBeyondASecondAreTakenAsTheyAre)
{
    play(1, {{0x80000000, -1, 1}, {0xffffffff}});
    expect(0xffffffff, 2, stalled(0xffffffff, 1, 1, static_cast<int>(0x80000000)));
}

TEST_F(EntropyClockTest, AnyMixOfReadingsIsAsTheModelSays)
{
    const auto mixed = [](std::size_t index) {
        const auto i = static_cast<std::uint32_t>(index);
        return Reading{i * i / 3 % 5, i % 7 == 3 ? -1 : 0, static_cast<int>(i % 4), i % 11 != 5};
    };
    start(4, mixed);
    EntropyModel model(mixed, 4);
    const Said said = heard([&] {
        for (int i = 0; i < 60; ++i)
            EXPECT_EQ(entropy_gettime(), model.reading()) << i;
    });
    EXPECT_EQ(said, logged(model.lines));
    EXPECT_EQ(entropy_watch.readings, model.readings);
    EXPECT_GT(model.lines.size(), 20u);
}

TEST_F(EntropyClockTest, TheMachinesClockMoves)
{
    replay(nullptr);
    std::uint32_t moved = 0;
    heard([&] {
        std::uint32_t before = entropy_gettime();
        for (int i = 0; i < 100; ++i) {
            const std::uint32_t now = entropy_gettime();
            EXPECT_LT(now, 1000000000u);
            moved += now != before ? 1 : 0;
            before = now;
        }
    });
    EXPECT_GT(moved, 50u);
}

} // namespace
} // namespace test
