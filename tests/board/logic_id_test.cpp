// SPDX-License-Identifier: Apache-2.0
// The logic id, which the slot device knows.
#include "support/board_test.hpp"

namespace test
{
namespace
{

constexpr std::uint32_t logic_id_item = 0x10002636;
constexpr std::uint32_t slot_item = 0x10002800;

class LogicIdTest : public BoardTest, public testing::WithParamInterface<std::uint32_t (*)(std::uint32_t *)>
{
  protected:
    // Gives the board what its hard information is made of.
    void sit_in_slot(std::uint32_t slot)
    {
        for (std::uint32_t item : {0x1000280eu, 0x10002200u, 0x100029b4u})
            board.set_item(board0, item, 0);
        board.set_item(board0, slot_item, slot);
    }
    std::uint32_t id = 99;
    std::uint32_t ask()
    {
        return GetParam()(&id);
    }
};

TEST_P(LogicIdTest, IsAskedOfTheSlotThatTheBoardSitsIn)
{
    sit_in_slot(17);
    board.set_item("/dev/slot17", logic_id_item, 0x12345678);
    EXPECT_EQ(during([&] { EXPECT_EQ(ask(), 0u); }), nothing());
    EXPECT_EQ(id, 0x12345678u);
    ASSERT_EQ(requests().size(), 2u);
    EXPECT_THAT(requests()[0], testing::StartsWith("hard info /dev/board0"));
    EXPECT_EQ(requests()[1], "get /dev/slot17 0x10002636");
}

TEST_P(LogicIdTest, OnlyTheLowHalfOfTheSlotItemCounts)
{
    sit_in_slot(0x70005);
    board.set_item("/dev/slot5", logic_id_item, 8);
    EXPECT_EQ(ask(), 0u);
    EXPECT_EQ(id, 8u);
}

TEST_P(LogicIdTest, ARefusedItemGivesTheChannelsCode)
{
    sit_in_slot(2);
    board.set_item("/dev/slot2", logic_id_item, 8);
    refuse("/dev/slot2", logic_id_item);
    EXPECT_EQ(during([&] { EXPECT_EQ(ask(), err_ioctl); }),
              failure("Drvboot get local logic id not success, excute cmd return 0x2710\n"));
    deny("/dev/slot2", ENODEV);
    EXPECT_EQ(during([&] { EXPECT_EQ(ask(), minus_one); }),
              failure("Drvboot get local logic id not success, excute cmd return 0xffffffff\n"));
    EXPECT_EQ(id, 99u);
}

TEST_P(LogicIdTest, ASlotThatIsNoneDoesNotOpen)
{
    sit_in_slot(0xffff);
    EXPECT_EQ(during([&] { EXPECT_EQ(ask(), minus_one); }),
              failure("Drvboot get local logic id not success, excute cmd return 0xffffffff\n"));
    EXPECT_EQ(calls("open").back().path, "/dev/slot65535");
    EXPECT_EQ(id, 99u);
}

TEST_P(LogicIdTest, WithoutHardInformationNoSlotIsOpened)
{
    sit_in_slot(2);
    board.set_item("/dev/slot2", logic_id_item, 8);
    deny(board0, ENODEV, 2);
    EXPECT_EQ(
        during([&] { EXPECT_EQ(ask(), err_ioctl); }),
        failure("Drvboot get hard info not success for open /dev/board0 not ok(No such device), fd -1\n") +
            failure("Drvboot get local logic id not success, excute cmd return 0x2710\n"));
    EXPECT_TRUE(requests().empty());
    for (const Call &call : calls("open"))
        EXPECT_EQ(call.path, "/dev/board0");
    EXPECT_EQ(id, 99u);
}

TEST_P(LogicIdTest, ANullOutputIsAFailure)
{
    sit_in_slot(2);
    during([&] { EXPECT_EQ(GetParam()(nullptr), minus_one); });
    EXPECT_THAT(requests(), testing::Not(testing::Contains("get /dev/slot2 0x10002636")));
}

INSTANTIATE_TEST_SUITE_P(Names, LogicIdTest,
                         testing::Values(MOX_GetSelfEncapLogicId, drvboot_impl_get_self_encap_logicid),
                         [](const auto &names) {
                             return std::string(names.index == 0 ? "MOX_GetSelfEncapLogicId"
                                                                 : "drvboot_impl_get_self_encap_logicid");
                         });

} // namespace
} // namespace test
