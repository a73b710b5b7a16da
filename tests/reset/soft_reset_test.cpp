// SPDX-License-Identifier: Apache-2.0
// The soft reboot, and who supports and disables soft resets.
#include "reset/never_returns.hpp"
#include "reset/reset_test.hpp"

namespace test
{
namespace
{

using SoftResetTest = ResetTest;
using Lines = std::vector<std::string>;

constexpr std::uint32_t role_item = 0x10002987;
constexpr std::uint32_t active_item = 0x10002982;
constexpr std::uint32_t disable_item = 0x1000299f;
const std::string hard_type = "get /dev/board0 0x8000001";

TEST_F(SoftResetTest, ASoftRebootIsARebootWithALineOfItsOwn)
{
    Said said = during([] { until_asleep([] { MOX_SoftRebootOS(a_reason, &a_date); }); });
    ASSERT_EQ(said.trace.size(), 10u);
    EXPECT_EQ(said.trace[0], (TraceLine{0, 1, "SoftRebootOS: ResetReason id is 0x5\n\n"}));
    EXPECT_EQ(said.trace[1], (TraceLine{0, 1, "Drvboot reboot os, reason 0x5, backup state 1\n"}));
    EXPECT_EQ(said.syslog.at(0), "SoftRebootOS: ResetReason id is 0x5\n\n");
    EXPECT_EQ(history(),
              (Lines{hard_type, "set /dev/board0 0x1000221e 1", hard_type, "set /dev/board0 0x1000280a 0",
                     "self reset /dev/board0 0x10002206 0x10002207 5", "sync", hard_type,
                     "set /dev/board0 0x1000280a 0", hard_type, "set /dev/board0 0x1000280a 0",
                     "set /dev/board0 0x10002808 1", "execv /sbin/reboot", "sleep"}));
}

TEST_F(SoftResetTest, AFastSoftRebootDoesNothing)
{
    EXPECT_EQ(during([] { EXPECT_EQ(MOX_SoftRebootOS(0, &a_date), 0); }),
              information("SoftRebootOS: ResetReason id is 0\n\n") +
                  information("Drvboot reboot os, reason 0x0, backup state 1\n"));
    EXPECT_TRUE(operations().empty());
}

TEST_F(SoftResetTest, WithoutADateThereIsNoSoftReboot)
{
    for (std::uint32_t reason : {0u, 0x10100d9u})
        EXPECT_EQ(during([=] { EXPECT_EQ(MOX_SoftRebootOS(reason, nullptr), -1); }),
                  information(text("SoftRebootOS: ResetReason id is %#x\n\n", reason)) +
                      failure("SoftRebootOS: ResetTime is null pointer, can't reboot.\n\n"));
    EXPECT_TRUE(operations().empty());
}

TEST_F(SoftResetTest, NoBoardIsResetSoftlyAloneWhateverItIs)
{
    for (std::uint32_t type : {an_mpu, a_line_card}) {
        be(type);
        for (std::uint32_t slot : {0u, 1u, minus_one}) {
            forget_journal();
            EXPECT_EQ(during([=] { EXPECT_EQ(MOX_IsBoardSupportSoftReset(slot), 0u); }), nothing());
            EXPECT_EQ(requests(), Lines{hard_type});
        }
    }
}

TEST_F(SoftResetTest, TheSoftActiveStateIsTheRole)
{
    for (auto [role, expected] :
         std::map<std::uint32_t, std::uint32_t>{{0, 2}, {1, 1}, {2, 2}, {3, 2}, {minus_one, 2}}) {
        board.set_item(board0, role_item, role);
        std::uint32_t state = 99;
        EXPECT_EQ(during([&] { EXPECT_EQ(MOX_GetBoardSoftActiveState(&state), 0u); }), nothing());
        EXPECT_EQ(state, expected) << role;
    }
}

TEST_F(SoftResetTest, ABoardWithoutARoleIsNotActive)
{
    std::uint32_t state = 99;
    EXPECT_EQ(during([&] { EXPECT_EQ(MOX_GetBoardSoftActiveState(&state), 0u); }),
              failure("Not succeed to get board role,ret=0x2710.\n"));
    EXPECT_EQ(state, 2u);
    be(a_line_card);
    state = 99;
    EXPECT_EQ(during([&] { EXPECT_EQ(MOX_GetBoardSoftActiveState(&state), 0u); }),
              failure("Drvboot get board role not success for board is not mpu\n"));
    EXPECT_EQ(state, 2u);
}

TEST_F(SoftResetTest, AStateWithoutAnOutputIsAFailure)
{
    EXPECT_EQ(during([] { EXPECT_EQ(MOX_GetBoardSoftActiveState(nullptr), 1u); }), nothing());
    EXPECT_TRUE(operations().empty());
}

TEST_F(SoftResetTest, TheSoftActiveStateIsSetByTheDriversAccessor)
{
    board.set_item(board0, active_item, 9);
    answer_libc("select", 0);
    EXPECT_EQ(during([] { EXPECT_EQ(MOX_SetBoardSoftActiveState(2), 0); }), nothing());
    EXPECT_EQ(requests(), (Lines{hard_type, "set /dev/board0 0x10002982 1", "set /dev/board0 0x10002982 0"}));
    EXPECT_EQ(calls("select").at(0).microseconds, 2000000u);
    EXPECT_EQ(during([] { EXPECT_EQ(MOX_SetBoardSoftActiveState(3), -1); }),
              failure("Drvboot set board soft active state not success for input arg(3) is invalid\n"));
}

TEST_F(SoftResetTest, TheDisableFlagCannotBeRead)
{
    board.set_item(board0, disable_item, 1);
    EXPECT_EQ(during([] { EXPECT_EQ(MOX_GetSoftActDisableFlag(), -1); }), nothing());
    EXPECT_TRUE(operations().empty());
}

TEST_F(SoftResetTest, TheDisableFlagIsSet)
{
    board.set_item(board0, disable_item, 0);
    EXPECT_EQ(during([] { EXPECT_EQ(MOX_SetSoftActDisableFlag(), 0u); }), nothing());
    EXPECT_EQ(operations(), (Lines{"open /dev/board0", "set /dev/board0 0x1000299f 1"}));
    EXPECT_EQ(board.item(board0, disable_item), 1u);
}

// The request is the caller's own, so the channel's setter has nothing to say.
TEST_F(SoftResetTest, ADisableFlagThatIsNotSetIsReported)
{
    EXPECT_EQ(during([] { EXPECT_EQ(MOX_SetSoftActDisableFlag(), minus_one); }),
              failure("Drvboot set soft act disable flag unsuccessfully, excute cmd return 0x2710\n"));
    deny(board0, EACCES);
    EXPECT_EQ(during([] { EXPECT_EQ(MOX_SetSoftActDisableFlag(), minus_one); }),
              failure("Drvboot set soft act disable flag unsuccessfully, excute cmd return 0xffffffff\n"));
}

} // namespace
} // namespace test
