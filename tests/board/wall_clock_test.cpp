// SPDX-License-Identifier: Apache-2.0
// Wall clock and uptime on the machine's own clock, and what happens when it fails.
#include "support/board_test.hpp"

#include <cstring>
#include <ctime>
#include <sys/sysinfo.h>

namespace test
{
namespace
{

class WallClockTest : public BoardTest
{
  protected:
    DrvbootLocalTime local;
    void SetUp() override
    {
        BoardTest::SetUp();
        std::memset(&local, 0xa5, sizeof local);
    }
    bool untouched() const
    {
        DrvbootLocalTime before;
        std::memset(&before, 0xa5, sizeof before);
        return std::memcmp(&before, &local, sizeof local) == 0;
    }
};

TEST_F(WallClockTest, UptimeIsTheMachines)
{
    struct sysinfo before = {}, after = {};
    ASSERT_EQ(sysinfo(&before), 0);
    std::uint32_t uptime = get_uptime();
    ASSERT_EQ(sysinfo(&after), 0);
    EXPECT_GE(uptime, static_cast<std::uint32_t>(before.uptime));
    EXPECT_LE(uptime, static_cast<std::uint32_t>(after.uptime));
}

TEST_F(WallClockTest, LocalTimeIsTheMachines)
{
    std::time_t before = std::time(nullptr);
    EXPECT_EQ(during([&] { EXPECT_EQ(Drvboot_GetTime(&local), 0); }), nothing());
    std::time_t after = std::time(nullptr);
    std::tm split = {};
    split.tm_year = local.year - 1900;
    split.tm_mon = local.month - 1;
    split.tm_mday = local.day;
    split.tm_hour = local.hour;
    split.tm_min = local.minute;
    split.tm_sec = local.second;
    split.tm_isdst = -1;
    std::time_t told = std::mktime(&split);
    EXPECT_GE(told, before);
    EXPECT_LE(told, after);
}

TEST_F(WallClockTest, ALocalTimeThatCannotBeSplitIsReportedAsInformation)
{
    fail_libc("localtime_r", EOVERFLOW);
    EXPECT_EQ(during([&] { EXPECT_NE(Drvboot_GetTime(&local), 0); }),
              information("Drv boot not success to get sys time.\n"));
    EXPECT_TRUE(untouched());
}

TEST_F(WallClockTest, AClockThatCannotBeReadIsReportedAsInformation)
{
    fail_libc("time", EINVAL);
    EXPECT_EQ(during([&] { EXPECT_NE(Drvboot_GetTime(&local), 0); }),
              information("Drv boot not success to get sys time.\n"));
    EXPECT_TRUE(untouched());
    EXPECT_TRUE(calls("localtime_r").empty());
}

TEST_F(WallClockTest, ANullRecordIsAFailure)
{
    EXPECT_NE(Drvboot_GetTime(nullptr), 0);
}

TEST_F(WallClockTest, AKernelThatDoesNotTellHasAnUptimeOfZero)
{
    fail_libc("sysinfo", EFAULT);
    EXPECT_EQ(during([] { EXPECT_EQ(get_uptime(), 0u); }), nothing());
}

TEST_F(WallClockTest, NoBoardIsAsked)
{
    get_uptime();
    get_starttime();
    Drvboot_GetTime(&local);
    EXPECT_TRUE(operations().empty());
    EXPECT_TRUE(calls("open").empty());
}

} // namespace
} // namespace test
