// SPDX-License-Identifier: Apache-2.0
// The words of resets, reboots and the watchdog stand in the library as they are printed.
#include "support/library_texts.hpp"

namespace
{

constexpr std::string_view reset_texts[] = {
    "Drvboot reboot os, reason 0x%x, backup state %u\n",
    "Drvboot reboot os not success for date string arg is null\n",
    "The system is going down now\n",
    "Set SCC/XCS when reboot system\n",
    "Clear dog before notify board driver rst\n",
    "Notify board driver rst\n",
    "Drvboot reboot self not success, return 0x%x\n",
    "Sync file system when reboot os\n",
    "Sync file system end\n",
    "[PreRebootOS] reset reason 0x%x, backup state %u\n",
    "[PreRebootOS] prereboot not success for invalid arg\n",
    "[PreRebootOS] Set SCC/XCS when reboot system\n",
    "[PreRebootOS] SelfReset result 0x%x\n",
    "[PreRebootOS] Sync file system when befor reboot os\n",
    "[PreRebootOS] Shutting down system pretreat done\n",
    "\r\n Not succeed to set pre rst reason,ret=0x%x.\n",
    "Drvboot rst self not success for input arg is null\n",
    "Drvboot rst self not success for open board0 not ok(%d), fd 0x%x\n",
    "Drvboot rst self, reason id 0x%x, date %u/%u/%u %u:%u:%u\n",
    "Drvboot execute reboot unsuccess for execv not ok(%d)\n",
    "[drv_boot] reboot by proxy unsuccessfully.\n\n",
    "Drvboot set board attr not success for input arg is null\n",
    "Drvboot set attr 0x%x value not success for the attrid is unknown\n",
    "Drvboot set attr 0x%x value to reboot enable\n",
    "Drvboot get board attr not success for input arg is null\n",
};

constexpr std::string_view record_texts[] = {
    "Drvboot read rst reason not success for memory exhaust\n",
    "Drvboot read rst reason not success for open /dev/board0 not ok(%d), fd %d\n",
    "Drvboot read rst reason not success for ioctl return %d, not ok: %d\n",
    "Drvboot read rst reason not success for TLV value(0x%x) invalid\n",
    "Drvboot read rst reason %s\n",
    "String copy not success, return check code=%d\n\n",
    "String print not success, return check code=%d\n\n",
    "Memory set not success, return check code=%d\n\n",
    "memcpy_s not success, not ok code = %d\n\n",
    "%04u/%02u/%02u %02u:%02u:%02u,%#010x,",
    "%Y/%m/%d %H:%M:%Ss,0x1010013",
    "Drvboot read rst mode not success for memory exhaust\n",
    "Drvboot read rst mode not success for open /dev/board0 not ok(%d), fd %d\n",
    "Drvboot read rst mode not success for ioctl return %d, not ok: %d\n",
    "%04u%02u%02u%02u%02u%02u",
    "[Board]Get reset codeName[%s] timeName[%s].",
    "[Board]get env name NOK, return 0x%x",
    "[Board]sprintf env[%s] NOK, return 0x%x",
    "[Board]Set %s env NOK, return 0x%x",
    "[Board]Set %s(0x%x) %s(%s) env success.",
};

constexpr std::string_view pre_reset_texts[] = {
    "/dev/lm_preproc_req",
    "/dev/lm_preproc_ack",
    "[PRRESET]Module[%s]'s pre rst func is exist already.\n",
    "[PRRESET]Module[%s] register pre rst func not success because of tbl full.\n",
    "[PRRESET]Module[%s] register pre rst func.\n",
    "[PRRESET]Create fifo[%s] Nok[%s].\n",
    "[PRRESET]Create fifo[%s] success.\n",
    "[PRRESET]Task create threadid=0x%lx, pid=0x%x, ret=0x%x.\n",
    "[PRRESET]Pre rst thread run.\n",
    "[PRRESET]Open fifo[%s] to read NOK[%s].\n",
    "[PRRESET]Read fifo[%s] NOK[%s].\n",
    "[PRRESET]Pre rst start.\n",
    "[PRRESET]Pre rst thread end.\n",
    "[PRRESET]Get pre rst mode not success, ret=0x%x.\n",
    "[PRRESET]Module[%s] pre rst proc, resetmode=%u.\n",
    "[PRRESET]Open fifo[%s] to write NOK[%s].\n",
    "[PRRESET]Notice pre rst start ok!\n",
    "[PRRESET]Pre rst is over, Read fifo[%s] Nok[%s].\n",
    "[PRRESET]Notice pre rst end ok!\n\n",
};

constexpr std::string_view watchdog_texts[] = {
    "/proc/wdt",
    "Drvboot enable WDG begin\n",
    "Drvboot enable WDG end\n",
    "Drvboot stop WDG begin\n",
    "Drvboot stop WDG end\n",
    "wdt ctrl operate 0x%x, ret:%u\n",
    "Drvboot found unknown WDG operations 0x%x\n",
    "Not succeed to set pre rst reason,ret=0x%x.\n",
    "Drvboot clear dog not success, fd %d\n",
    "Drvboot wdt clr dog no success errno(%d). \n",
    "Drvboot clear WDG counter not success.\n",
    "Drvboot clear dog first time\n",
    "Drvboot stop kernel WDG thread not success.\n",
    "Drvboot set WDG threshold not success.\n",
};

constexpr std::string_view soft_reset_texts[] = {
    "SoftRebootOS: ResetReason id is %#x\n\n",
    "SoftRebootOS: ResetTime is null pointer, can't reboot.\n\n",
    "SoftRebootOS: reboot not success, uiRetval = %#x.\n\n",
    "Set softrst switch enter, switch_value=%u.\r\n\n",
    "Set softrst switch unsuccessfully.\r\n\n",
    "package_set_flag",
    "Drvboot set soft act disable flag unsuccessfully, excute cmd return 0x%x\n",
};

TEST(ResetTexts, StandInTheLibraryAsTheyArePrinted)
{
    test::expect_in_library(reset_texts);
    test::expect_in_library(record_texts);
    test::expect_in_library(pre_reset_texts);
    test::expect_in_library(watchdog_texts);
    test::expect_in_library(soft_reset_texts);
}

// Spellings that somebody might put right: they are the system's own and stay.
TEST(ResetTexts, AreNotPutRight)
{
    constexpr std::string_view put_right[] = {
        "before reboot os",    "errno(%d).\n", "execute cmd return", "clear dog not success, fd 0x",
        "reboot unsuccessful",
    };
    test::expect_not_in_library(put_right);
}

} // namespace
