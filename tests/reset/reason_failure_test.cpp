// SPDX-License-Identifier: Apache-2.0
// A reset reason that cannot be had. Nothing is cached then: the next call asks again.
#include "reset/reason_test.hpp"

namespace test
{
namespace
{

constexpr const char *no_memory = "Drvboot read rst reason not success for memory exhaust\n";

TEST_F(ReasonTest, WithoutMemoryTheDriverIsNotAsked)
{
    fail_libc("malloc", ENOMEM);
    EXPECT_EQ(during([&] { EXPECT_EQ(read(), minus_one); }), failure(no_memory));
    EXPECT_TRUE(untouched());
    EXPECT_TRUE(operations().empty());
    expect_asked_again();
}

TEST_F(ReasonTest, TheReplyHasRoomForTheCallersLength)
{
    for (std::uint32_t length : {0u, 12u, 72u, UINT32_MAX - 28}) {
        forget_calls();
        fail_libc("malloc", ENOMEM);
        EXPECT_EQ(read(length), minus_one);
        ASSERT_EQ(calls("malloc").size(), 1u);
        EXPECT_EQ(calls("malloc")[0].size, std::size_t{length} + 28) << length;
    }
}

TEST_F(ReasonTest, ALengthThatMakesTheSizeWrapIsExhaustedMemory)
{
    for (std::uint32_t length : {UINT32_MAX - 27, UINT32_MAX - 1, UINT32_MAX}) {
        EXPECT_EQ(during([&] { EXPECT_EQ(read(length), minus_one); }), failure(no_memory)) << length;
        EXPECT_TRUE(untouched());
        EXPECT_TRUE(operations().empty());
    }
    expect_asked_again();
}

TEST_F(ReasonTest, ADeviceThatDoesNotOpenIsReportedWithItsError)
{
    deny(board0, EACCES);
    expect_refused(
        minus_one,
        failure(
            text("Drvboot read rst reason not success for open /dev/board0 not ok(%d), fd -1\n", EACCES)));
    EXPECT_TRUE(calls("free").size() == calls("malloc").size());
}

TEST_F(ReasonTest, AFailedRequestIsReportedWithItsError)
{
    vboard::Fault fault = on_item(reason_item);
    fault.error = EIO;
    board.add_fault(fault);
    expect_refused(
        minus_one,
        failure(text("Drvboot read rst reason not success for ioctl return -1, not ok: %d\n", EIO)));
}

TEST_F(ReasonTest, AnyOtherResultOfTheRequestIsAFailureToo)
{
    vboard::Fault fault = on_item(reason_item);
    fault.result = 5;
    board.add_fault(fault);
    Said said = during([&] { EXPECT_EQ(read(), minus_one); });
    ASSERT_EQ(said.trace.size(), 1u);
    EXPECT_EQ(said.trace[0].level, 4u);
    EXPECT_THAT(said.trace[0].text,
                testing::StartsWith("Drvboot read rst reason not success for ioctl return 5, not ok: "));
    EXPECT_TRUE(untouched());
    expect_asked_again();
}

TEST_F(ReasonTest, AStatusOtherThanZeroIsReported)
{
    for (std::uint32_t status : {1u, 0x8000abcdu}) {
        vboard::Fault fault = on_item(reason_item);
        fault.code = status;
        board.add_fault(fault);
        EXPECT_EQ(during([&] { EXPECT_EQ(read(), minus_one); }),
                  failure(text("Drvboot read rst reason not success for TLV value(0x%x) invalid\n", status)));
        EXPECT_TRUE(untouched());
    }
    expect_asked_again();
}

// The room that counts is that for the text, in which the record is measured before it is copied.
TEST_F(ReasonTest, ARecordLongerThanTheCallersLengthIsRefusedSilently)
{
    for (std::uint32_t length : {0u, 1u, 11u}) {
        EXPECT_EQ(during([&] { EXPECT_EQ(read(length), err_ioctl); }), nothing()) << length;
        EXPECT_TRUE(untouched());
    }
    expect_asked_again();
}

TEST_F(ReasonTest, ARecordLongerThanItsTwelveBytesIsReported)
{
    for (std::uint32_t length : {13u, 14u, 72u}) {
        record(vboard::Bytes(length, 0x11));
        EXPECT_EQ(during([&] { EXPECT_EQ(read(72), err_ioctl); }),
                  failure(text("memcpy_s not success, not ok code = %d\n\n", ERANGE)));
        EXPECT_TRUE(untouched());
    }
    record(vboard::Bytes(13, 0x11));
    EXPECT_EQ(during([&] { EXPECT_EQ(read(13), err_ioctl); }),
              failure(text("memcpy_s not success, not ok code = %d\n\n", ERANGE)));
    EXPECT_EQ(during([&] { EXPECT_EQ(read(12), err_ioctl); }), nothing());
    expect_asked_again();
}

TEST_F(ReasonTest, APlatformThatDoesNotCopyTheRecordLeavesTheCacheEmpty)
{
    answer_platform("memcpy_s", 22);
    expect_refused(err_ioctl, failure("memcpy_s not success, not ok code = 22\n\n"));
}

} // namespace
} // namespace test
