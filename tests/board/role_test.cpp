// SPDX-License-Identifier: Apache-2.0
// Backup states and the roles that stand for them; the role item that never answers.
#include "support/board_test.hpp"

namespace test
{
namespace
{

constexpr std::uint32_t role_item = 0x10002987;
constexpr std::uint32_t driver_role_item = 0x10002858;
constexpr std::uint32_t backup_item = 0x1000474b;
constexpr std::uint32_t peer_xcs_item = 0x10004726;
const std::vector<std::string> asks_role = {"get /dev/board0 0x8000001", "get /dev/board0 0x10002987"};

class RoleTest : public BoardTest
{
  protected:
    void SetUp() override
    {
        BoardTest::SetUp();
        for (std::uint32_t item : {role_item, driver_role_item, backup_item, peer_xcs_item})
            board.set_item(board0, item, 0x77); // the driver takes only items that it has
    }
};

TEST_F(RoleTest, BackupStateZeroIsRoleThree)
{
    EXPECT_EQ(during([&] { EXPECT_EQ(MOX_SetBoardBackupState(0), 0u); }), nothing());
    EXPECT_EQ(requests(),
              (std::vector<std::string>{"get /dev/board0 0x8000001", "set /dev/board0 0x10002987 3"}));
}

TEST_F(RoleTest, BackupStateOneIsRoleTwo)
{
    EXPECT_EQ(during([&] { EXPECT_EQ(MOX_SetBoardBackupState(1), 0u); }), nothing());
    EXPECT_EQ(requests(),
              (std::vector<std::string>{"get /dev/board0 0x8000001", "set /dev/board0 0x10002987 2"}));
}

TEST_F(RoleTest, NoOtherBackupStateCanBeSet)
{
    for (std::uint32_t state : {2u, 3u, 5u, 0xffffffffu})
        EXPECT_EQ(during([&] { EXPECT_EQ(MOX_SetBoardBackupState(state), 1u); }), nothing());
    EXPECT_TRUE(operations().empty());
}

TEST_F(RoleTest, SettingTheBackupStateHandsOnWhatSettingTheRoleGives)
{
    refuse(board0, role_item);
    EXPECT_EQ(during([&] { EXPECT_EQ(MOX_SetBoardBackupState(1), err_ioctl); }),
              failure("Not succeed to set /dev/board0 l2_type=0x10002987, ret=0x2710.\n") +
                  failure("Not succeed to set board role,ret=0x2710.\n"));
    be(a_line_card);
    EXPECT_EQ(during([&] { EXPECT_EQ(MOX_SetBoardBackupState(0), minus_one); }),
              failure("Drvboot set board role not success for board is not mpu\n"));
}

TEST_F(RoleTest, TheBackupStateIsReadFromTheRole)
{
    std::uint32_t state = 9;
    board.set_item(board0, role_item, 2);
    EXPECT_EQ(during([&] { EXPECT_EQ(MOX_GetBoardBackupState(&state), 0u); }), nothing());
    EXPECT_EQ(state, 1u);
    board.set_item(board0, role_item, 3);
    forget_journal();
    EXPECT_EQ(during([&] { EXPECT_EQ(MOX_GetBoardBackupState(&state), 0u); }), nothing());
    EXPECT_EQ(state, 0u);
    EXPECT_EQ(requests(), asks_role);
}

TEST_F(RoleTest, AnyOtherRoleIsNoBackupState)
{
    for (std::uint32_t role : {0u, 1u, 4u, 0x10002u, 0xfffffffeu, 0xffffffffu}) {
        std::uint32_t state = 9;
        board.set_item(board0, role_item, role);
        EXPECT_EQ(during([&] { EXPECT_EQ(MOX_GetBoardBackupState(&state), 1u); }), nothing());
        EXPECT_EQ(state, 9u);
    }
}

TEST_F(RoleTest, AnUnreadableRoleIsNoBackupState)
{
    std::uint32_t state = 9;
    board.set_item(board0, role_item, 2);
    refuse(board0, role_item);
    EXPECT_EQ(during([&] { EXPECT_EQ(MOX_GetBoardBackupState(&state), 1u); }),
              failure("Not succeed to get board role,ret=0x2710.\n"));
    be(a_line_card);
    EXPECT_EQ(during([&] { EXPECT_EQ(MOX_GetBoardBackupState(&state), 1u); }),
              failure("Drvboot get board role not success for board is not mpu\n"));
    EXPECT_EQ(state, 9u);
}

TEST_F(RoleTest, ANullBackupStateIsRefusedUnasked)
{
    EXPECT_EQ(during([&] { EXPECT_EQ(MOX_GetBoardBackupState(nullptr), 1u); }), nothing());
    EXPECT_TRUE(operations().empty());
}

TEST_F(RoleTest, ABackupStateComesBackAsItWasSet)
{
    for (std::uint32_t wanted : {0u, 1u}) {
        std::uint32_t state = 9;
        EXPECT_EQ(MOX_SetBoardBackupState(wanted), 0u);
        EXPECT_EQ(MOX_GetBoardBackupState(&state), 0u);
        EXPECT_EQ(state, wanted);
    }
}

TEST_F(RoleTest, TheCountThatAFailedBackupReportGivesIsThatOfItsLastLine)
{
    refuse(board0, backup_item);
    std::uint32_t result = 0;
    Said said = during([&] { result = MOX_SetBackupStatetoDrv(1); });
    std::string last =
        "[boot_info]\rDrvboot set backup state to drv not success, excute cmd return 0x2710\n\n";
    ASSERT_GE(said.out.size(), last.size());
    EXPECT_EQ(said.out.substr(said.out.size() - last.size()), last);
    EXPECT_EQ(result, last.size());
}

TEST_F(RoleTest, TheCountThatAFailedPeerXcsReportGivesIsThatOfItsLastLine)
{
    deny(board0, ENOENT);
    std::uint32_t result = 0;
    Said said = during([&] { result = MOX_Set_Peer_XCS_Slave(); });
    std::string last =
        "[boot_info]\r[SetPeerXcsSlave]:SetPeerXcsSlave not success, uiRetval = 0xffffffff.\n\n\n";
    ASSERT_GE(said.out.size(), last.size());
    EXPECT_EQ(said.out.substr(said.out.size() - last.size()), last);
    EXPECT_EQ(result, last.size());
}

TEST_F(RoleTest, ARoleThatWasSetIsNotReadBack)
{
    std::uint32_t role = 9;
    EXPECT_EQ(MOX_SetRoleOfBoard(3), 0u);
    EXPECT_EQ(during([&] { EXPECT_EQ(drv_boot_get_boardrole(&role), minus_one); }), nothing());
    EXPECT_EQ(role, 0u);
}

} // namespace
} // namespace test
