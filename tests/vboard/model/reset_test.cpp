// SPDX-License-Identifier: Apache-2.0
// What a reset leaves, what it takes away, and what the driver tells afterwards.
#include "vboard/model/board.hpp"
#include "vboard/model/journal.hpp"
#include "vboard/model/reset_records.hpp"

#include <gmock/gmock.h>

using namespace vboard_test;
using vboard::Board;
using vboard::Event;
using vboard::Reset;

namespace
{

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

} // namespace
