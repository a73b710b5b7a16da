// SPDX-License-Identifier: Apache-2.0
// Whether reboot is under the platform's control. Kept for the platform; nothing here reads it.
#include "base/report.hpp"

#include <moxboot/reset.h>

uint32_t g_attr_reboot_ctl = MOX_REBOOT_ENABLED;

int32_t MOX_SetBoardAttr(uint32_t attr_id, const uint32_t *value)
{
    if (value == nullptr) {
        REPORT_FAILURE("Drvboot set board attr not success for input arg is null\n");
        return -1;
    }
    if (attr_id != MOX_ATTR_REBOOT_CONTROL) {
        REPORT_FAILURE("Drvboot set attr 0x%x value not success for the attrid is unknown\n", attr_id);
        return -1;
    }
    uint32_t control = *value;
    if (control != MOX_REBOOT_ENABLED && control != MOX_REBOOT_CONTROLLED) {
        REPORT_INFO("Drvboot set attr 0x%x value to reboot enable\n", attr_id);
        control = MOX_REBOOT_ENABLED;
    }
    g_attr_reboot_ctl = control;
    return 0;
}

int32_t MOX_GetBoardAttr(uint32_t attr_id, uint32_t *value)
{
    if (value == nullptr) {
        REPORT_FAILURE("Drvboot get board attr not success for input arg is null\n");
        return -1;
    }
    if (attr_id != MOX_ATTR_REBOOT_CONTROL)
        return -1;
    *value = g_attr_reboot_ctl;
    return 0;
}
