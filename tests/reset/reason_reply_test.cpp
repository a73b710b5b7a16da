// SPDX-License-Identifier: Apache-2.0
// Replies whose offset or length points elsewhere: outside the reply nothing is read.
#include "reset/reason_test.hpp"

namespace test
{
namespace
{

// Places in a reply to a caller with room for 72 bytes, which is 100 bytes long.
constexpr std::uint32_t offset_at = 12;
constexpr std::uint32_t origin = 16; // of the offset
constexpr std::uint32_t reply_size = 100;
constexpr std::uint32_t usual_length_at = 24;

TEST_F(ReasonTest, TheDriverSaysWhereTheRecordStands)
{
    for (std::uint32_t offset : {8u, 9u, 40u, reply_size - origin - 8 - 12}) {
        const std::uint32_t at = origin + offset;
        // The words are put one after the other, so that an odd offset works as well.
        reply_with(
            reason_item,
            {{offset_at, offset}, {at, reason_item}, {at + 4, 12}, {at + 8, 0}, {at + 12, 0}, {at + 16, 0}});
        answer_platform("memcpy_s", 77); // keeps the cache empty
        EXPECT_EQ(during([&] { EXPECT_EQ(read(), err_ioctl); }),
                  failure("memcpy_s not success, not ok code = 77\n\n"))
            << offset;
    }
    reply_with(reason_item, {{offset_at, 40}, {60, 12}, {64, 0x77}, {68, 0x020407e4}, {72, 0x06050403}});
    EXPECT_EQ(read(), 0u);
    EXPECT_STREQ(reason, "2020/04/02 03:04:05,0x00000077,");
    EXPECT_EQ(code, 0x77u);
}

TEST_F(ReasonTest, AnOffsetOutsideTheReplyIsRefusedSilently)
{
    for (std::uint32_t offset :
         {reply_size - origin - 7, reply_size - origin, reply_size, 0x1000u, 0x7fffffffu, 0x80000000u,
          0xffffffe8u, 0xfffffff0u, 0xfffffff8u, 0xfffffffcu, 0xffffffffu}) {
        reply_with(reason_item, {{offset_at, offset}});
        EXPECT_EQ(during([&] { EXPECT_EQ(read(), err_ioctl); }), nothing()) << offset;
        EXPECT_TRUE(untouched());
    }
    expect_asked_again();
}

TEST_F(ReasonTest, ALengthBeyondTheReplyIsRefusedSilently)
{
    for (std::uint32_t length : {73u, 0x7fffffffu, 0xfffffff4u, 0xffffffffu}) {
        reply_with(reason_item, {{usual_length_at, length}});
        EXPECT_EQ(during([&] { EXPECT_EQ(read(), err_ioctl); }), nothing()) << length;
    }
    // Within the caller's length, but not within what is left of the reply.
    reply_with(reason_item, {{offset_at, 8}, {28, 69}});
    EXPECT_EQ(during([&] { EXPECT_EQ(read(), err_ioctl); }), nothing());
    reply_with(reason_item, {{offset_at, reply_size - origin - 8}, {reply_size - 4, 1}});
    EXPECT_EQ(during([&] { EXPECT_EQ(read(), err_ioctl); }), nothing());
    EXPECT_TRUE(untouched());
    expect_asked_again();
}

TEST_F(ReasonTest, ARecordThatEndsWithTheReplyIsWithinIt)
{
    reply_with(reason_item, {{offset_at, 8}, {28, 68}}); // 32 + 68 bytes, too long for a record only
    EXPECT_EQ(during([&] { EXPECT_EQ(read(), err_ioctl); }),
              failure(text("memcpy_s not success, not ok code = %d\n\n", ERANGE)));
    reply_with(reason_item, {{offset_at, reply_size - origin - 8}, {reply_size - 4, 0}});
    EXPECT_EQ(read(), 0u);
    EXPECT_EQ(code, unknown_code) << "an empty record holds no reason";
}

// Zeros all over: the offset then points at the status, whose neighbour is a length of 0.
TEST_F(ReasonTest, AnEmptyReplyHoldsNoReason)
{
    vboard::Fault fault = on_item(reason_item);
    fault.cut = 0;
    board.add_fault(fault);
    EXPECT_EQ(read(), 0u);
    EXPECT_EQ(code, unknown_code);
}

TEST_F(ReasonTest, TheSmallestReplyHoldsAnEmptyRecord)
{
    record({});
    EXPECT_EQ(during([&] { EXPECT_EQ(read(0), err_ioctl); }),
              failure(text("Memory set not success, return check code=%d\n\n", ERANGE)));
    EXPECT_EQ(code, unknown_code);
    EXPECT_EQ(reason[0], '#');
}

TEST_F(ReasonTest, TheSmallestReplyIsNotReadBeyondEither)
{
    for (std::uint32_t offset : {5u, 8u, 12u, 0xfffffffcu}) {
        reply_with(reason_item, {{offset_at, offset}});
        EXPECT_EQ(during([&] { EXPECT_EQ(read(0), err_ioctl); }), nothing()) << offset;
    }
    EXPECT_TRUE(untouched());
}

} // namespace
} // namespace test
