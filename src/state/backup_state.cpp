// SPDX-License-Identifier: Apache-2.0
// Whether the backup is ready, and which boards run on their own.
#include "base/report.hpp"
#include "base/result.hpp"
#include "base/weak.hpp"

#include <moxboot/backup.h>
#include <moxboot/board.h>
#include <moxboot/driver.h>
#include <moxboot/platform.h>

using namespace moxboot;

namespace
{

constexpr const char *variable = "backup_state";

constexpr uint32_t first_self_run_type = 0x9000085d;
constexpr uint32_t self_run_types = 21;
constexpr uint32_t self_run_mask = 0x17007F; // a bit for each type from the first one on

} // namespace

uint32_t g_backupState = MOX_BACKUP_UNREADY;

int32_t MOX_SetBackupState(uint32_t state)
{
    REPORT_INFO("Drvboot set backup state %u(0:ready 1:unready)\n", state);
    char text[2] = {};
    sprintf_s(text, sizeof text, "%d", static_cast<int8_t>(state)); // empty for more than one digit
    uint32_t result = SetEnv(variable, text);
    if (result != ok)
        REPORT_INFO("Drvboot set backup state not success for set env %s not success, return 0x%x\n",
                    variable, result);
    g_backupState = state;
    return static_cast<int32_t>(MOX_SetBackupStatetoDrv(state));
}

uint32_t MOX_GetBackupState(uint16_t *state)
{
    if (state == nullptr)
        return failed;
    char value[DRVBOOT_ENV_SIZE] = {};
    uint32_t result = GetEnv(variable, value);
    if (result != ok) {
        REPORT_INFO("Drvboot get backup state not success for get env %s not success, return 0x%x\n",
                    variable, result);
        return result;
    }
    const char text[3] = {value[0], value[1], '\0'};
    unsigned number = 0;
    int parsed = sscanf_s(text, "%u", &number);
    if (parsed != 1)
        return static_cast<uint32_t>(parsed);
    *state = static_cast<uint16_t>(number);
    return ok;
}

uint32_t MOX_IsBoardSuppSelfRun(uint32_t hard_type)
{
    const uint32_t index = hard_type - first_self_run_type;
    return index < self_run_types ? self_run_mask >> index & 1 : 0;
}

MOXBOOT_WEAK uint32_t MOX_IsSysSelfRunEnable(void)
{
    return 1;
}

MOXBOOT_WEAK uint32_t MOX_GetSysMMBState(void)
{
    return 0;
}
