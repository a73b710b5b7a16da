// SPDX-License-Identifier: Apache-2.0
// The CPU time base and what is reckoned from it.
#include "support/board_test.hpp"

namespace test
{
namespace
{

constexpr std::uint64_t far_ticks = 0x123456789abcdef0;

class TimeBaseTest : public BoardTest
{
  protected:
    std::uint32_t seconds = 77, milliseconds = 88;
    void expect_run_time(std::uint64_t ticks, std::uint32_t frequency, std::uint32_t s, std::uint32_t ms)
    {
        set_timer(Timer{ticks, frequency, 0});
        EXPECT_EQ(MOX_GetCPURunTime(&seconds, &milliseconds), 0u);
        EXPECT_EQ(seconds, s) << ticks << " at " << frequency;
        EXPECT_EQ(milliseconds, ms) << ticks << " at " << frequency;
    }
};

TEST_F(TimeBaseTest, TheHalvesAreJoined)
{
    set_timer(Timer{far_ticks, 1, 0});
    EXPECT_EQ(drvboot_get_tb(), far_ticks);
}

TEST_F(TimeBaseTest, ATimerThatLeavesItsOutputsAloneReadsZero)
{
    set_timer(Timer{std::nullopt, 1000, 1});
    EXPECT_EQ(drvboot_get_tb(), 0u);
    EXPECT_EQ(GetBoardStartTime(), 0u);
}

TEST_F(TimeBaseTest, TheTickGettersPassThrough)
{
    for (auto getter : {drvboot_timer_get_base_64bit, MOX_GetCpuCurrentTick}) {
        std::uint32_t low = 1, high = 2;
        set_timer(Timer{far_ticks, 1, 0x55});
        EXPECT_EQ(getter(&low, &high), 0x55u);
        EXPECT_EQ(low, 0x9abcdef0u);
        EXPECT_EQ(high, 0x12345678u);
        set_timer(Timer{std::nullopt, 1, 7});
        low = 1;
        high = 2;
        EXPECT_EQ(getter(&low, &high), 7u);
        EXPECT_EQ(low, 1u);
        EXPECT_EQ(high, 2u);
    }
}

TEST_F(TimeBaseTest, BothTimeBasesAreTheFrequency)
{
    set_timer(Timer{far_ticks, 0xfffffffb, 0});
    EXPECT_EQ(drvboot_GetCpuTimeBaseFreq(), 0xfffffffbu);
    EXPECT_EQ(MOX_GetCpuTimeBase(), 0xfffffffbu);
}

TEST_F(TimeBaseTest, TheTimeBaseFrequencyIsAHundredth)
{
    const std::pair<std::uint32_t, std::uint32_t> values[] = {
        {0, 0}, {99, 0}, {100, 1}, {199, 1}, {25000000, 250000}, {0xffffffff, 42949672}};
    for (auto [frequency, hundredth] : values) {
        set_timer(Timer{0, frequency, 0});
        EXPECT_EQ(MOX_GetCpuTimeBaseFreq(), hundredth);
    }
}

TEST_F(TimeBaseTest, TheRegistersReadZero)
{
    set_timer(Timer{far_ticks, 1000, 0});
    EXPECT_EQ(drvboot_get_mftbl(), 0u);
    EXPECT_EQ(drvboot_get_mftbu(), 0u);
}

TEST_F(TimeBaseTest, TheStartTimeIsInWholeSeconds)
{
    set_timer(Timer{2999, 1000, 0});
    EXPECT_EQ(GetBoardStartTime(), 2u);
    set_timer(Timer{999, 1000, 0});
    EXPECT_EQ(GetBoardStartTime(), 0u);
    set_timer(Timer{far_ticks, 1, 0});
    EXPECT_EQ(GetBoardStartTime(), far_ticks);
}

TEST_F(TimeBaseTest, WithoutAFrequencyTheStartTimeIsZero)
{
    set_timer(Timer{far_ticks, 0, 0});
    EXPECT_EQ(during([] { EXPECT_EQ(GetBoardStartTime(), 0u); }), nothing());
}

TEST_F(TimeBaseTest, TheBoardRunTimeIsTheStartTime)
{
    std::uint64_t run_time = 5;
    set_timer(Timer{0x500000000ull * 3, 3, 0});
    EXPECT_EQ(during([&] { EXPECT_EQ(MOX_GetBoardRunTime(&run_time), 0); }), nothing());
    EXPECT_EQ(run_time, 0x500000000u);
    set_timer(Timer{far_ticks, 0, 0});
    EXPECT_EQ(MOX_GetBoardRunTime(&run_time), 0);
    EXPECT_EQ(run_time, 0u);
}

TEST_F(TimeBaseTest, ABoardRunTimeWithoutAnOutputIsRefused)
{
    EXPECT_EQ(during([] { EXPECT_EQ(MOX_GetBoardRunTime(nullptr), -1); }),
              failure("Drvboot get board run time not success for input arg is null\n"));
}

TEST_F(TimeBaseTest, TheCpuRunTimeIsSplit)
{
    expect_run_time(2500, 1000, 2, 500);
    expect_run_time(62500000, 25000000, 2, 500);
    expect_run_time(0, 1000, 0, 0);
    expect_run_time(2, 3, 0, 666);
    expect_run_time(24999999, 25000000, 0, 999);
    expect_run_time(0x500000000, 0x10000000, 0x50, 0);
}

// The remainder times 1000 does not fit 32 bits.
TEST_F(TimeBaseTest, MillisecondsAreReckonedIn64Bits)
{
    expect_run_time(0xfffffffe, 0xffffffff, 0, 999);
    expect_run_time(0xffffffffull * 7 + 0x80000000, 0xffffffff, 7, 500);
}

TEST_F(TimeBaseTest, ACpuRunTimeNeedsAFrequencyAndBothOutputs)
{
    set_timer(Timer{2500, 1000, 0});
    EXPECT_EQ(during([&] {
                  EXPECT_EQ(MOX_GetCPURunTime(nullptr, &milliseconds), minus_one);
                  EXPECT_EQ(MOX_GetCPURunTime(&seconds, nullptr), minus_one);
                  EXPECT_EQ(MOX_GetCPURunTime(nullptr, nullptr), minus_one);
                  set_timer(Timer{2500, 0, 0});
                  EXPECT_EQ(MOX_GetCPURunTime(&seconds, &milliseconds), minus_one);
              }),
              nothing());
    EXPECT_EQ(seconds, 77u);
    EXPECT_EQ(milliseconds, 88u);
}

TEST_F(TimeBaseTest, ThePlatformsTimerRunsOn)
{
    ASSERT_GT(drvboot_GetCpuTimeBaseFreq(), 0u);
    std::uint64_t first = drvboot_get_tb();
    std::uint64_t second = drvboot_get_tb();
    EXPECT_GT(first, 0u);
    EXPECT_LE(first, second);
}

TEST_F(TimeBaseTest, NoBoardIsAsked)
{
    std::uint64_t run_time = 0;
    MOX_GetBoardRunTime(&run_time);
    MOX_GetCPURunTime(&seconds, &milliseconds);
    EXPECT_TRUE(operations().empty());
    EXPECT_TRUE(calls("open").empty());
}

} // namespace
} // namespace test
