// SPDX-License-Identifier: Apache-2.0
// The notice of a reset that a program gives the driver.
#include "vboard/model/board.hpp"
#include "vboard/model/reset_records.hpp"

#include <gmock/gmock.h>

#include <algorithm>
#include <cerrno>

using namespace vboard_test;
using vboard::Board;
using vboard::Event;
using vboard::Fault;
using vboard::Reset;

namespace
{

TEST(SelfReset, IsAnsweredWithHeaderAndCode)
{
    Board board(small_profile());
    const auto reply = board.ioctl(self_reset(5, a_date));
    EXPECT_EQ(reply.result, 0);
    EXPECT_EQ(reply.out, words({0x1000003, 12, 256, 4, 0}));
    EXPECT_EQ(reply.status, 0u);
    const Event event = board.journal().at(0);
    EXPECT_EQ(event.what, "self reset");
    EXPECT_THAT(event.items, testing::ElementsAre(reason_item, date_item));
    EXPECT_EQ(event.sent, 5u);
    EXPECT_EQ(event.value, "2026/11/21 08:30:00");
    EXPECT_EQ(event.code, 0u);
    EXPECT_EQ(event.answer, std::nullopt);
}

TEST(SelfReset, TakesAnyDateAsItIs)
{
    Board board(small_profile());
    board.ioctl(self_reset(5, Bytes(7, 0xff)));
    EXPECT_EQ(board.journal().at(0).value, "65535/255/255 255:255:255");
    board.reset(Reset::cold);
    EXPECT_EQ(value_of(board, reason_record), record(5, Bytes(7, 0xff)));
}

TEST(SelfReset, ThatIsMalformedIsRefusedAndNotKept)
{
    struct {
        std::size_t word;
        std::uint32_t value;
    } const cases[] = {
        {0, 0x1000000},  // outer type
        {1, 36},         // ends within the date
        {1, 28},         // ends before the date
        {1, 44},         // half a TLV more
        {1, 48},         // one TLV more
        {1, 60},         // beyond the buffer
        {2, 0x8000005},  // first TLV
        {3, 4},          // which has no value
        {4, date_item},  // reason
        {5, 8},          // its length
        {7, 0x10002206}, // date
        {8, 8},          // its length
        {8, 0xffffffff},
    };
    Board board(small_profile());
    for (const auto &[at, value] : cases) {
        auto call = self_reset(5, a_date);
        const Bytes wrong = words({value});
        std::ranges::copy(wrong, call.in.begin() + static_cast<std::ptrdiff_t>(at * 4));
        const auto reply = board.ioctl(call);
        EXPECT_EQ(reply.result, -1) << at << " " << value;
        EXPECT_EQ(reply.error, EINVAL) << at << " " << value;
        EXPECT_EQ(board.journal().back().what, "self reset");
        EXPECT_EQ(board.journal().back().sent, std::nullopt);
    }
    auto call = self_reset(5, a_date);
    for (const std::size_t size : {0u, 4u, 47u}) {
        call.in.resize(size);
        EXPECT_EQ(board.ioctl(call).error, EINVAL) << size;
        call = self_reset(5, a_date);
    }
    board.reset(Reset::cold);
    EXPECT_EQ(value_of(board, reason_record), no_reason);
}

TEST(SelfReset, IsOnlyTheBoardDevicesRequest)
{
    Board board(small_profile());
    auto call = self_reset(5, a_date);
    for (const char *device : {"/dev/chassis0", "/dev/slot1", envinfo0, "/dev/ttyS0", "/proc/wdt"}) {
        call.device = device;
        EXPECT_EQ(board.ioctl(call).error, ENOTTY) << device;
    }
}

TEST(SelfReset, PlannedFaultsBiteAsOnItems)
{
    Board board(small_profile());
    Fault fault;
    fault.request = 1;
    fault.item = reason_item;
    fault.error = EIO;
    board.add_fault(fault);
    EXPECT_EQ(board.ioctl(self_reset(5, a_date)).error, EIO);

    fault.error = 0;
    fault.code = 9;
    board.add_fault(fault);
    EXPECT_EQ(word(board.ioctl(self_reset(5, a_date)).out, 16), 9u);
    EXPECT_EQ(board.journal().back().code, 9u);
    board.reset(Reset::cold);
    EXPECT_EQ(value_of(board, reason_record), no_reason) << "neither notice was taken";

    fault.code.reset();
    fault.result = 3;
    board.add_fault(fault);
    EXPECT_EQ(board.ioctl(self_reset(5, a_date)).result, 3);
    fault.result.reset();
    fault.reply_words = {{12, 8}};
    board.add_fault(fault);
    EXPECT_EQ(board.ioctl(self_reset(5, a_date)).out, words({0x1000003, 12, 256, 8, 0}));
    fault.reply_words.clear();
    fault.cut = 12;
    board.add_fault(fault);
    EXPECT_EQ(board.ioctl(self_reset(5, a_date)).out, words({0x1000003, 12, 256}));
    EXPECT_TRUE(board.faults().empty());
}

} // namespace
