// SPDX-License-Identifier: Apache-2.0
// The watchdog: started and stopped by the board driver, cleared by the driver or by the kernel's watchdog
// service.
#include "base/report.hpp"
#include "base/result.hpp"
#include "board/item.hpp"

#include <moxboot/driver.h>
#include <moxboot/families.h>
#include <moxboot/watchdog.h>

#include <cerrno>
#include <fcntl.h>
#include <unistd.h>

using namespace moxboot;

int32_t g_fd_wdt = -1;
uint16_t g_CLEAR_KERNEL_DOG = 0;
uint16_t g_CLEAR_DOG_ERROR = 0;

namespace
{

// The words are shared with the pre-reset reason; who watches the log knows them as they are.
constexpr FailureText not_set = "Not succeed to set pre rst reason,ret=0x%x.\n";
constexpr Item enable = {board0, 0x10002808, not_set};
constexpr Item clear_ng = {board0, 0x1000280a, not_set};
constexpr uint32_t on = 1;
constexpr uint32_t off = 0;
constexpr uint32_t user_threshold = 1; // in the kernel service's own units

// 0 or an errno.
int send(uint32_t command, uint32_t value)
{
    const DrvbootWdtCommand record = {command, value};
    return write(g_fd_wdt, &record, sizeof record) < 0 ? errno : 0;
}

uint32_t give_up(int error)
{
    REPORT_FAILURE("Drvboot wdt clr dog no success errno(%d). \n", error);
    g_CLEAR_DOG_ERROR = 1;
    return failed;
}

uint32_t close_and_give_up(int error)
{
    close(g_fd_wdt);
    g_fd_wdt = -1;
    return give_up(error);
}

// Takes the feeding over from the kernel. 0 or an errno, reported.
int take_over()
{
    REPORT_INFO("Drvboot clear dog first time\n");
    int error = send(DRVBOOT_WDT_STOP_KERNEL_FEEDER, 0);
    if (error != 0 && error != EINVAL) { // EINVAL: this kernel has no feeder
        REPORT_FAILURE("Drvboot stop kernel WDG thread not success.\n");
        return error;
    }
    error = send(DRVBOOT_WDT_SET_THRESHOLD, user_threshold);
    if (error != 0) {
        REPORT_FAILURE("Drvboot set WDG threshold not success.\n");
        return error;
    }
    g_CLEAR_KERNEL_DOG = 1;
    return 0;
}

bool cleared_by_driver()
{
    uint8_t next_generation = 0;
    return DrvBoot_IsNgBoard(&next_generation, 0) == ok && next_generation == 1;
}

} // namespace

uint32_t drvboot_impl_wdt_clr_dog(void)
{
    if (g_CLEAR_DOG_ERROR == 1)
        return failed;
    if (g_fd_wdt < 0) {
        g_fd_wdt = open("/proc/wdt", O_WRONLY);
        if (g_fd_wdt < 0) {
            const int error = errno;
            REPORT_FAILURE("Drvboot clear dog not success, fd %d\n", g_fd_wdt);
            return give_up(error);
        }
    }
    if (int error = send(DRVBOOT_WDT_CLEAR, 0); error != 0) {
        REPORT_FAILURE("Drvboot clear WDG counter not success.\n");
        return close_and_give_up(error);
    }
    if (g_CLEAR_KERNEL_DOG != 0)
        return ok;
    const int error = take_over();
    return error == 0 ? ok : close_and_give_up(error);
}

uint32_t WDT_Clear_Dog(void)
{
    return drvboot_impl_wdt_clr_dog();
}

uint32_t drvboot_impl_wdt_ctrl(uint32_t op)
{
    switch (op) {
    case MOX_WDT_START:
        return write_item(enable, on);
    case MOX_WDT_STOP:
        return write_item(enable, off);
    case MOX_WDT_CLEAR:
        return cleared_by_driver() ? write_item(clear_ng, 0) : drvboot_impl_wdt_clr_dog();
    default:
        REPORT_FAILURE("Drvboot found unknown WDG operations 0x%x\n", op);
        return failed;
    }
}

uint32_t WDT_Ctrl(uint32_t op)
{
    uint32_t result = drvboot_impl_wdt_ctrl(op);
    if (result != ok)
        REPORT_INFO("wdt ctrl operate 0x%x, ret:%u\n", op, result);
    return result;
}

uint32_t MOX_WDTStart(void)
{
    REPORT_INFO("Drvboot enable WDG begin\n");
    uint32_t result = WDT_Ctrl(MOX_WDT_START);
    REPORT_INFO("Drvboot enable WDG end\n");
    return result;
}

uint32_t MOX_WDTStop(void)
{
    REPORT_INFO("Drvboot stop WDG begin\n");
    uint32_t result = WDT_Ctrl(MOX_WDT_STOP);
    REPORT_INFO("Drvboot stop WDG end\n");
    return result;
}

uint32_t MOX_WDTClear(void)
{
    return WDT_Ctrl(MOX_WDT_CLEAR);
}
