// SPDX-License-Identifier: Apache-2.0
// What a reset leaves, what it takes away, and what the driver tells afterwards.
#include "vboard/model/board.hpp"
#include "vboard/model/journal.hpp"
#include "vboard/model/requests.hpp"

#include <gmock/gmock.h>

#include <cerrno>

using namespace vboard_test;
using vboard::Board;
using vboard::Event;
using vboard::Fault;
using vboard::Reset;

namespace
{

constexpr std::uint32_t reason_item = 0x10002206;
constexpr std::uint32_t date_item = 0x10002207;
constexpr std::uint32_t mode_record = 0x10002208;
constexpr std::uint32_t reason_record = 0x10002209;

// 2026/11/21 08:30:00
const Bytes a_date{0xea, 0x07, 11, 21, 8, 30, 0};

// The value in the reply to a get.
Bytes value_of(Board &board, std::uint32_t item)
{
    auto call = get(board0, item);
    call.out_size = 256;
    const Bytes out = board.ioctl(call).out;
    EXPECT_EQ(word(out, 16), 0u);
    EXPECT_EQ(word(out, 24), out.size() - 28);
    return out.size() < 28 ? Bytes() : Bytes(out.begin() + 28, out.end());
}

Bytes record(std::uint32_t reason, const Bytes &date)
{
    Bytes bytes = words({reason});
    bytes.insert(bytes.end(), date.begin(), date.end());
    bytes.push_back(0);
    return bytes;
}

const Bytes no_reason(12);

// A soft reset that has a notice, then one that has none.
class EveryResetButAPowerCut : public testing::TestWithParam<std::pair<Reset, std::uint8_t>>
{
  protected:
    Board board{small_profile()};
    Reset kind = GetParam().first;
};

TEST_P(EveryResetButAPowerCut, TellsTheReasonThatWasGivenBefore)
{
    board.ioctl(self_reset(0x10100d9, a_date));
    EXPECT_EQ(value_of(board, reason_record), no_reason) << "not before the reset";
    board.reset(kind);
    EXPECT_EQ(value_of(board, reason_record), record(0x10100d9, a_date));
    EXPECT_EQ(board.reset_record(reason_record), record(0x10100d9, a_date));
    board.reset(kind);
    EXPECT_EQ(value_of(board, reason_record), no_reason) << "a notice is good for one reset";
}

TEST_P(EveryResetButAPowerCut, TellsTheLastOfSeveralNotices)
{
    board.ioctl(self_reset(1, a_date));
    board.ioctl(self_reset(2, {0xd0, 0x07, 1, 2, 3, 4, 5}));
    board.reset(kind);
    EXPECT_EQ(value_of(board, reason_record), record(2, {0xd0, 0x07, 1, 2, 3, 4, 5}));
}

TEST_P(EveryResetButAPowerCut, CountsInTheModeRecordAndTellsItsKindThere)
{
    EXPECT_EQ(value_of(board, mode_record), Bytes(8)) << "powered on";
    board.reset(kind);
    EXPECT_EQ(value_of(board, mode_record), (Bytes{GetParam().second, 1, 0, 0, 0, 0, 0, 0}));
    for (int i = 0; i < 256; ++i)
        board.reset(kind);
    EXPECT_EQ(value_of(board, mode_record), (Bytes{GetParam().second, 1, 1, 0, 0, 0, 0, 0}));
}

TEST_P(EveryResetButAPowerCut, GoesOnCountingFromARecordThatWasPutThere)
{
    board.set_reset_record(mode_record, {2, 0xff, 0xff, 0xff, 0, 0, 0, 0});
    board.reset(kind);
    EXPECT_EQ(value_of(board, mode_record), (Bytes{GetParam().second, 0, 0, 0, 1, 0, 0, 0}));
}

TEST_P(EveryResetButAPowerCut, KeepsTheDriversItems)
{
    board.ioctl(set(board0, role_item, 2));
    board.set_item("/dev/slot3", 0x10002202, 1);
    board.remove_item(board0, hard_type_item);
    board.reset(kind);
    EXPECT_EQ(board.item(board0, role_item), 2u);
    EXPECT_EQ(board.item("/dev/slot3", 0x10002202), 1u);
    EXPECT_EQ(board.item(board0, hard_type_item), std::nullopt);
}

TEST_P(EveryResetButAPowerCut, GivesNoRecordToADriverThatKeepsNone)
{
    board.remove_item(board0, reason_record);
    board.remove_item(board0, mode_record);
    board.ioctl(self_reset(1, a_date));
    board.reset(kind);
    EXPECT_EQ(word(board.ioctl(get(board0, reason_record)).out, 16), 1u);
    EXPECT_TRUE(board.reset_record(mode_record).empty());
}

INSTANTIATE_TEST_SUITE_P(Kinds, EveryResetButAPowerCut,
                         testing::Values(std::pair(Reset::soft, std::uint8_t{1}),
                                         std::pair(Reset::cold, std::uint8_t{2}),
                                         std::pair(Reset::watchdog, std::uint8_t{3})));

TEST(PowerCut, ForgetsReasonCountAndItems)
{
    Board board(small_profile());
    board.ioctl(set(board0, role_item, 2));
    board.set_item("/dev/slot3", 0x10002202, 1);
    board.remove_item(board0, hard_type_item);
    board.reset(Reset::cold);
    board.ioctl(self_reset(0x10100d9, a_date));
    board.reset(Reset::power_cut);
    EXPECT_EQ(value_of(board, reason_record), no_reason);
    EXPECT_EQ(value_of(board, mode_record), Bytes(8));
    EXPECT_EQ(board.item(board0, role_item), 3u);
    EXPECT_EQ(board.item("/dev/slot3", 0x10002202), std::nullopt);
    EXPECT_EQ(board.item(board0, hard_type_item), 0x90020709u);
    EXPECT_EQ(value_of(board, 0x1000280f), (Bytes{1, 2, 3, 4, 5, 6}));
    board.reset(Reset::soft);
    EXPECT_EQ(value_of(board, reason_record), no_reason) << "the notice is gone too";
    EXPECT_EQ(value_of(board, mode_record), (Bytes{1, 1, 0, 0, 0, 0, 0, 0}));
}

TEST(Reset, EveryKindLosesUnsavedBootVariables)
{
    for (const Reset kind : {Reset::soft, Reset::cold, Reset::watchdog, Reset::power_cut}) {
        Board board(small_profile());
        board.ioctl(env(0x4502, "saved", "1"));
        board.ioctl(env(0x4503, ""));
        board.ioctl(env(0x4502, "unsaved", "1"));
        board.reset(kind);
        EXPECT_EQ(board.boot_env("saved"), "1");
        EXPECT_EQ(board.boot_env("unsaved"), std::nullopt);
    }
}

TEST(Reset, StandsInTheJournalWithTheReasonThatWasGiven)
{
    Board board(small_profile());
    board.ioctl(self_reset(0x10100d9, a_date));
    board.reset(Reset::soft);
    board.reset(Reset::cold);
    board.reset(Reset::watchdog);
    board.reset(Reset::power_cut);
    std::vector<std::string> lines;
    for (const Event &event : board.journal()) {
        lines.push_back(readable(event));
        const Event back = vboard::event_from_json(nlohmann::json::parse(to_json(event).dump()));
        EXPECT_EQ(readable(back), readable(event));
        EXPECT_EQ(back.what, event.what);
    }
    EXPECT_THAT(lines, testing::ElementsAre("#1 self reset /dev/board0 reason 0x10100d9, 2026/11/21 08:30:00",
                                            "#2 soft reset, reason 0x10100d9", "#3 cold reset",
                                            "#4 watchdog reset", "#5 power cut"));
    EXPECT_EQ(board.journal()[1].op, vboard::Op::reset);
    EXPECT_EQ(to_json(board.journal()[1])["op"], "reset");
}

TEST(Reset, OfARebootIsSoftWhereTheBoardCanDoOne)
{
    Board board(small_profile());
    EXPECT_EQ(board.reboot_kind(), Reset::cold) << "the driver does not know";
    board.set_item(board0, 0x1100aaaa, 0);
    EXPECT_EQ(board.reboot_kind(), Reset::cold);
    board.set_item(board0, 0x1100aaaa, 1);
    EXPECT_EQ(board.reboot_kind(), Reset::soft);
}

TEST(ResetRecord, OfANewBoardIsTheProfiles)
{
    auto profile = small_profile();
    profile.reset_reason_record = record(7, a_date);
    Board board(profile);
    EXPECT_EQ(value_of(board, reason_record), record(7, a_date));
    EXPECT_EQ(value_of(board, mode_record), Bytes(8));
    board.reset(Reset::power_cut);
    EXPECT_EQ(value_of(board, reason_record), no_reason);
}

TEST(ResetRecord, OfAnySizeIsHandedOutAsItWasPutThere)
{
    Board board(small_profile());
    for (const std::size_t size : {0u, 1u, 11u, 13u, 100u}) {
        board.set_reset_record(reason_record, Bytes(size, 0xab));
        EXPECT_EQ(value_of(board, reason_record), Bytes(size, 0xab));
    }
    auto call = get(board0, reason_record);
    call.out_size = 40;
    EXPECT_EQ(board.ioctl(call).out.size(), 40u) << "cut at the caller's buffer";
    EXPECT_TRUE(board.reset_record(0x10004711).empty());
}

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
