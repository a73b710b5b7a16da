// SPDX-License-Identifier: Apache-2.0
// The ACT light, which blinks while a software package is being synchronised between the boards of a pair.
#include "base/report.hpp"
#include "base/result.hpp"
#include "board/item.hpp"

#include <moxboot/board.h>
#include <moxboot/platform.h>

using namespace moxboot;

namespace
{

constexpr const char *capability_variable = "actx_led_support";
constexpr size_t capability_digits = 4;
constexpr Item sync_flag = {board0, 0x100030a9,
                            "Drvboot set cc pkg sync flag not success, excute cmd return 0x%x\n"};

} // namespace

uint32_t drv_get_actx_led_flag(uint32_t *capable)
{
    if (capable == nullptr)
        return DRVBOOT_ERR_IOCTL;
    char value[DRVBOOT_ENV_SIZE] = {};
    uint32_t result = GetEnv(capability_variable, value);
    if (result != ok) {
        REPORT_FAILURE("Drvboot get actx led flag not success for get env %s return 0x%x\n",
                       capability_variable, result);
        return result;
    }
    char digits[capability_digits + 1] = {};
    strncpy_s(digits, sizeof digits, value, capability_digits);
    uint32_t number = 0;
    int fields = sscanf_s(digits, "%u", &number);
    if (fields != 1) {
        REPORT_FAILURE("String copy unsuccessfully, return check code=%d\n\n", fields);
        return DRVBOOT_ERR_IOCTL;
    }
    *capable = number;
    return ok;
}

uint32_t drvboot_impl_set_sync_ccpkg_flag(uint32_t flag)
{
    if (drvboot_impl_is_mpu_brd() == 0) {
        REPORT_FAILURE("Drvboot set sync cc pkg flag, board not support\n");
        return ok;
    }
    uint32_t capable = 0;
    if (drv_get_actx_led_flag(&capable) != ok) {
        REPORT_FAILURE("Drvboot set sync cc pkg flag not success for get actx led flag not success\n");
        return failed;
    }
    if (capable == 0) {
        REPORT_INFO("Drvboot set sync cc pkg flag, board not support twinkle actx led\n");
        return ok;
    }
    uint32_t state = 0;
    if (drvboot_impl_get_brd_hard_active_state(&state) != ok || state == 0) {
        REPORT_INFO("Drvboot set sync cc pkg flag, can not set actx led flag, return ok\n");
        return ok;
    }
    if (write_item(sync_flag, flag) != ok)
        return failed;
    REPORT_INFO("Drvboot set sync flag %u success\n", flag);
    return ok;
}

uint32_t MOX_SetSyncCCPkgFlag(uint32_t flag)
{
    return drvboot_impl_set_sync_ccpkg_flag(flag);
}
