// SPDX-License-Identifier: Apache-2.0
// Questions with constant answers: no board is asked, and nothing is said where nothing is to be said.
#include "support/board_test.hpp"

namespace test
{
namespace
{

class ConstantAnswersTest : public BoardTest
{
  protected:
    // Every kind of board, and one that cannot be reached at all.
    void expect(std::uint32_t (*function)(), std::uint32_t result, const Said &said = nothing())
    {
        for (std::uint32_t hard_type : {an_mpu, a_line_card, 0u}) {
            be(hard_type);
            EXPECT_EQ(during([&] { EXPECT_EQ(function(), result); }), said);
        }
        deny(board0, ENXIO);
        EXPECT_EQ(during([&] { EXPECT_EQ(function(), result); }), said);
        EXPECT_TRUE(operations().empty());
        EXPECT_TRUE(calls("open").empty());
        EXPECT_TRUE(calls("ioctl").empty());
    }
};

TEST_F(ConstantAnswersTest, AutoUpgradeIsOff)
{
    expect(MOX_GetAutoUpgrade_Flag, 0);
    expect(drvboot_impl_get_auto_upgrade_flag, 0);
}

TEST_F(ConstantAnswersTest, TheQuickStartFlagIsTaken)
{
    expect(setQuickStartFlag, 0);
    expect(drvboot_impl_set_quick_start_flag, 0);
    expect(setNotQuickstartFlag, 0);
}

TEST_F(ConstantAnswersTest, TheMasterBoardCannotBeEnabled)
{
    expect(MOX_SetMasterBoardEnable, minus_one);
    expect(drvboot_impl_set_master_brd_enable, minus_one);
}

TEST_F(ConstantAnswersTest, SoftActivationDisableIsUnknown)
{
    expect(drvboot_impl_get_soft_act_disable, minus_one);
}

TEST_F(ConstantAnswersTest, TheDelayedVoteIsTaken)
{
    expect(MOX_SetDelayVoteSlave, 0);
}

TEST_F(ConstantAnswersTest, RunInLsIsAlwaysZero)
{
    expect(MOX_IsRunInLS, 0);
}

TEST_F(ConstantAnswersTest, BootpIsAlwaysUsedAndAlwaysSaidSo)
{
    expect(MOX_UseBootpCount, 1, failure("Drvboot return use bootp is true\n"));
}

TEST_F(ConstantAnswersTest, TheOverloadHookDoesNothing)
{
    EXPECT_EQ(during([] { MOX_CpuOverLoadHandleHook(); }), nothing());
    EXPECT_TRUE(operations().empty());
    EXPECT_TRUE(calls().empty());
}

} // namespace
} // namespace test
