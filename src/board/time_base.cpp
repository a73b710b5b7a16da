// SPDX-License-Identifier: Apache-2.0
// The CPU time base and what is reckoned from it.
#include "base/report.hpp"
#include "base/result.hpp"

#include <moxboot/platform.h>
#include <moxboot/time.h>

using namespace moxboot;

uint64_t drvboot_get_tb(void)
{
    uint32_t low = 0;
    uint32_t high = 0;
    drvboot_timer_get_base_64bit(&low, &high);
    return (static_cast<uint64_t>(high) << 32) | low;
}

uint32_t drvboot_timer_get_base_64bit(uint32_t *low, uint32_t *high)
{
    return iof_timer_get_base_64bit(low, high);
}

uint32_t MOX_GetCpuCurrentTick(uint32_t *low, uint32_t *high)
{
    return iof_timer_get_base_64bit(low, high);
}

uint64_t drvboot_GetCpuTimeBaseFreq(void)
{
    return iof_timer_get_freq();
}

uint64_t MOX_GetCpuTimeBase(void)
{
    return drvboot_GetCpuTimeBaseFreq();
}

uint32_t MOX_GetCpuTimeBaseFreq(void)
{
    return static_cast<uint32_t>(drvboot_GetCpuTimeBaseFreq()) / 100;
}

uint32_t drvboot_get_mftbl(void)
{
    return 0;
}

uint32_t drvboot_get_mftbu(void)
{
    return 0;
}

uint64_t GetBoardStartTime(void)
{
    uint64_t frequency = drvboot_GetCpuTimeBaseFreq();
    return frequency == 0 ? 0 : drvboot_get_tb() / frequency;
}

int32_t MOX_GetBoardRunTime(uint64_t *seconds)
{
    if (seconds == nullptr) {
        REPORT_FAILURE("Drvboot get board run time not success for input arg is null\n");
        return -1;
    }
    *seconds = GetBoardStartTime();
    return 0;
}

uint32_t MOX_GetCPURunTime(uint32_t *seconds, uint32_t *milliseconds)
{
    if (seconds == nullptr || milliseconds == nullptr)
        return failed;
    uint64_t frequency = drvboot_GetCpuTimeBaseFreq();
    if (frequency == 0)
        return failed;
    uint64_t ticks = drvboot_get_tb();
    *seconds = static_cast<uint32_t>(ticks / frequency);
    *milliseconds = static_cast<uint32_t>((ticks % frequency) * 1000 / frequency);
    return ok;
}
