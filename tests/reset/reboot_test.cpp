// SPDX-License-Identifier: Apache-2.0
// A reboot from the platform's call to the command that takes the board down: the order of its steps, and
// that none of them holds it up.
#include "reset/never_returns.hpp"
#include "reset/reset_test.hpp"

namespace test
{
namespace
{

using Lines = std::vector<std::string>;

const std::string hard_type = "get /dev/board0 0x8000001";
const std::string xcs = "set /dev/board0 0x1000221e 1";
const std::string clear = "set /dev/board0 0x1000280a 0";
const std::string start = "set /dev/board0 0x10002808 1";
const std::string notice = "self reset /dev/board0 0x10002206 0x10002207 5";
const std::string command = "execv /sbin/reboot";

const Said clear_begins = information("Clear dog before notify board driver rst\n");
const Said notice_told = information("Notify board driver rst\n") +
                         information("Drvboot rst self, reason id 0x5, date 2024/3/1 8:0:5\n");
const Said sync_told =
    information("Sync file system when reboot os\n") + information("Sync file system end\n");
const Said command_failed = failure(text("Drvboot execute reboot unsuccess for execv not ok(%d)\n", ENOENT));

Said begins(std::uint32_t reason = a_reason, std::uint32_t backup_state = 1)
{
    return information(text("Drvboot reboot os, reason 0x%x, backup state %u\n", reason, backup_state));
}
const Said going_down =
    information("The system is going down now\n") + information("Set SCC/XCS when reboot system\n");

class RebootTest : public ResetTest
{
  protected:
    Said reboot(std::uint32_t reason = a_reason)
    {
        return during([=] { until_asleep([=] { MOX_RebootOS(reason, &a_date); }); });
    }
};

TEST_F(RebootTest, TakesTheBoardDownInOrder)
{
    EXPECT_EQ(reboot(), all({begins(), going_down, clear_begins, notice_told, sync_told, command_failed}));
    EXPECT_EQ(history(), (Lines{hard_type, xcs, hard_type, clear, notice, "sync", hard_type, clear, hard_type,
                                clear, start, command, "sleep"}));
    EXPECT_TRUE(board.watchdog().enabled);
    EXPECT_FALSE(board.boot_env("early_reset_code"));
}

TEST_F(RebootTest, AnOldBoardIsClearedThroughTheService)
{
    be(an_old_mpu);
    EXPECT_EQ(reboot(),
              all({begins(), going_down, clear_begins, information("Drvboot clear dog first time\n"),
                   notice_told, sync_told, command_failed}));
    EXPECT_EQ(history(),
              (Lines{hard_type, xcs, hard_type, "wdt clear /proc/wdt 0", "wdt stop kernel feeder /proc/wdt 0",
                     "wdt set threshold /proc/wdt 1", notice, "sync", hard_type, "wdt clear /proc/wdt 0",
                     hard_type, "wdt clear /proc/wdt 0", start, command, "sleep"}));
}

TEST_F(RebootTest, ALineCardHasNoSwitchOverState)
{
    be(a_line_card);
    EXPECT_EQ(reboot(),
              all({begins(), going_down, clear_begins, information("Drvboot clear dog first time\n"),
                   notice_told, sync_told, command_failed}));
    EXPECT_THAT(history(), testing::Not(testing::Contains(xcs)));
    EXPECT_THAT(history(), testing::Contains(notice));
}

TEST_F(RebootTest, OneReasonIsTracedBeforeAnythingElse)
{
    Said said = reboot(0x10100d9);
    EXPECT_EQ(said,
              all({begins(0x10100d9),
                   information("[Board]Get reset codeName[early_reset_code] timeName[early_reset_time]."),
                   information("[Board]Set early_reset_code(0x10100d9) early_reset_time(20240301080005) env "
                               "success."),
                   going_down, clear_begins, information("Notify board driver rst\n"),
                   information("Drvboot rst self, reason id 0x10100d9, date 2024/3/1 8:0:5\n"), sync_told,
                   command_failed}));
    EXPECT_EQ(history(), (Lines{"env read early_reset_code", "env write early_reset_code=0x10100d9",
                                "env write early_reset_time=20240301080005", "env save", hard_type, xcs,
                                hard_type, clear, "self reset /dev/board0 0x10002206 0x10002207 16842969",
                                "sync", hard_type, clear, hard_type, clear, start, command, "sleep"}));
}

TEST_F(RebootTest, ItsNeighboursAreNotTraced)
{
    reboot(0x10100d8);
    EXPECT_EQ(history().front(), hard_type);
}

TEST_F(RebootTest, TheFirstLineNamesTheBackupState)
{
    g_backupState = 0;
    EXPECT_EQ(reboot().trace.front(), (TraceLine{0, 1, "Drvboot reboot os, reason 0x5, backup state 0\n"}));
}

TEST_F(RebootTest, ARefusedNoticeIsReportedAndTheRebootGoesOn)
{
    vboard::Fault fault;
    fault.request = 1;
    fault.error = EIO;
    board.add_fault(fault);
    EXPECT_EQ(reboot(),
              all({begins(), going_down, clear_begins, notice_told,
                   failure("Drvboot reboot self not success, return 0x2710\n"), sync_told, command_failed}));
    EXPECT_EQ(history(), (Lines{hard_type, xcs, hard_type, clear, notice, "sync", hard_type, clear, hard_type,
                                clear, start, command, "sleep"}));
}

// Two clears later it is still only the first one that talks of the service.
TEST_F(RebootTest, ABrokenWatchdogIsReportedAndTheRebootGoesOn)
{
    be(an_old_mpu);
    deny(watchdog_service, ENOENT, 0);
    const Said not_cleared = information("wdt ctrl operate 0x2, ret:4294967295\n");
    EXPECT_EQ(reboot(),
              all({begins(), going_down, clear_begins, failure("Drvboot clear dog not success, fd -1\n"),
                   failure(text("Drvboot wdt clr dog no success errno(%d). \n", ENOENT)), not_cleared,
                   notice_told, sync_told, not_cleared, not_cleared, command_failed}));
    EXPECT_EQ(history(), (Lines{hard_type, xcs, hard_type, notice, "sync", hard_type, hard_type, start,
                                command, "sleep"}));
}

TEST_F(RebootTest, ASwitchOverThatFailsDoesNotHoldItUp)
{
    board.remove_item(board0, xcs_item);
    EXPECT_EQ(reboot(),
              all({begins(), going_down,
                   failure("Not succeed to set /dev/board0 l2_type=0x1000221e, ret=0x2710.\n"),
                   failure("Drvboot set board XCS active state not success, excute cmd return 0x2710\n"),
                   clear_begins, notice_told, sync_told, command_failed}));
}

TEST_F(RebootTest, AFastRebootDoesNothing)
{
    for (const MoxResetDate *date : {&a_date, static_cast<const MoxResetDate *>(nullptr)}) {
        forget_calls();
        EXPECT_EQ(during([=] { EXPECT_EQ(MOX_RebootOS(0, date), 0); }), begins(0));
        EXPECT_TRUE(operations().empty());
        EXPECT_TRUE(history().empty());
    }
}

TEST_F(RebootTest, WithoutADateNothingIsDone)
{
    for (std::uint32_t reason : {a_reason, 0x10100d9u}) {
        EXPECT_EQ(during([=] { EXPECT_EQ(MOX_RebootOS(reason, nullptr), -1); }),
                  begins(reason) + failure("Drvboot reboot os not success for date string arg is null\n"));
        EXPECT_TRUE(operations().empty());
        EXPECT_TRUE(history().empty());
    }
}

} // namespace
} // namespace test
