// SPDX-License-Identifier: Apache-2.0
// Coarse answers drawn from the hard type and a few items: OS type, CPU type, role, block time.
#include "base/report.hpp"
#include "base/result.hpp"

#include <moxboot/board.h>

using namespace moxboot;

namespace
{
constexpr uint32_t role_other_mpu = 0;
constexpr uint32_t role_mmb = 1;
constexpr uint32_t role_lpu = 3;
constexpr uint32_t role_other = 4;
constexpr uint32_t role_item_limit = 5; // the role item counts only below this
} // namespace

uint32_t MOX_GetOsType(void)
{
    uint32_t hard_type = 0;
    if (MOX_GetBoardHardType(&hard_type) == 0) {
        REPORT_FAILURE("Drvboot get os type NOK for get hard type NOK\n");
        return MOX_OSTYPE_UNKNOWN;
    }
    for (const DrvbootHardtypeOstype &row : g_arrHardtype2Ostype)
        if (row.hard_type == hard_type)
            return row.os_type & 0xff;
    return 0;
}

uint32_t MOX_GetCpuFullType(void)
{
    uint32_t type;
    switch (GetCpuIdFromLpu()) {
    case 10:
        type = 33;
        break;
    case 4:
    case 9:
        type = 35;
        break;
    default:
        type = 0;
        break;
    }
    REPORT_INFO("Drvboot get cpu full tpye 0x%x\n", type);
    return type;
}

int32_t MOX_GetRoleOfBoard(uint32_t *role)
{
    if (role == nullptr)
        return static_cast<int32_t>(refused);
    uint32_t hard_type = 0;
    if (MOX_GetBoardHardType(&hard_type) == 0) {
        REPORT_FAILURE("Drvboot get role of board not success for get hard type not success\n");
        return -1;
    }
    if (drvboot_IsMpu(hard_type) == 0) {
        *role = drvboot_IsLpu(hard_type) == 1 ? role_lpu : role_other;
        return 0;
    }
    // The role item answers with a failure on every board of today; a product may put its own getter in
    // front.
    if (drv_boot_get_boardrole(role) == ok && *role < role_item_limit)
        return 0;
    *role = MOX_BoardIsMMB() == 1 ? role_mmb : role_other_mpu;
    return 0;
}

int32_t MOX_GetBlockTime(uint32_t id)
{
    return id == MOX_BLOCK_TIME_ID ? 0 : static_cast<int32_t>(not_supported);
}
