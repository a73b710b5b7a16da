// SPDX-License-Identifier: Apache-2.0
// A reset date as seconds since the epoch: local time, with daylight saving taken as off.
#include "reset/reset_test.hpp"

#include <cstdlib>
#include <ctime>

namespace test
{
namespace
{

class TimeStampTest : public testing::Test
{
  protected:
    TimeStampTest()
    {
        zone("UTC0");
    }
    static void zone(const char *name)
    {
        setenv("TZ", name, 1);
        tzset();
    }
    static std::int32_t stamp(const MoxResetDate &date)
    {
        return Drvboot_ResetTimeStamp(&date);
    }
};

TEST_F(TimeStampTest, IsTheLocalTimesMoment)
{
    EXPECT_EQ(stamp({2020, 1, 1, 0, 0, 0}), 1577836800);
    EXPECT_EQ(stamp({2024, 3, 1, 8, 0, 5}), 1709280005);
    zone("EAST-5:30");
    EXPECT_EQ(stamp({2020, 1, 1, 0, 0, 0}), 1577836800 - 19800);
    zone("WEST8");
    EXPECT_EQ(stamp({2020, 1, 1, 0, 0, 0}), 1577836800 + 28800);
}

TEST_F(TimeStampTest, TakesDaylightSavingAsOff)
{
    zone("CET-1CEST,M3.5.0,M10.5.0/3");
    EXPECT_EQ(stamp({2024, 7, 1, 12, 0, 0}), 1719831600); // 11:00 UTC, though clocks in July show 13:00
    EXPECT_EQ(stamp({2024, 1, 1, 12, 0, 0}), 1704106800); // 11:00 UTC
}

TEST_F(TimeStampTest, KnowsLeapDays)
{
    EXPECT_EQ(stamp({2024, 2, 29, 23, 59, 59}), 1709251199);
    EXPECT_EQ(stamp({2023, 2, 29, 0, 0, 0}), 1677628800); // the first of March
    EXPECT_EQ(stamp({2000, 2, 29, 0, 0, 0}), 951782400);
}

TEST_F(TimeStampTest, BeginsWithTheEpochAndBefore)
{
    EXPECT_EQ(stamp({1970, 1, 1, 0, 0, 0}), 0);
    EXPECT_EQ(stamp({1970, 1, 1, 0, 0, 1}), 1);
    EXPECT_EQ(stamp({1969, 12, 31, 23, 59, 58}), -2);
    zone("EAST-5:30");
    EXPECT_EQ(stamp({1970, 1, 1, 0, 0, 0}), -19800);
}

TEST_F(TimeStampTest, CarriesFieldsBeyondTheirRange)
{
    EXPECT_EQ(stamp({2024, 0, 15, 0, 0, 0}), 1702598400); // 2023-12-15
    EXPECT_EQ(stamp({2024, 3, 0, 0, 0, 0}), 1709164800);  // 2024-02-29
    EXPECT_EQ(stamp({2024, 2, 28, 24, 0, 0}), 1709164800);
    EXPECT_EQ(stamp({2024, 2, 28, 0, 0, 60}), 1709078400 + 60);
    EXPECT_EQ(stamp({2024, 3, 1, 200, 0, 0}), 1709251200 + 200 * 3600); // an hour without a sign
}

// Wider than the result: the lower 32 bits are left, on every machine.
TEST_F(TimeStampTest, IsCutTo32Bits)
{
    EXPECT_EQ(stamp({2038, 1, 19, 3, 14, 7}), 0x7fffffff);
    EXPECT_EQ(stamp({2038, 1, 19, 3, 14, 8}), INT32_MIN);
    EXPECT_EQ(stamp({2040, 1, 1, 0, 0, 0}), static_cast<std::int32_t>(2208988800u));
    EXPECT_EQ(stamp({2106, 2, 7, 6, 28, 16}), 0);
    EXPECT_EQ(stamp({1, 1, 1, 0, 0, 0}), static_cast<std::int32_t>(-62135596800));
}

TEST_F(TimeStampTest, WithoutADateIsMinusOne)
{
    EXPECT_EQ(Drvboot_ResetTimeStamp(nullptr), -1);
}

} // namespace
} // namespace test
