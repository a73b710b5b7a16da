// SPDX-License-Identifier: Apache-2.0
// Which function knows which fact about the product.
#include <moxboot/entropy.h>
#include <moxboot/product.h>

constexpr DrvbootItem g_cmd_ItemTbl[DRVBOOT_ITEMS] = {
    {MOX_PDT_RANDOM, entropy_read_wrapper},
    {MOX_PDT_DYNAMIC_CPU_SWITCH, DrvBootGetInfoDynamicCpuSwitch},
    {MOX_PDT_CHECK_PERIOD, DrvBootGetCheckPeriod},
    {MOX_PDT_BACKUP_PROTECT, DrvBootGetBackupProtect},
    {MOX_PDT_BACKUP_RESERVE_SPACE, DrvBootGetBackupReserveSpace},
    {MOX_PDT_BACKUP_PACKAGE_START, DrvBootGetBackupPackageStarttime},
    {MOX_PDT_PRODUCT_SERVICE_TYPE, Drvboot_GetProductServiceType},
    {MOX_PDT_PRODUCT_NAME, Drvboot_GetProductName},
    {MOX_PDT_LOCATION_MONITOR_IP, Drvboot_JudgeSupportLocationMonitorFixedIP},
    {MOX_PDT_RANDOM_MIN_ENTROPY, DrvBootGetRandMimEntropy},
};
static_assert(g_cmd_ItemTbl[DRVBOOT_ITEMS - 1].type == MOX_PDT_RANDOM_MIN_ENTROPY, "a row is missing");
