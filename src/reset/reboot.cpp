// SPDX-License-Identifier: Apache-2.0
// The reboot: the board is taken down in order, and no failure on the way keeps it up.
#include "base/report.hpp"
#include "base/result.hpp"
#include "base/weak.hpp"

#include <moxboot/backup.h>
#include <moxboot/board.h>
#include <moxboot/platform.h>
#include <moxboot/reset.h>
#include <moxboot/watchdog.h>

#include <cerrno>
#include <csignal>
#include <unistd.h>

using namespace moxboot;

namespace
{

constexpr uint32_t xcs_active = 1;
constexpr int32_t proxy_needed = 1;
constexpr uint32_t proxy_output = 960; // bytes

void reboot_directly()
{
    char path[] = "/sbin/reboot";
    char *const arguments[] = {path, nullptr};
    execv(path, arguments);
    REPORT_FAILURE("Drvboot execute reboot unsuccess for execv not ok(%d)\n", errno);
}

void reboot_by_proxy()
{
    constexpr char command[] = "reboot";
    char output[proxy_output] = {};
    if (RootProxyExecCmd(command, sizeof command, output, sizeof output) != 0)
        REPORT_FAILURE("[drv_boot] reboot by proxy unsuccessfully.\n\n");
}

} // namespace

int32_t MOX_RebootOS(uint32_t reason, const MoxResetDate *date)
{
    REPORT_INFO("Drvboot reboot os, reason 0x%x, backup state %u\n", reason, g_backupState);
    if (reason == MOX_RESET_FAST) {
        MOX_FastReboot();
        return 0;
    }
    if (date == nullptr) {
        REPORT_FAILURE("Drvboot reboot os not success for date string arg is null\n");
        return -1;
    }
    if (reason == MOX_RESET_TRACED)
        WriteResetReasonToEnv(reason, date);
    REPORT_INFO("The system is going down now\n");
    REPORT_INFO("Set SCC/XCS when reboot system\n");
    MOX_SetBoardXcsActiveState(xcs_active);
    REPORT_INFO("Clear dog before notify board driver rst\n");
    WDT_Ctrl(MOX_WDT_CLEAR);
    REPORT_INFO("Notify board driver rst\n");
    if (uint32_t result = MOX_SelfReset(reason, date); result != ok)
        REPORT_FAILURE("Drvboot reboot self not success, return 0x%x\n", result);
    REPORT_INFO("Sync file system when reboot os\n");
    sync();
    REPORT_INFO("Sync file system end\n");
    WDT_Ctrl(MOX_WDT_CLEAR);
    drvboot_reboot();
    return 0;
}

int32_t MOX_PreRebootOS(uint32_t reason, const MoxResetDate *date)
{
    REPORT_INFO("[PreRebootOS] reset reason 0x%x, backup state %u\n", reason, g_backupState);
    if (reason == MOX_RESET_FAST) {
        MOX_FastReboot();
        return 0;
    }
    if (date == nullptr) {
        REPORT_FAILURE("[PreRebootOS] prereboot not success for invalid arg\n");
        return -1;
    }
    REPORT_INFO("[PreRebootOS] Set SCC/XCS when reboot system\n");
    MOX_SetBoardXcsActiveState(xcs_active);
    REPORT_INFO("Notify board driver rst\n");
    if (uint32_t result = MOX_SelfReset(reason, date); result != ok)
        REPORT_FAILURE("[PreRebootOS] SelfReset result 0x%x\n", result);
    REPORT_INFO("[PreRebootOS] Sync file system when befor reboot os\n");
    WDT_Ctrl(MOX_WDT_CLEAR);
    sync();
    WDT_Ctrl(MOX_WDT_CLEAR);
    REPORT_INFO("[PreRebootOS] Shutting down system pretreat done\n");
    // A reboot that never comes ends in a watchdog reset.
    WDT_Ctrl(MOX_WDT_START);
    return 0;
}

MOXBOOT_WEAK void MOX_FastReboot(void) {}

void drvboot_reboot(void)
{
    WDT_Ctrl(MOX_WDT_CLEAR);
    WDT_Ctrl(MOX_WDT_START);
    if (IsNeedRootProxy() == proxy_needed)
        reboot_by_proxy();
    else
        reboot_directly();
    drvboot_loop_forever();
}

void drvboot_loop_forever(void)
{
    for (;;)
        sleep(1);
}

int32_t drvboot_sigprocmask_allsigs(int32_t how)
{
    sigset_t all;
    sigfillset(&all);
    return sigprocmask(how, &all, nullptr);
}
