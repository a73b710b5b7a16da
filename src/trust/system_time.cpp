// SPDX-License-Identifier: Apache-2.0
// Sets the clock, and keeps the time over a restart.
#include "base/report.hpp"
#include "base/result.hpp"
#include "base/weak.hpp"

#include <moxboot/board.h>
#include <moxboot/driver.h>
#include <moxboot/env.h>
#include <moxboot/platform.h>
#include <moxboot/system_time.h>

#include <sys/time.h>

using namespace moxboot;

namespace
{

constexpr uint32_t keeps_time_elsewhere = 1; // hard active state
constexpr uint32_t hardware_position = 2;
constexpr int most_reports = 3;

int clock_reports = 0; // without a lock

} // namespace

uint32_t MOX_PdtSetSystemTime(int32_t seconds, int32_t microseconds)
{
    if (seconds < 0 || microseconds < 0)
        return refused;
    char text[DRVBOOT_ENV_SIZE] = {};
    const timeval time{seconds, microseconds};
    if (settimeofday(&time, nullptr) != 0) {
        if (clock_reports < most_reports) {
            ++clock_reports;
            REPORT_FAILURE("[ERR] settimeofday iSec = %d, iUsec = %d, buf = %s\r\n\n", seconds, microseconds,
                           static_cast<const char *>(text));
        }
        return refused;
    }
    uint32_t state = 0;
    if (MOX_GetBoardHardActiveState(&state) != ok)
        return refused;
    if (state == keeps_time_elsewhere)
        return ok;
    const int length = snprintf_truncated_s(text, sizeof text, "%d", seconds);
    const char *name = "board_system_time";
    if (drv_setenv_s(name, text, length) != ok) {
        REPORT_FAILURE("[ERR] MOX_PdtSetSystemTime iSec = %d, iUsec = %d, buf = %s\r\n\n", seconds,
                       microseconds, static_cast<const char *>(text));
        return refused;
    }
    if (drv_saveenv() != ok) {
        REPORT_FAILURE("[ERR] Cant't saveenv \r\n\n");
        return refused;
    }
    REPORT_INFO("[OK] MOX_PdtSetSystemTime iSec = %d, iUsec = %d, buf = %s\r\n\n", seconds, microseconds,
                static_cast<const char *>(text));
    return ok;
}

MOXBOOT_WEAK uint32_t DEV_HardwareOmPosition(void)
{
    return hardware_position;
}

MOXBOOT_WEAK uint32_t MOX_GetHardMngMode(void)
{
    return 0;
}
