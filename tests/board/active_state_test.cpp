// SPDX-License-Identifier: Apache-2.0
// What the active-state functions do beside their one item: arguments, the soft switch-over, the last value.
#include "support/board_test.hpp"

namespace test
{
namespace
{

constexpr std::uint32_t active_item = 0x10002982;
constexpr std::uint32_t all_ha_item = 0x1000221e;
const std::string ask_type = "get /dev/board0 0x8000001";

class ActiveStateTest : public BoardTest
{
  protected:
    void SetUp() override
    {
        BoardTest::SetUp();
        for (std::uint32_t item : {active_item, all_ha_item}) // the driver takes only items that it has
            board.set_item(board0, item, 0x77);
    }
    std::uint64_t waited_us() const
    {
        std::uint64_t sum = 0;
        for (const Call &call : calls("select"))
            sum += call.microseconds;
        return sum;
    }
};

TEST_F(ActiveStateTest, HardStateTakesOnlyZeroAndOne)
{
    for (std::uint32_t state : {2u, 3u, 0x80000000u, 0xffffffffu})
        EXPECT_EQ(
            during([&] { EXPECT_EQ(drvboot_impl_set_brd_hard_active_state(state), minus_one); }),
            failure(text("Drvboot set board hard active state not success for input arg(%u) is invalid\n",
                         state)));
    EXPECT_TRUE(operations().empty());
}

TEST_F(ActiveStateTest, HardStateIsCheckedBeforeTheBoardIsAsked)
{
    be(a_line_card);
    EXPECT_EQ(during([&] { EXPECT_EQ(drvboot_impl_set_brd_hard_active_state(2), minus_one); }),
              failure("Drvboot set board hard active state not success for input arg(2) is invalid\n"));
    EXPECT_TRUE(operations().empty());
}

TEST_F(ActiveStateTest, SoftStateTakesOnlyOneAndTwo)
{
    be(a_line_card); // checked before the board is asked
    for (std::uint32_t state : {0u, 3u, 0xffffffffu})
        EXPECT_EQ(
            during([&] { EXPECT_EQ(drvboot_impl_set_brd_soft_active_state(state), minus_one); }),
            failure(text("Drvboot set board soft active state not success for input arg(%u) is invalid\n",
                         state)));
    EXPECT_TRUE(operations().empty());
}

TEST_F(ActiveStateTest, SoftStateTwoWritesOneWaitsAndWritesZero)
{
    EXPECT_EQ(during([&] { EXPECT_EQ(drvboot_impl_set_brd_soft_active_state(2), 0u); }), nothing());
    EXPECT_EQ(requests(), (std::vector<std::string>{ask_type, "set /dev/board0 0x10002982 1",
                                                    "set /dev/board0 0x10002982 0"}));
    EXPECT_EQ(waited_us(), 2000000u);
    EXPECT_EQ(board.item(board0, active_item), 0u);
}

TEST_F(ActiveStateTest, SoftStateOneWritesZeroTwice)
{
    EXPECT_EQ(during([&] { EXPECT_EQ(drvboot_impl_set_brd_soft_active_state(1), 0u); }), nothing());
    EXPECT_EQ(requests(), (std::vector<std::string>{ask_type, "set /dev/board0 0x10002982 0",
                                                    "set /dev/board0 0x10002982 0"}));
    EXPECT_EQ(waited_us(), 2000000u);
}

TEST_F(ActiveStateTest, TheWaitLiesBetweenTheTwoWrites)
{
    during([&] { drvboot_impl_set_brd_soft_active_state(2); });
    std::vector<std::string> order;
    for (const Call &call : calls())
        if (call.function == "ioctl" || call.function == "select")
            order.push_back(call.function);
    EXPECT_EQ(order, (std::vector<std::string>{"ioctl", "ioctl", "select", "ioctl"}));
}

TEST_F(ActiveStateTest, AFailedFirstSoftWriteEndsThere)
{
    refuse(board0, active_item);
    EXPECT_EQ(during([&] { EXPECT_EQ(drvboot_impl_set_brd_soft_active_state(2), minus_one); }),
              failure("Not succeed to set /dev/board0 l2_type=0x10002982, ret=0x2710.\n") +
                  failure("Drvboot set board soft active state not success, excute cmd return 0x2710\n"));
    EXPECT_EQ(requests(), (std::vector<std::string>{ask_type, "set /dev/board0 0x10002982 1"}));
    EXPECT_EQ(waited_us(), 0u);
}

TEST_F(ActiveStateTest, AFailedSecondSoftWriteIsAFailureToo)
{
    vboard::Fault fault;
    fault.device = board0;
    fault.item = active_item;
    fault.error = EIO;
    fault.skip = 1;
    board.add_fault(fault);
    EXPECT_EQ(during([&] { EXPECT_EQ(drvboot_impl_set_brd_soft_active_state(2), minus_one); }),
              failure("Not succeed to set /dev/board0 l2_type=0x10002982, ret=0x2710.\n") +
                  failure("Drvboot set board soft active state not success, excute cmd return 0x2710\n"));
    EXPECT_EQ(requests().size(), 3u);
    EXPECT_EQ(board.item(board0, active_item), 1u);
}

TEST_F(ActiveStateTest, ABoardThatIsNoMpuHasNoSoftState)
{
    be(a_line_card);
    EXPECT_EQ(during([&] { EXPECT_EQ(drvboot_impl_set_brd_soft_active_state(2), minus_one); }), nothing());
    EXPECT_EQ(requests(), std::vector<std::string>{ask_type});
    EXPECT_EQ(waited_us(), 0u);
}

TEST_F(ActiveStateTest, SoftStateOfABoardThatCannotTellItsTypeIsSet)
{
    refuse(board0, item_hard_type);
    EXPECT_EQ(during([&] { EXPECT_EQ(drvboot_impl_set_brd_soft_active_state(2), 0u); }),
              failure("Not succeed to get board hardtype,ret=0x2710.\n") +
                  failure("[DRVBOOT MPU]Unable to get hard type\n"));
    EXPECT_EQ(requests().size(), 3u);
}

TEST_F(ActiveStateTest, AllHaStateRefusesANullOutputUnasked)
{
    for (std::uint32_t hard_type : {an_mpu, a_line_card}) {
        be(hard_type);
        EXPECT_EQ(during([&] { EXPECT_EQ(drvboot_impl_get_brd_all_ha_status(nullptr), minus_one); }),
                  failure("Drvboot get board all ha state not success for input arg is null\n"));
    }
    EXPECT_TRUE(operations().empty());
}

TEST_F(ActiveStateTest, HardStateRefusesANullOutputUnasked)
{
    EXPECT_EQ(during([&] {
                  EXPECT_EQ(MOX_GetBoardHardActiveState(nullptr), minus_one);
                  EXPECT_EQ(drvboot_impl_get_brd_hard_active_state(nullptr), minus_one);
              }),
              nothing());
    EXPECT_TRUE(operations().empty());
}

TEST_F(ActiveStateTest, AFailedReadDoesNotChangeTheLastAllHaState)
{
    std::uint32_t state = 0;
    board.set_item(board0, all_ha_item, 4);
    during([&] { drvboot_impl_get_brd_all_ha_status(&state); });
    refuse(board0, all_ha_item);
    state = 77;
    EXPECT_EQ(during([&] { EXPECT_EQ(drvboot_impl_get_brd_all_ha_status(&state), minus_one); }),
              failure("Drvboot get board all ha state not success, excute cmd return 0x2710\n"));
    EXPECT_EQ(state, 77u);
    EXPECT_EQ(during([&] { EXPECT_EQ(drvboot_impl_get_brd_all_ha_status(&state), 0u); }), nothing());
    EXPECT_EQ(state, 4u);
}

TEST_F(ActiveStateTest, ABoardThatIsNoMpuDoesNotChangeTheLastAllHaState)
{
    std::uint32_t state = 0;
    be(a_line_card);
    during([&] { drvboot_impl_get_brd_all_ha_status(&state); });
    EXPECT_EQ(state, 2u);
    be(an_mpu);
    board.set_item(board0, all_ha_item, 2);
    EXPECT_EQ(during([&] { drvboot_impl_get_brd_all_ha_status(&state); }),
              information("Drvboot get board all ha state 0x2\n"));
}

TEST_F(ActiveStateTest, TheXcsSetterWritesOneWhateverItIsGiven)
{
    for (std::uint32_t given : {0u, 1u, 0xffffffffu}) {
        EXPECT_EQ(MOX_SetBoardXcsActiveState(given), 0u);
        EXPECT_EQ(board.item(board0, all_ha_item), 1u);
    }
}

TEST_F(ActiveStateTest, WhatTheXcsSetterWroteIsTheAllHaState)
{
    std::uint32_t state = 0;
    EXPECT_EQ(drvboot_impl_set_brd_xcs_active_state(), 0u);
    during([&] { EXPECT_EQ(drvboot_impl_get_brd_all_ha_status(&state), 0u); });
    EXPECT_EQ(state, 1u);
}

} // namespace
} // namespace test
