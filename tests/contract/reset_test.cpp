// SPDX-License-Identifier: Apache-2.0
// The notice of a reset, and what the driver tells afterwards.
#include "contract/contract.hpp"

using namespace contract;

namespace
{

constexpr std::uint32_t reason = 0x10100d9;

// Reason, and 2026/11/21 08:30:15 in the twelve bytes of the date.
ItemCall notice_call()
{
    return ItemCall({DRVBOOT_TLV_SELF_RESET, 8 + 12 + 20, DRVBOOT_TLV_SELF_RESET_ITEM, 0,
                     DRVBOOT_TLV_RESET_REASON, 4, reason, DRVBOOT_TLV_RESET_DATE, DRVBOOT_RESET_DATE_LENGTH,
                     2026 | 11 << 16 | 21 << 24, 8 | 30 << 8 | 15 << 16, 0});
}

using Notice = OpenBoard;

TEST_F(Notice, IsTaken)
{
    ItemCall call = notice_call();
    EXPECT_EQ(call.ask(fd, DRVBOOT_CMD_SELF_RESET).result, 0);
    EXPECT_EQ(call.first(5), (Words{DRVBOOT_TLV_SELF_RESET, 12, DRVBOOT_TLV_RET_TYPE, 4, 0}));
    EXPECT_TRUE(call.untouched_from(5));
    EXPECT_EQ(call.status, 0u);
    const auto all = events();
    ASSERT_EQ(all.size(), 1u);
    EXPECT_EQ(all[0].what, "self reset");
    EXPECT_EQ(all[0].sent, reason);
    EXPECT_EQ(all[0].value, "2026/11/21 08:30:15");
}

TEST_F(Notice, ThatIsHalfOneIsNone)
{
    const Words shapes[] = {
        {DRVBOOT_TLV_SELF_RESET, 8, DRVBOOT_TLV_SELF_RESET_ITEM, 0},
        {DRVBOOT_TLV_L1_TYPE, 8, DRVBOOT_TLV_SELF_RESET_ITEM, 0},
        {DRVBOOT_TLV_SELF_RESET, 20, DRVBOOT_TLV_SELF_RESET_ITEM, 0, DRVBOOT_TLV_RESET_REASON, 4, reason}};
    for (const Words &shape : shapes) {
        const ItemCall call = ItemCall(shape).ask(fd, DRVBOOT_CMD_SELF_RESET);
        EXPECT_EQ(call.result, -1);
        EXPECT_EQ(call.error, EINVAL);
        EXPECT_TRUE(call.untouched_from(0));
    }
}

TEST_F(Notice, CanBeRefused)
{
    vboard::Fault fault;
    fault.device = board0;
    fault.request = DRVBOOT_CMD_SELF_RESET;
    fault.code = 9;
    board.add_fault(fault);
    ItemCall call = notice_call();
    EXPECT_EQ(call.ask(fd, DRVBOOT_CMD_SELF_RESET).result, 0);
    EXPECT_EQ(call.out[4], 9u);
    EXPECT_EQ(call.status, 9u);
}

TEST_F(Notice, IsToldAfterTheReset)
{
    if (!board.resettable())
        GTEST_SKIP() << "a reset ends the programs of this board";
    const auto resets = [this] {
        ItemCall mode = get_call({DRVBOOT_ITEM_RESET_MODE_RECORD});
        mode.ask(fd);
        return mode.out[7] >> 8; // the low three bytes of the count
    };
    const std::uint32_t before = resets();
    notice_call().ask(fd, DRVBOOT_CMD_SELF_RESET);
    board.reset();
    ItemCall call = get_call({DRVBOOT_ITEM_RESET_REASON_RECORD});
    EXPECT_EQ(call.ask(fd).result, 0);
    EXPECT_EQ(call.out[6], 12u);
    EXPECT_EQ(call.out[7], reason);
    EXPECT_EQ(call.out[8], 2026u | 11u << 16 | 21u << 24);
    EXPECT_EQ(call.out[9], 8u | 30u << 8 | 15u << 16);
    ItemCall mode = get_call({DRVBOOT_ITEM_RESET_MODE_RECORD});
    EXPECT_EQ(mode.ask(fd).result, 0);
    EXPECT_EQ(mode.out[7] & 0xFFu, 2u) << "a cold reset";
    EXPECT_EQ(resets(), before + 1);
    // Without a new notice there is no reason to tell.
    board.reset();
    ItemCall none = get_call({DRVBOOT_ITEM_RESET_REASON_RECORD});
    none.ask(fd);
    EXPECT_EQ(none.out[7], 0u);
    EXPECT_EQ(value_through(fd, item_a), 0x11223344) << "items are kept over a reset";
}

} // namespace
