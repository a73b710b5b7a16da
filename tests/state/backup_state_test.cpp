// SPDX-License-Identifier: Apache-2.0
// The backup state: kept in three places, read from one.
#include "support/board_test.hpp"

#include <moxboot/platform.h>

#include <array>
#include <filesystem>

namespace test
{
namespace
{

constexpr std::uint32_t state_item = 0x1000474b;
constexpr const char *variable = "backup_state";

class BackupStateTest : public BoardTest
{
  protected:
    void SetUp() override
    {
        BoardTest::SetUp();
        board.set_item(board0, state_item, 0x77); // the driver takes only items that it has
    }
    void TearDown() override
    {
        std::filesystem::remove("/opt/moxv8/var/platform.env");
        g_backupState = 1;
        BoardTest::TearDown();
    }
    static std::optional<std::string> kept()
    {
        std::array<char, 256> value;
        value.fill('#');
        if (GetEnv(variable, value.data()) != 0)
            return std::nullopt;
        return value.data();
    }
    static Said announced(std::uint32_t state)
    {
        return information(text("Drvboot set backup state %u(0:ready 1:unready)\n", state));
    }
    void expect_kept(std::uint32_t state, const std::string &value)
    {
        forget_journal();
        EXPECT_EQ(during([&] { EXPECT_EQ(MOX_SetBackupState(state), 0); }), announced(state));
        EXPECT_EQ(kept(), value) << "state " << state;
        EXPECT_EQ(g_backupState, state);
        EXPECT_EQ(requests(), std::vector<std::string>{text("set /dev/board0 0x1000474b %u", state)});
        EXPECT_EQ(board.item(board0, state_item), state);
    }
    std::uint16_t got = 0x5a5a;
    void expect_read(const char *value, std::uint32_t result, std::uint16_t stored)
    {
        got = 0x5a5a;
        ASSERT_EQ(SetEnv(variable, value), 0u);
        EXPECT_EQ(during([&] { EXPECT_EQ(MOX_GetBackupState(&got), result) << value; }), nothing());
        EXPECT_EQ(got, stored) << value;
    }
};

TEST_F(BackupStateTest, IsUnreadyAtLoad)
{
    EXPECT_EQ(g_backupState, 1u);
}

TEST_F(BackupStateTest, OneDigitGoesToAllThreePlaces)
{
    for (std::uint32_t digit : {0u, 1u, 2u, 9u})
        expect_kept(digit, std::to_string(digit));
}

TEST_F(BackupStateTest, AStateOfTwoCharactersLeavesAnEmptyVariable)
{
    expect_kept(0, "0");
    for (std::uint32_t value : {10u, 99u, 127u, 128u, 0xF6u, 0xFFu, 0xFFFFFFFFu, 0x80000080u})
        expect_kept(value, "");
}

TEST_F(BackupStateTest, OnlyTheLowByteMakesTheVariable)
{
    expect_kept(256, "0");
    expect_kept(0x109, "9");
    expect_kept(0x10A, "");
    expect_kept(0xFFFFFF01, "1");
}

TEST_F(BackupStateTest, AnEnvironmentThatRefusesIsNotedAndTheCallGoesOn)
{
    expect_kept(1, "1");
    for (std::uint32_t code : {1u, 0x2710u, 0xffffffffu}) {
        answer_platform("SetEnv", static_cast<int>(code));
        forget_journal();
        EXPECT_EQ(during([&] { EXPECT_EQ(MOX_SetBackupState(7), 0); }),
                  announced(7) + information(text("Drvboot set backup state not success for set env "
                                                  "backup_state not success, return 0x%x\n",
                                                  code)));
        EXPECT_EQ(kept(), "1");
        EXPECT_EQ(g_backupState, 7u);
        EXPECT_EQ(board.item(board0, state_item), 7u);
    }
}

TEST_F(BackupStateTest, ADriverThatRefusesGivesTheResult)
{
    const std::string line = "Drvboot set backup state to drv not success, excute cmd return 0x2710\n";
    refuse(board0, state_item);
    EXPECT_EQ(
        during([&] { EXPECT_EQ(MOX_SetBackupState(0), static_cast<int>(message(3, line).out.size())); }),
        announced(0) + failure("Not succeed to set /dev/board0 l2_type=0x1000474b, ret=0x2710.\n") +
            failure(line));
    EXPECT_EQ(kept(), "0");
    EXPECT_EQ(g_backupState, 0u);
}

TEST_F(BackupStateTest, ATextThatCannotBePrintedIsAnEmptyVariable)
{
    answer_platform("sprintf_s", -1);
    EXPECT_EQ(MOX_SetBackupState(3), 0);
    EXPECT_EQ(kept(), "");
}

TEST_F(BackupStateTest, TheVariablesFirstTwoCharactersAreRead)
{
    expect_read("0", 0, 0);
    expect_read("1", 0, 1);
    expect_read("12", 0, 12);
    expect_read("123", 0, 12);
    expect_read("9x", 0, 9);
    expect_read("1x9", 0, 1);
    expect_read(" 5", 0, 5);
    expect_read("007", 0, 0);
    expect_read("-1", 0, 0xFFFF);
    expect_read(std::string(255, '4').c_str(), 0, 44);
}

TEST_F(BackupStateTest, ATextThatIsNoNumberGivesTheCountOfNumbersAndStoresNothing)
{
    expect_read("x", 0, 0x5a5a);
    expect_read("x1", 0, 0x5a5a);
    expect_read("", minus_one, 0x5a5a);
    expect_read("  7", minus_one, 0x5a5a);
}

TEST_F(BackupStateTest, AnAbsentVariableGivesTheEnvironmentsCode)
{
    EXPECT_EQ(during([&] { EXPECT_EQ(MOX_GetBackupState(&got), 1u); }),
              information("Drvboot get backup state not success for get env backup_state not success, "
                          "return 0x1\n"));
    EXPECT_EQ(got, 0x5a5a);
}

TEST_F(BackupStateTest, AnEnvironmentThatCannotBeReadGivesItsCode)
{
    ASSERT_EQ(SetEnv(variable, "0"), 0u);
    for (std::uint32_t code : {2u, 0x2710u, 0xffffffffu}) {
        answer_platform("GetEnv", static_cast<int>(code));
        EXPECT_EQ(during([&] { EXPECT_EQ(MOX_GetBackupState(&got), code); }),
                  information(text("Drvboot get backup state not success for get env backup_state not "
                                   "success, return 0x%x\n",
                                   code)));
        EXPECT_EQ(got, 0x5a5a);
    }
}

TEST_F(BackupStateTest, WhatWasSetIsRead)
{
    for (std::uint32_t digit : {0u, 1u, 9u}) {
        EXPECT_EQ(MOX_SetBackupState(digit), 0);
        EXPECT_EQ(MOX_GetBackupState(&got), 0u);
        EXPECT_EQ(got, digit);
    }
    EXPECT_EQ(MOX_SetBackupState(10), 0);
    got = 0x5a5a;
    EXPECT_EQ(MOX_GetBackupState(&got), minus_one);
    EXPECT_EQ(got, 0x5a5a);
}

TEST_F(BackupStateTest, ReadingAsksNeitherTheDriverNorTheProcess)
{
    ASSERT_EQ(SetEnv(variable, "0"), 0u);
    g_backupState = 5;
    EXPECT_EQ(MOX_GetBackupState(&got), 0u);
    EXPECT_EQ(got, 0);
    EXPECT_EQ(g_backupState, 5u);
    EXPECT_TRUE(operations().empty());
}

TEST_F(BackupStateTest, ANullOutputIsAFailure)
{
    ASSERT_EQ(SetEnv(variable, "0"), 0u);
    EXPECT_EQ(during([&] { EXPECT_EQ(MOX_GetBackupState(nullptr), minus_one); }), nothing());
}

} // namespace
} // namespace test
