// SPDX-License-Identifier: Apache-2.0
// The reset reason as the driver holds it, its text, and the cache.
#include "reset/reason_test.hpp"

namespace test
{
namespace
{

TEST_F(ReasonTest, AKnownReasonIsReadOnceAndTold)
{
    EXPECT_EQ(during([&] { EXPECT_EQ(read(), 0u); }),
              information("Drvboot read rst reason 2024/03/01 08:00:05,0x010100d9,\n"));
    EXPECT_EQ(code, a_code);
    EXPECT_EQ(reason, a_text);
    EXPECT_EQ(reason[a_text.size() + 1], '#') << "no padding";
    EXPECT_EQ(operations(), (std::vector<std::string>{"open /dev/board0", "get /dev/board0 0x10002209"}));
    record({1, 0, 0, 0, 1, 0, 1, 1, 1, 1, 1, 1});
    expect_cached(a_code, a_text);
    expect_cached(a_code, a_text);
    EXPECT_TRUE(calls("malloc").size() == 1 && calls("ioctl").size() == 1);
}

TEST_F(ReasonTest, BothNamesShareTheCache)
{
    EXPECT_EQ(drvboot_impl_read_reset_reason(reason, sizeof reason, &code), 0u);
    EXPECT_EQ(reason, a_text);
    expect_cached(a_code, a_text);
}

TEST_F(ReasonTest, SmallNumbersAreFilledWithZeros)
{
    record({5, 0, 0, 0, 7, 0, 0, 0, 0, 0, 0, 0xff});
    EXPECT_EQ(read(), 0u);
    EXPECT_STREQ(reason, "0007/00/00 00:00:00,0x00000005,");
    EXPECT_EQ(code, 5u);
}

TEST_F(ReasonTest, LargeNumbersArePrintedWhole)
{
    record(vboard::Bytes(12, 0xff));
    EXPECT_EQ(read(), 0u);
    EXPECT_STREQ(reason, "65535/255/255 255:255:255,0xffffffff,");
    expect_cached(minus_one, "65535/255/255 255:255:255,0xffffffff,");
}

TEST_F(ReasonTest, RoomForTheTextAndItsEndIsEnough)
{
    EXPECT_EQ(read(32), 0u);
    EXPECT_EQ(reason, a_text);
    EXPECT_EQ(reason[32], '#');
    EXPECT_EQ(read(32), 0u);
    EXPECT_EQ(reason, a_text);
}

// The record has come, so it counts as read, whether or not the caller has got the text.
TEST_F(ReasonTest, AFreshTextThatDoesNotFitIsReportedAndKept)
{
    EXPECT_EQ(during([&] { EXPECT_EQ(read(31), err_ioctl); }),
              failure(text("Memory set not success, return check code=%d\n\n", ERANGE)));
    EXPECT_EQ(code, a_code);
    EXPECT_STREQ(reason, "");
    expect_cached(a_code, a_text);
}

TEST_F(ReasonTest, RoomForTheRecordAloneIsEnoughToReadIt)
{
    EXPECT_EQ(during([&] { EXPECT_EQ(read(12), err_ioctl); }),
              failure(text("Memory set not success, return check code=%d\n\n", ERANGE)));
    expect_cached(a_code, a_text);
}

TEST_F(ReasonTest, ACachedTextThatDoesNotFitIsReportedInOtherWords)
{
    ASSERT_EQ(read(), 0u);
    for (std::uint32_t length : {0u, 1u, 31u}) {
        code = 99;
        memset(reason, '#', sizeof reason);
        EXPECT_EQ(during([&] { EXPECT_EQ(read(length), minus_one); }),
                  failure(text("String copy not success, return check code=%d\n\n", ERANGE)));
        EXPECT_EQ(code, a_code);
        EXPECT_EQ(reason[length == 0 ? 0 : 1], '#') << length;
    }
    expect_cached(a_code, a_text);
}

TEST_F(ReasonTest, APlatformThatDoesNotCopyIsReported)
{
    answer_platform("strncpy_s", 75, 0, 2);
    EXPECT_EQ(during([&] { EXPECT_EQ(read(), err_ioctl); }),
              failure("Memory set not success, return check code=75\n\n"));
    EXPECT_EQ(during([&] { EXPECT_EQ(read(), minus_one); }),
              failure("String copy not success, return check code=75\n\n"));
    expect_cached(a_code, a_text);
}

// A code without a text: the cache counts as filled all the same.
TEST_F(ReasonTest, ATextThatCannotBeMadeIsReportedAndStaysEmpty)
{
    answer_platform("sprintf_s", -1);
    EXPECT_EQ(during([&] { EXPECT_EQ(read(), err_ioctl); }),
              failure("String print not success, return check code=-1\n\n"));
    EXPECT_EQ(code, a_code);
    EXPECT_EQ(reason[0], '#');
    expect_cached(a_code, "");
}

TEST_F(ReasonTest, ARecordCutShortCountsAsZerosBehind)
{
    record({0x05, 0, 0, 0});
    EXPECT_EQ(read(4), err_ioctl); // room for the record, none for its text
    expect_cached(5, "0000/00/00 00:00:00,0x00000005,");
}

TEST_F(ReasonTest, AReasonWithoutAnOutputIsAFailure)
{
    EXPECT_EQ(during([&] {
                  EXPECT_EQ(MOX_ReadResetReason(nullptr, 72, &code), minus_one);
                  EXPECT_EQ(MOX_ReadResetReason(reason, 72, nullptr), minus_one);
              }),
              nothing());
    EXPECT_TRUE(untouched());
    EXPECT_TRUE(operations().empty());
    expect_asked_again();
}

} // namespace
} // namespace test
