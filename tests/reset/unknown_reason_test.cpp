// SPDX-License-Identifier: Apache-2.0
// A reset that nobody knows the reason of: the text is the board's start time, by a clock that the test sets.
#include "board/own_clock.hpp"
#include "reset/reason_test.hpp"

#include <cstdlib>
#include <ctime>

namespace test
{
namespace
{

constexpr std::int64_t in_2024 = 1709280005;                    // 2024-03-01 08:00:05 UTC
constexpr std::int64_t in_2040 = 2208988800;                    // 2040-01-01 00:00:00 UTC
constexpr std::uint32_t up = 1000;                              // seconds since the start
const std::string text_2024 = "2024/03/01 08:00:05s,0x1010013"; // 30 characters

class UnknownReasonTest : public ReasonTest
{
  protected:
    UnknownReasonTest()
    {
        record(vboard::Bytes(12, 0));
        zone("UTC0");
        started(in_2024);
    }
    ~UnknownReasonTest() override
    {
        own_clock = {};
    }
    static void zone(const char *name)
    {
        setenv("TZ", name, 1);
        tzset();
    }
    static void started(std::int64_t when)
    {
        own_clock = {when + up, up};
    }
};

TEST_F(UnknownReasonTest, TheTextIsTheStartTime)
{
    EXPECT_EQ(during([&] { EXPECT_EQ(read(), 0u); }),
              information("Drvboot read rst reason 2024/03/01 08:00:05s,0x1010013\n"));
    EXPECT_EQ(code, unknown_code);
    EXPECT_EQ(reason, text_2024);
    started(in_2040);
    record(a_record);
    expect_cached(unknown_code, text_2024);
}

// Only the code tells whether a reason is recorded.
TEST_F(UnknownReasonTest, ADateWithoutACodeIsNoReason)
{
    record({0, 0, 0, 0, 0xe8, 0x07, 12, 24, 1, 2, 3, 4});
    EXPECT_EQ(read(), 0u);
    EXPECT_EQ(reason, text_2024);
    expect_cached(unknown_code, text_2024);
}

TEST_F(UnknownReasonTest, AnEmptyRecordIsNoReason)
{
    record({});
    EXPECT_EQ(read(), 0u);
    EXPECT_EQ(code, unknown_code);
    EXPECT_EQ(reason, text_2024);
}

TEST_F(UnknownReasonTest, TheCodeItselfAsAReasonReadsLikeAnyOther)
{
    record({0x13, 0, 1, 1, 0xe8, 0x07, 3, 1, 8, 0, 5, 0});
    EXPECT_EQ(read(), 0u);
    EXPECT_EQ(code, unknown_code);
    EXPECT_STREQ(reason, "2024/03/01 08:00:05,0x01010013,");
}

TEST_F(UnknownReasonTest, AFreshTextThatDoesNotFitIsKept)
{
    EXPECT_EQ(during([&] { EXPECT_EQ(read(30), err_ioctl); }),
              failure(text("Memory set not success, return check code=%d\n\n", ERANGE)));
    EXPECT_EQ(code, unknown_code);
    expect_cached(unknown_code, text_2024);
}

TEST_F(UnknownReasonTest, AStartTimeWithoutALocalFormLeavesTheTextEmpty)
{
    fail_libc("localtime_r", EOVERFLOW);
    EXPECT_EQ(during([&] { EXPECT_EQ(read(), 0u); }), information("Drvboot read rst reason \n"));
    EXPECT_EQ(code, unknown_code);
    expect_cached(unknown_code, "");
}

TEST_F(UnknownReasonTest, TheTimeIsLocal)
{
    zone("EAST-5:30");
    EXPECT_EQ(unknown_reset_info(reason, sizeof reason), 0u);
    EXPECT_STREQ(reason, "2024/03/01 13:30:05s,0x1010013");
    zone("CET-1CEST,M3.5.0,M10.5.0/3");
    started(1719831600); // 2024-07-01 11:00:00 UTC, summer
    EXPECT_EQ(unknown_reset_info(reason, sizeof reason), 0u);
    EXPECT_STREQ(reason, "2024/07/01 13:00:00s,0x1010013");
}

TEST_F(UnknownReasonTest, TheTimeGoesOnBeyond2038)
{
    started(in_2040);
    EXPECT_EQ(unknown_reset_info(reason, sizeof reason), 0u);
    EXPECT_STREQ(reason, "2040/01/01 00:00:00s,0x1010013");
}

TEST_F(UnknownReasonTest, AClockThatWasNeverSetStartsWithTheEpoch)
{
    own_clock = {40, 38};
    EXPECT_EQ(unknown_reset_info(reason, sizeof reason), 0u);
    EXPECT_STREQ(reason, "1970/01/01 00:00:40s,0x1010013");
}

TEST_F(UnknownReasonTest, TheTextNeedsRoomForItsEnd)
{
    EXPECT_EQ(during([&] {
                  EXPECT_EQ(unknown_reset_info(reason, 31), 0u);
                  EXPECT_EQ(reason, text_2024);
                  EXPECT_EQ(reason[31], '#');
                  EXPECT_EQ(unknown_reset_info(reason, 30), 0u);
                  EXPECT_STREQ(reason, "");
              }),
              nothing());
}

TEST_F(UnknownReasonTest, WithoutALocalTimeOrAPlaceForItThereIsNoText)
{
    fail_libc("localtime_r", EOVERFLOW);
    EXPECT_EQ(unknown_reset_info(reason, sizeof reason), minus_one);
    memset(reason, '#', sizeof reason);
    EXPECT_EQ(unknown_reset_info(reason, 0), minus_one);
    EXPECT_EQ(reason[0], '#');
    EXPECT_EQ(unknown_reset_info(nullptr, 72), minus_one);
}

} // namespace
} // namespace test
