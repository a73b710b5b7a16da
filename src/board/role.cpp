// SPDX-License-Identifier: Apache-2.0
// The board's role, and the backup state that some roles stand for.
#include "base/report.hpp"
#include "base/result.hpp"
#include "board/item.hpp"

#include <moxboot/board.h>
#include <moxboot/channel.h>

using namespace moxboot;

namespace
{

constexpr uint32_t role_code = 0x10002987;
constexpr Item role_get = {board0, role_code, "Not succeed to get board role,ret=0x%x.\n"};
constexpr Item role_set = {board0, role_code, "Not succeed to set board role,ret=0x%x.\n"};
constexpr uint32_t driver_role_code = 0x10002858;
constexpr Item driver_role_get = {board0, driver_role_code, "\r\nFailed to get board role,ret=0x%x.\n"};
constexpr Item driver_role_set = {board0, driver_role_code,
                                  "\r\n Not succeed to set role of brd,ret=0x%x.\n"};
constexpr Item backup_state_set = {board0, 0x1000474b,
                                   "Drvboot set backup state to drv not success, excute cmd return 0x%x\n"};

} // namespace

uint32_t drvboot_impl_set_brd_role(uint32_t role)
{
    if (drvboot_impl_is_mpu_brd() == 0) {
        REPORT_FAILURE("Drvboot set board role not success for board is not mpu\n");
        return failed;
    }
    return write_item(role_set, role);
}

uint32_t MOX_SetBoardRole(uint32_t role)
{
    return drvboot_impl_set_brd_role(role);
}

uint32_t drvboot_impl_get_brd_role(void)
{
    if (drvboot_impl_is_mpu_brd() == 0) {
        REPORT_FAILURE("Drvboot get board role not success for board is not mpu\n");
        return failed;
    }
    uint32_t role = 0;
    return read_item(role_get, &role) == ok ? role : failed;
}

uint32_t MOX_GetBoardRole(void)
{
    return drvboot_impl_get_brd_role();
}

uint32_t drvboot_impl_get_board_role(uint32_t *role)
{
    uint32_t ignored = 0;
    read_item(driver_role_get, &ignored);
    if (role != nullptr)
        *role = 0;
    return failed; // also when the read succeeds: callers rely on the fallback that this causes
}

uint32_t drv_boot_get_boardrole(uint32_t *role)
{
    return drvboot_impl_get_board_role(role);
}

uint32_t drvboot_impl_set_role_of_brd(uint32_t role)
{
    return write_item(driver_role_set, role);
}

uint32_t MOX_SetRoleOfBoard(uint32_t role)
{
    return drvboot_impl_set_role_of_brd(role);
}

uint32_t MOX_SetBoardBackupState(uint32_t state)
{
    if (state > 1)
        return refused;
    return MOX_SetBoardRole(state == 0 ? MOX_ROLE_BACKUP_0 : MOX_ROLE_BACKUP_1);
}

uint32_t MOX_GetBoardBackupState(uint32_t *state)
{
    if (state == nullptr)
        return refused;
    uint32_t role = MOX_GetBoardRole();
    if (role != MOX_ROLE_BACKUP_0 && role != MOX_ROLE_BACKUP_1)
        return refused;
    *state = role == MOX_ROLE_BACKUP_1 ? 1 : 0;
    return ok;
}

uint32_t drvboot_impl_set_backup_state_to_drv(uint32_t state)
{
    uint32_t result = drvboot_set_value_by_tlv(backup_state_set.device, backup_state_set.code, state);
    return result == ok ? ok : static_cast<uint32_t>(report_item(backup_state_set, result));
}

uint32_t MOX_SetBackupStatetoDrv(uint32_t state)
{
    return drvboot_impl_set_backup_state_to_drv(state);
}
