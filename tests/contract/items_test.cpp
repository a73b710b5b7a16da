// SPDX-License-Identifier: Apache-2.0
// Items: what a request looks like, and what comes back.
#include "contract/contract.hpp"

using namespace contract;
using testing::ElementsAre;

namespace
{

constexpr std::uint32_t refused = 1;

Words reply(std::uint32_t code, std::uint32_t item, std::uint32_t value)
{
    return {DRVBOOT_TLV_L1_TYPE, 24, DRVBOOT_TLV_RET_TYPE, DRVBOOT_TLV_RET_LENGTH, code, item, 4, value};
}

using Items = OpenBoard;

TEST_F(Items, GetBringsTheValueBehindTheReturnCode)
{
    ItemCall call = get_call({item_a});
    EXPECT_EQ(call.ask(fd).result, 0);
    EXPECT_EQ(call.first(8), reply(0, item_a, 0x11223344));
    EXPECT_TRUE(call.untouched_from(8));
    EXPECT_EQ(call.status, 0u);
}

TEST_F(Items, SetIsReadBackAndSeenFromOutside)
{
    ItemCall call = set_call(item_b, 4711);
    EXPECT_EQ(call.ask(fd, DRVBOOT_CMD_SET).result, 0);
    EXPECT_EQ(call.first(8), reply(0, item_b, 4711));
    EXPECT_EQ(call.status, 0u);
    EXPECT_EQ(board.item(board0, item_b), 4711u);
    EXPECT_EQ(value_through(fd, item_b), 4711);
    EXPECT_EQ(board.item(board0, item_a), 0x11223344u) << "another item stays as it is";
}

TEST_F(Items, WhatTheBoardLacksIsRefused)
{
    ItemCall get = get_call({no_item});
    EXPECT_EQ(get.ask(fd).result, 0);
    EXPECT_EQ(get.first(8), reply(refused, no_item, 0));
    EXPECT_EQ(get.status, refused);
    ItemCall set = set_call(no_item, 5);
    EXPECT_EQ(set.ask(fd, DRVBOOT_CMD_SET).result, 0);
    EXPECT_EQ(set.out[4], refused);
    EXPECT_FALSE(board.item(board0, no_item)) << "a refused set makes no item";
}

TEST_F(Items, SeveralComeInTheOrderAskedFor)
{
    const Words codes{item_b, 0x7a000010, item_a, 0x7a000011, 0x7a000012, 0x7a000013};
    for (std::uint32_t i = 0; i < codes.size(); ++i)
        board.set_item(board0, codes[i], 100 + i);
    ItemCall call = get_call(codes);
    call.out_length = 256;
    EXPECT_EQ(call.ask(fd).result, 0);
    Words expected{DRVBOOT_TLV_L1_TYPE, 12 + 6 * 12, DRVBOOT_TLV_RET_TYPE, DRVBOOT_TLV_RET_LENGTH, 0};
    for (std::uint32_t i = 0; i < codes.size(); ++i)
        expected.insert(expected.end(), {codes[i], 4, 100 + i});
    EXPECT_EQ(call.first(expected.size()), expected);
    EXPECT_TRUE(call.untouched_from(expected.size()));
    const auto asked = events();
    ASSERT_EQ(asked.size(), 1u);
    EXPECT_EQ(asked[0].what, "hard info");
    EXPECT_EQ(asked[0].items, codes);
}

TEST_F(Items, OneThatIsMissingMakesTheWholeRefused)
{
    ItemCall call = get_call({item_a, no_item});
    EXPECT_EQ(call.ask(fd).result, 0);
    EXPECT_EQ(call.out[4], refused);
    EXPECT_EQ(call.status, refused);
}

TEST_F(Items, EachDeviceHasItsOwn)
{
    const char *const devices[] = {board0, chassis0, "/dev/slot1", "/dev/slot17", "/dev/slot32"};
    std::uint32_t value = 1;
    for (const char *device : devices)
        board.set_item(device, item_a, value++);
    value = 1;
    for (const char *device : devices)
        EXPECT_EQ(value_of(device, item_a), value++) << device;
}

TEST_F(Items, AreWrittenDownWithWhatWasAskedAndAnswered)
{
    EXPECT_EQ(value_of("/dev/slot3", no_item), -1000 - std::int64_t{refused});
    value_of(board0, item_a);
    set_call(item_b, 9).ask(fd, DRVBOOT_CMD_SET);
    EXPECT_THAT(operations(), ElementsAre("open /dev/slot3", "get /dev/slot3", "open /dev/board0",
                                          "get /dev/board0", "set /dev/board0"));
    const auto all = events();
    ASSERT_EQ(all.size(), 5u);
    EXPECT_EQ(all[1].code, refused);
    EXPECT_EQ(all[1].answer, std::nullopt);
    EXPECT_EQ(all[3].items, Words{item_a});
    EXPECT_EQ(all[3].answer, 0x11223344u);
    EXPECT_EQ(all[4].sent, 9u);
    for (const vboard::Event &event : all) {
        EXPECT_EQ(event.pid, getpid());
        EXPECT_EQ(event.result, 0);
        EXPECT_FALSE(event.faulted);
    }
}

TEST_F(Items, TheResetReasonAndModeAreRecords)
{
    ItemCall reason = get_call({DRVBOOT_ITEM_RESET_REASON_RECORD});
    EXPECT_EQ(reason.ask(fd).result, 0);
    EXPECT_EQ(reason.out[4], 0u);
    EXPECT_EQ(reason.out[6], 12u);
    EXPECT_TRUE(reason.untouched_from(10));
    ItemCall mode = get_call({DRVBOOT_ITEM_RESET_MODE_RECORD});
    EXPECT_EQ(mode.ask(fd).result, 0);
    EXPECT_EQ(mode.out[4], 0u);
    EXPECT_EQ(mode.out[6], 8u);
    EXPECT_TRUE(mode.untouched_from(9));
}

} // namespace
