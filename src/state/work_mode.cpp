// SPDX-License-Identifier: Apache-2.0
// The work mode: chosen from the platform environment at start-up, kept over a reset that asks for that.
#include "base/report.hpp"
#include "base/result.hpp"

#include <moxboot/driver.h>
#include <moxboot/platform.h>
#include <moxboot/work_mode.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <iterator>

using namespace moxboot;

namespace
{

constexpr const char *next_mode = "nextworkmode";
constexpr const char *current_mode = "curworkmode";
constexpr const char ptn_mode[] = "ptn_iot";
constexpr const char keep_mark[] = "0x55aa";
constexpr uint32_t reset_flag_size = 36;
constexpr unsigned long never_ptn[] = {104, 105, 113, 114, 115}; // package types

bool begins_with(const char *text, const char *beginning)
{
    return strncmp(text, beginning, strlen(beginning)) == 0;
}

// Whether the last reset asked for the current mode to be kept.
bool mode_kept()
{
    char flag[reset_flag_size] = {};
    if (bsp_getmemenv_s("lcs_reset_flag", flag, sizeof flag) != ok) {
        REPORT_INFO("get next work lcs_reset_flag is null.\n");
        return false;
    }
    return begins_with(flag, keep_mark);
}

} // namespace

uint32_t DrvBoot_GetWorkMode(void)
{
    const char *name = mode_kept() ? current_mode : next_mode;
    char mode[DRVBOOT_ENV_SIZE] = {};
    if (GetEnv(name, mode) != ok)
        REPORT_INFO("get next work mode env %s.\n", next_mode); // whichever was asked
    if (strcmp(mode, ptn_mode) != 0)
        return failed;
    REPORT_INFO("get next work mode env %s is %s\n", name, mode);
    return ok;
}

uint32_t DrvBoot_IsPtnMode(void)
{
    char type[DRVBOOT_ENV_SIZE] = {};
    if (bsp_getmemenv_s("pack_type", type, sizeof type) != ok) {
        REPORT_INFO("get next work mode env %s.\n", next_mode);
        return failed;
    }
    const unsigned long number = strtoul(type, nullptr, 10);
    if (std::find(std::begin(never_ptn), std::end(never_ptn), number) != std::end(never_ptn)) {
        REPORT_INFO("get cc val is %u\n", static_cast<uint32_t>(number));
        return failed;
    }
    return DrvBoot_GetWorkMode();
}

void drv_getptnmode(uint8_t *is_ptn, const char *env_name)
{
    if (is_ptn == nullptr || env_name == nullptr)
        return;
    char mode[DRVBOOT_ENV_SIZE] = {};
    if (GetEnv(env_name, mode) != ok) {
        REPORT_INFO("get next work mode env %s.\n", env_name);
        *is_ptn = 0;
        return;
    }
    *is_ptn = begins_with(mode, ptn_mode) ? 1 : 0;
    REPORT_INFO("get next work mode env %s,condition 0x%x\n", env_name, static_cast<uint32_t>(*is_ptn));
}

uint32_t DrvBoot_PtnMode(uint8_t *is_ptn, uintptr_t)
{
    if (is_ptn == nullptr)
        return failed;
    const bool kept = mode_kept();
    char current[DRVBOOT_ENV_SIZE] = {};
    if (GetEnv(current_mode, current) != ok)
        REPORT_INFO("get current work NOK\n");
    if (kept) {
        *is_ptn = begins_with(current, ptn_mode) ? 1 : 0;
        return ok;
    }
    drv_getptnmode(is_ptn, next_mode);
    if (SetEnv(current_mode, *is_ptn != 0 ? ptn_mode : "base") != ok)
        REPORT_FAILURE("set current workmode env %s not success.\n", current_mode);
    return ok;
}
