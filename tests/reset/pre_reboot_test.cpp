// SPDX-License-Identifier: Apache-2.0
// Everything of a reboot but the reboot, for callers that reboot by other means.
#include "reset/reset_test.hpp"

namespace test
{
namespace
{

using Lines = std::vector<std::string>;

const std::string hard_type = "get /dev/board0 0x8000001";
const std::string clear = "set /dev/board0 0x1000280a 0";
const std::string notice = "self reset /dev/board0 0x10002206 0x10002207 5";

const Said begins = information("[PreRebootOS] reset reason 0x5, backup state 1\n");
const Said switch_over = information("[PreRebootOS] Set SCC/XCS when reboot system\n");
const Said notice_told = information("Notify board driver rst\n") +
                         information("Drvboot rst self, reason id 0x5, date 2024/3/1 8:0:5\n");
const Said syncs = information("[PreRebootOS] Sync file system when befor reboot os\n");
const Said done = information("[PreRebootOS] Shutting down system pretreat done\n");

class PreRebootTest : public ResetTest
{
  protected:
    Said prepare(std::uint32_t reason = a_reason)
    {
        return during([=] { EXPECT_EQ(MOX_PreRebootOS(reason, &a_date), 0); });
    }
};

TEST_F(PreRebootTest, PreparesInOrderAndStartsTheWatchdog)
{
    EXPECT_EQ(prepare(), all({begins, switch_over, notice_told, syncs, done}));
    EXPECT_EQ(history(), (Lines{hard_type, "set /dev/board0 0x1000221e 1", notice, hard_type, clear, "sync",
                                hard_type, clear, "set /dev/board0 0x10002808 1"}));
    EXPECT_TRUE(board.watchdog().enabled);
    EXPECT_TRUE(calls("execv").empty());
    EXPECT_TRUE(calls("sleep").empty());
}

TEST_F(PreRebootTest, ClearsAnOldBoardThroughTheService)
{
    be(an_old_mpu);
    EXPECT_EQ(prepare(), all({begins, switch_over, notice_told, syncs,
                              information("Drvboot clear dog first time\n"), done}));
    EXPECT_EQ(history(),
              (Lines{hard_type, "set /dev/board0 0x1000221e 1", notice, hard_type, "wdt clear /proc/wdt 0",
                     "wdt stop kernel feeder /proc/wdt 0", "wdt set threshold /proc/wdt 1", "sync", hard_type,
                     "wdt clear /proc/wdt 0", "set /dev/board0 0x10002808 1"}));
}

TEST_F(PreRebootTest, TracesNoReason)
{
    prepare(0x10100d9);
    EXPECT_EQ(history().front(), hard_type);
    EXPECT_FALSE(board.boot_env("early_reset_code"));
}

TEST_F(PreRebootTest, TheFirstLineNamesReasonAndBackupState)
{
    g_backupState = 0;
    EXPECT_EQ(prepare(0xabcdef01).trace.front(),
              (TraceLine{0, 1, "[PreRebootOS] reset reason 0xabcdef01, backup state 0\n"}));
}

TEST_F(PreRebootTest, NoFailureHoldsItUp)
{
    be(an_old_mpu);
    deny(watchdog_service, EACCES);
    board.remove_item(board0, xcs_item);
    board.remove_item(board0, watchdog_enable);
    vboard::Fault fault;
    fault.request = 1;
    fault.reply_words = {{12, 5}};
    board.add_fault(fault);
    const Said not_cleared = information("wdt ctrl operate 0x2, ret:4294967295\n");
    EXPECT_EQ(
        prepare(),
        all({begins, switch_over, failure("Not succeed to set /dev/board0 l2_type=0x1000221e, ret=0x2710.\n"),
             failure("Drvboot set board XCS active state not success, excute cmd return 0x2710\n"),
             notice_told, failure("[PreRebootOS] SelfReset result 0x2710\n"), syncs,
             failure("Drvboot clear dog not success, fd -1\n"),
             failure(text("Drvboot wdt clr dog no success errno(%d). \n", EACCES)), not_cleared, not_cleared,
             done, failure("Not succeed to set /dev/board0 l2_type=0x10002808, ret=0x2710.\n"),
             failure("Not succeed to set pre rst reason,ret=0x2710.\n"),
             information("wdt ctrl operate 0x0, ret:10000\n")}));
    EXPECT_EQ(calls("sync").size(), 1u);
}

TEST_F(PreRebootTest, AFastRebootDoesNothing)
{
    for (const MoxResetDate *date : {&a_date, static_cast<const MoxResetDate *>(nullptr)}) {
        forget_calls();
        EXPECT_EQ(during([=] { EXPECT_EQ(MOX_PreRebootOS(0, date), 0); }),
                  information("[PreRebootOS] reset reason 0x0, backup state 1\n"));
        EXPECT_TRUE(operations().empty());
        EXPECT_TRUE(history().empty());
    }
}

TEST_F(PreRebootTest, WithoutADateNothingIsDone)
{
    EXPECT_EQ(during([] { EXPECT_EQ(MOX_PreRebootOS(a_reason, nullptr), -1); }),
              begins + failure("[PreRebootOS] prereboot not success for invalid arg\n"));
    EXPECT_TRUE(operations().empty());
    EXPECT_TRUE(history().empty());
}

} // namespace
} // namespace test
