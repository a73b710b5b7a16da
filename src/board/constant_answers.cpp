// SPDX-License-Identifier: Apache-2.0
// Questions whose answer has become a constant. The platform still calls them; no driver request is made.
#include "base/report.hpp"
#include "base/result.hpp"
#include "base/weak.hpp"

#include <moxboot/board.h>

using namespace moxboot;

uint32_t drvboot_impl_get_auto_upgrade_flag(void)
{
    return 0;
}

MOXBOOT_WEAK uint32_t MOX_GetAutoUpgrade_Flag(void)
{
    return drvboot_impl_get_auto_upgrade_flag();
}

uint32_t drvboot_impl_set_quick_start_flag(void)
{
    return 0;
}

uint32_t setQuickStartFlag(void)
{
    return drvboot_impl_set_quick_start_flag();
}

uint32_t setNotQuickstartFlag(void)
{
    return 0;
}

uint32_t drvboot_impl_set_master_brd_enable(void)
{
    return failed;
}

uint32_t MOX_SetMasterBoardEnable(void)
{
    return drvboot_impl_set_master_brd_enable();
}

uint32_t drvboot_impl_get_soft_act_disable(void)
{
    return failed;
}

uint32_t MOX_SetDelayVoteSlave(void)
{
    return 0;
}

MOXBOOT_WEAK uint32_t MOX_IsRunInLS(void)
{
    return 0;
}

MOXBOOT_WEAK void MOX_CpuOverLoadHandleHook(void) {}

uint32_t MOX_UseBootpCount(void)
{
    REPORT_FAILURE("Drvboot return use bootp is true\n"); // no failure, but always traced like one
    return 1;
}
