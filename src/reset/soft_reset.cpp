// SPDX-License-Identifier: Apache-2.0
// The soft reset: a restart of the software that keeps reserved memory.
#include "base/report.hpp"
#include "base/result.hpp"
#include "board/item.hpp"

#include <moxboot/board.h>
#include <moxboot/channel.h>
#include <moxboot/platform.h>
#include <moxboot/reset.h>

#include <cstring>

using namespace moxboot;

namespace
{

constexpr uint32_t soft_act_disable_code = 0x1000299f;
constexpr uint32_t active_role = 1;
constexpr uint32_t soft_active = 1;
constexpr uint32_t soft_inactive = 2;

} // namespace

int32_t MOX_SoftRebootOS(uint32_t reason, const MoxResetDate *date)
{
    REPORT_INFO("SoftRebootOS: ResetReason id is %#x\n\n", reason);
    if (date == nullptr) {
        REPORT_FAILURE("SoftRebootOS: ResetTime is null pointer, can't reboot.\n\n");
        return -1;
    }
    int32_t result = MOX_RebootOS(reason, date);
    if (result != 0)
        REPORT_FAILURE("SoftRebootOS: reboot not success, uiRetval = %#x.\n\n",
                       static_cast<uint32_t>(result));
    return 0;
}

uint32_t DrvBoot_SetSoftReset_Switch(uint32_t value)
{
    if (MOX_IsSystemSupportSoftReset() == 0)
        return ok;
    REPORT_INFO("Set softrst switch enter, switch_value=%u.\r\n\n", value);
    char text[5] = {};
    sprintf_s(text, sizeof text, "%u", value); // stays empty when it does not fit
    if (bsp_setenv_s("package_set_flag", text, sizeof text) != ok) {
        REPORT_FAILURE("Set softrst switch unsuccessfully.\r\n\n");
        return refused;
    }
    return ok;
}

uint32_t MOX_Open_SoftReset(void)
{
    return DrvBoot_SetSoftReset_Switch(MOX_SOFT_RESET_OPEN);
}

uint32_t MOX_Close_SoftReset(void)
{
    return DrvBoot_SetSoftReset_Switch(MOX_SOFT_RESET_CLOSED);
}

uint32_t MOX_IsSystemSupportSoftReset(void)
{
    return drvboot_impl_is_system_support_softrst();
}

uint32_t MOX_IsBoardSupportSoftReset(uint32_t)
{
    drvboot_impl_is_mpu_brd(); // asked as ever; no board is reset softly alone, whatever the answer
    return 0;
}

uint32_t MOX_GetBoardSoftActiveState(uint32_t *state)
{
    if (state == nullptr)
        return refused;
    *state = MOX_GetBoardRole() == active_role ? soft_active : soft_inactive;
    return ok;
}

int32_t MOX_SetBoardSoftActiveState(uint32_t state)
{
    return static_cast<int32_t>(drvboot_impl_set_brd_soft_active_state(state));
}

int32_t MOX_GetSoftActDisableFlag(void)
{
    return static_cast<int32_t>(drvboot_impl_get_soft_act_disable());
}

uint32_t MOX_SetSoftActDisableFlag(void)
{
    uint32_t disabled = 1;
    uint32_t answer = 0; // asked for by the channel, of no use here
    DrvbootCmdRequest request = {};
    strcpy_s(request.device, sizeof request.device, board0);
    request.cmd = DRVBOOT_CMD_SET;
    request.l1type = DRVBOOT_TLV_L1_TYPE;
    request.l2type = soft_act_disable_code;
    request.data = &disabled;
    request.data_length = sizeof disabled;
    request.result = &answer;
    uint32_t result = drvboot_ioctrl(&request);
    if (result != ok) {
        REPORT_FAILURE("Drvboot set soft act disable flag unsuccessfully, excute cmd return 0x%x\n", result);
        return failed;
    }
    return ok;
}
