// SPDX-License-Identifier: Apache-2.0
// The trace of early resets in the boot environment. The first two places keep the first two resets ever
// traced, every later one takes the third.
#include "base/report.hpp"
#include "base/result.hpp"

#include <moxboot/env.h>
#include <moxboot/platform.h>
#include <moxboot/reset.h>

#include <time.h>

using namespace moxboot;

namespace
{

bool taken(const char *name)
{
    char value[MOX_RESET_ENV_SIZE] = {};
    return drv_getenv_s(name, value, sizeof value) == ok && value[0] != '\0';
}

// What stands behind the names of the place to write to.
const char *place()
{
    if (!taken("early_reset_code"))
        return "";
    return taken("early_reset_code1") ? "2" : "1";
}

} // namespace

int32_t drvBootGetRstEnvName(char *code_name, char *time_name, uint32_t len)
{
    const char *suffix = place();
    int32_t sum = sprintf_s(code_name, len, "early_reset_code%s", suffix) +
                  sprintf_s(time_name, len, "early_reset_time%s", suffix);
    REPORT_INFO("[Board]Get reset codeName[%s] timeName[%s].", code_name, time_name);
    return sum;
}

int32_t WriteResetReasonToEnv(uint32_t code, const MoxResetDate *date)
{
    if (date == nullptr)
        return -1;
    char code_name[MOX_RESET_ENV_SIZE] = {};
    char time_name[MOX_RESET_ENV_SIZE] = {};
    if (drvBootGetRstEnvName(code_name, time_name, MOX_RESET_ENV_SIZE) < 1)
        REPORT_FAILURE("[Board]get env name NOK, return 0x%x", 0u);

    char code_text[MOX_RESET_ENV_SIZE] = {};
    char time_text[MOX_RESET_ENV_SIZE] = {};
    const auto hour = static_cast<int8_t>(date->hour);
    int32_t printed =
        sprintf_s(code_text, sizeof code_text, "0x%x", code) +
        sprintf_s(time_text, sizeof time_text, "%04u%02u%02u%02u%02u%02u", date->year, date->month, date->day,
                  static_cast<uint32_t>(hour), date->minute, date->second);
    if (printed < 1)
        return REPORT_FAILURE("[Board]sprintf env[%s] NOK, return 0x%x", code_name,
                              static_cast<uint32_t>(printed));

    uint32_t code_set = drv_setenv_s(code_name, code_text, sizeof code_text);
    uint32_t time_set = drv_setenv_s(time_name, time_text, sizeof time_text);
    uint32_t saved = drv_saveenv();
    if (code_set != ok || time_set != ok || saved != ok)
        return REPORT_FAILURE("[Board]Set %s env NOK, return 0x%x", code_name,
                              static_cast<uint32_t>(printed));
    return REPORT_INFO("[Board]Set %s(0x%x) %s(%s) env success.", code_name, code, time_name, time_text);
}

int32_t Drvboot_ResetTimeStamp(const MoxResetDate *date)
{
    if (date == nullptr)
        return -1;
    struct tm local = {}; // week day, day of the year and daylight saving 0
    local.tm_year = date->year - 1900;
    local.tm_mon = date->month - 1;
    local.tm_mday = date->day;
    local.tm_hour = date->hour;
    local.tm_min = date->minute;
    local.tm_sec = date->second;
    return static_cast<int32_t>(mktime(&local));
}
