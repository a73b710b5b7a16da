// SPDX-License-Identifier: Apache-2.0
// Wall clock and uptime by a clock that the test sets: near the epoch, today, and beyond 2038.
#include "board/own_clock.hpp"

#include <moxboot/time.h>

#include <cstdlib>
#include <gtest/gtest.h>

namespace test
{
namespace
{

constexpr std::int64_t year_2040 = 2208988800; // 2040-01-01 00:00:00 UTC

class OwnClockTest : public testing::Test
{
  protected:
    void SetUp() override
    {
        setenv("TZ", "UTC0", 1);
    }
    void TearDown() override
    {
        own_clock = {};
    }
    static void at(std::int64_t now, std::uint32_t uptime)
    {
        own_clock = {now, uptime};
    }
    static void expect_time(std::int64_t now, unsigned year, unsigned month, unsigned day, unsigned hour,
                            unsigned minute, unsigned second)
    {
        DrvbootLocalTime local = {};
        own_clock.now = now;
        EXPECT_EQ(Drvboot_GetTime(&local), 0);
        EXPECT_EQ(local.year, year);
        EXPECT_EQ(local.month, month);
        EXPECT_EQ(local.day, day);
        EXPECT_EQ(local.hour, hour);
        EXPECT_EQ(local.minute, minute);
        EXPECT_EQ(local.second, second);
    }
};

TEST_F(OwnClockTest, UptimeIsTheKernels)
{
    at(1000000, 4711);
    EXPECT_EQ(get_uptime(), 4711u);
    at(1000000, 0);
    EXPECT_EQ(get_uptime(), 0u);
}

TEST_F(OwnClockTest, StartTimeIsNowLessTheUptime)
{
    at(1700000000, 300);
    EXPECT_EQ(get_starttime(), 1699999700);
}

TEST_F(OwnClockTest, RightAfterBootTheStartTimeOfAnUnsetClockIsTheClockItself)
{
    at(42, 40);
    EXPECT_EQ(get_starttime(), 42);
    at(42, 42);
    EXPECT_EQ(get_starttime(), 42);
    at(42, 32); // 10: still too near
    EXPECT_EQ(get_starttime(), 42);
    at(42, 31); // 11: a start time
    EXPECT_EQ(get_starttime(), 11);
}

TEST_F(OwnClockTest, AClockThatIsBehindTheUptimeGivesTheClockItself)
{
    at(100, 5000);
    EXPECT_EQ(get_starttime(), 100);
    at(0, 5000);
    EXPECT_EQ(get_starttime(), 0);
}

TEST_F(OwnClockTest, StartTimeBeyond2038IsCutAtTheInterfaceOnly)
{
    at(year_2040, 300);
    EXPECT_EQ(static_cast<std::uint32_t>(get_starttime()), static_cast<std::uint32_t>(year_2040 - 300));
    at(0x80000005, 10); // the clock lies beyond 31 bits, the start before
    EXPECT_EQ(get_starttime(), 0x7ffffffb);
}

TEST_F(OwnClockTest, LocalTimeIsSplit)
{
    expect_time(0, 1970, 1, 1, 0, 0, 0);
    expect_time(951782399, 2000, 2, 28, 23, 59, 59);
    expect_time(951782400, 2000, 2, 29, 0, 0, 0);
    expect_time(1767225599, 2025, 12, 31, 23, 59, 59);
}

TEST_F(OwnClockTest, LocalTimeGoesOnBeyond2038)
{
    expect_time(0x7fffffff, 2038, 1, 19, 3, 14, 7);
    expect_time(0x80000000, 2038, 1, 19, 3, 14, 8);
    expect_time(year_2040, 2040, 1, 1, 0, 0, 0);
    expect_time(0x100000000, 2106, 2, 7, 6, 28, 16);
}

TEST_F(OwnClockTest, LocalTimeIsLocal)
{
    setenv("TZ", "EAST-5:30", 1);
    tzset();
    expect_time(1767225599, 2026, 1, 1, 5, 29, 59);
}

} // namespace
} // namespace test
