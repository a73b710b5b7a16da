// SPDX-License-Identifier: Apache-2.0
// Wall clock and uptime.
#include "base/report.hpp"

#include <moxboot/time.h>

#include <sys/sysinfo.h>
#include <time.h>

namespace
{
constexpr int32_t clock_unset_below =
    11; // seconds; a start so near the epoch means that nobody has set the clock yet
}

uint32_t get_uptime(void)
{
    struct sysinfo info = {};
    return sysinfo(&info) == 0 ? static_cast<uint32_t>(info.uptime) : 0;
}

int32_t get_starttime(void)
{
    // Reckoned in the width of time_t, so that a board runs on beyond 2038; only the result is cut.
    time_t now = time(nullptr);
    time_t start = now - static_cast<time_t>(get_uptime());
    return static_cast<int32_t>(start < clock_unset_below ? now : start);
}

int32_t Drvboot_GetTime(DrvbootLocalTime *out)
{
    if (out == nullptr)
        return -1;
    time_t now = time(nullptr);
    struct tm local = {};
    if (now == static_cast<time_t>(-1) || localtime_r(&now, &local) == nullptr) {
        REPORT_INFO("Drv boot not success to get sys time.\n");
        return -1;
    }
    out->year = static_cast<uint16_t>(local.tm_year + 1900);
    out->month = static_cast<uint8_t>(local.tm_mon + 1);
    out->day = static_cast<uint8_t>(local.tm_mday);
    out->hour = static_cast<uint8_t>(local.tm_hour);
    out->minute = static_cast<uint8_t>(local.tm_min);
    out->second = static_cast<uint8_t>(local.tm_sec);
    return 0;
}
