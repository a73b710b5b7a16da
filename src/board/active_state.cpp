// SPDX-License-Identifier: Apache-2.0
// Which of two boards is the active one, and how well the pair stands.
#include "base/report.hpp"
#include "base/result.hpp"
#include "board/item.hpp"

#include <moxboot/board.h>
#include <moxboot/channel.h>

using namespace moxboot;

namespace
{

constexpr uint32_t active_code = 0x10002982;
constexpr uint32_t ha_code = 0x1000221e;
constexpr Item mmb = {board0, 0x10002980, "Not succeed to get board is mmb,ret=0x%x.\n"};
constexpr Item active = {board0, active_code, "\r\n Not succeed to get board active,ret=0x%x.\n"};
constexpr Item hard_active_set = {
    board0, active_code, "Drvboot set board hard active state not success, excute cmd return 0x%x\n"};
constexpr Item hard_active_get = {
    board0, active_code, "Drvboot get board hard active state not success, excute cmd return 0x%x\n"};
constexpr Item soft_active_set = {
    board0, active_code, "Drvboot set board soft active state not success, excute cmd return 0x%x\n"};
constexpr Item xcs_active_set = {board0, ha_code,
                                 "Drvboot set board XCS active state not success, excute cmd return 0x%x\n"};
constexpr Item all_ha_get = {board0, ha_code,
                             "Drvboot get board all ha state not success, excute cmd return 0x%x\n"};
constexpr Item logic_ha = {board0, 0x10002205, "\r\n Not succeed to get board hardtype,ret=0x%x.\n"};
constexpr Item m2s_pid = {board0, 0x1000299d, "Not succeed to get m2s pid,ret=0x%x.\n"};
constexpr Item peer_xcs_slave = {board0, 0x10004726,
                                 "[SetPeerXcsSlave]:SetPeerXcsSlave not success, uiRetval = %#x.\n\n"};
constexpr uint32_t switch_over_ms = 2000;

uint32_t last_all_ha_status = 0;

// Reads a state for which 0 stands for yes.
uint32_t reads_zero(const Item &item)
{
    uint32_t state = 0;
    return read_item(item, &state) == ok && state == 0 ? 1 : 0;
}

} // namespace

uint32_t drvboot_impl_brd_is_mmb(void)
{
    if (drvboot_impl_is_mpu_brd() == 0) {
        REPORT_FAILURE("Drvboot check is board MMB not success for board is not mpu\n");
        return 0;
    }
    return reads_zero(mmb);
}

uint32_t MOX_BoardIsMMB(void)
{
    return drvboot_impl_brd_is_mmb();
}

uint32_t drvboot_impl_brd_status_is_active(void)
{
    if (drvboot_impl_is_mpu_brd() == 0) {
        REPORT_FAILURE("Drvboot check is board active not success for board is not mpu\n");
        return 0;
    }
    return reads_zero(active);
}

uint32_t MOX_BoardStatusIsActive(void)
{
    return drvboot_impl_brd_status_is_active();
}

uint32_t drvboot_impl_get_brd_hard_active_state(uint32_t *state)
{
    if (state == nullptr)
        return failed;
    if (drvboot_impl_is_mpu_brd() == 0) {
        *state = MOX_STATE_NOT_APPLICABLE;
        return ok;
    }
    return zero_or_failed(read_item(hard_active_get, state));
}

uint32_t MOX_GetBoardHardActiveState(uint32_t *state)
{
    return drvboot_impl_get_brd_hard_active_state(state);
}

uint32_t drvboot_impl_set_brd_hard_active_state(uint32_t state)
{
    if (state > 1) {
        REPORT_FAILURE("Drvboot set board hard active state not success for input arg(%u) is invalid\n",
                       state);
        return failed;
    }
    if (drvboot_impl_is_mpu_brd() == 0)
        return failed;
    return zero_or_failed(write_item(hard_active_set, state));
}

uint32_t drvboot_impl_set_brd_soft_active_state(uint32_t state)
{
    if (state != 1 && state != 2) {
        REPORT_FAILURE("Drvboot set board soft active state not success for input arg(%u) is invalid\n",
                       state);
        return failed;
    }
    if (drvboot_impl_is_mpu_brd() == 0 || write_item(soft_active_set, state == 2 ? 1 : 0) != ok)
        return failed;
    drvboot_taskdelay(switch_over_ms);
    return zero_or_failed(write_item(soft_active_set, 0));
}

uint32_t drvboot_impl_set_brd_xcs_active_state(void)
{
    if (drvboot_impl_is_mpu_brd() == 0)
        return failed;
    return zero_or_failed(write_item(xcs_active_set, 1));
}

uint32_t MOX_SetBoardXcsActiveState(uint32_t)
{
    return drvboot_impl_set_brd_xcs_active_state();
}

uint32_t drvboot_impl_get_brd_all_ha_status(uint32_t *status)
{
    if (status == nullptr) {
        REPORT_FAILURE("Drvboot get board all ha state not success for input arg is null\n");
        return failed;
    }
    if (drvboot_impl_is_mpu_brd() == 0) {
        *status = MOX_STATE_NOT_APPLICABLE;
        return ok;
    }
    if (read_item(all_ha_get, status) != ok)
        return failed;
    if (*status != last_all_ha_status) {
        last_all_ha_status = *status;
        REPORT_INFO("Drvboot get board all ha state 0x%x\n", *status);
    }
    return ok;
}

uint32_t drvboot_impl_get_logic_ha_status(void)
{
    if (drvboot_impl_is_mpu_brd() == 0) {
        REPORT_FAILURE("Drvboot get logic ha state not success for hard type is not mpu\n");
        return failed;
    }
    uint32_t status = 0;
    return read_item(logic_ha, &status) == ok ? status : failed;
}

uint32_t MOX_GetLogicHaStatus(void)
{
    return drvboot_impl_get_logic_ha_status();
}

uint32_t drvboot_impl_get_m2s_pid(uint32_t pid)
{
    if (drvboot_impl_is_mpu_brd() == 0) {
        REPORT_FAILURE("Drvboot get m2s pid not success for board is not mpu\n");
        return failed;
    }
    return write_item(m2s_pid, pid);
}

uint32_t MOX_GetM2SPID(uint32_t pid)
{
    return drvboot_impl_get_m2s_pid(pid);
}

uint32_t drvboot_impl_set_peer_xcs_slave(void)
{
    uint32_t result = drvboot_set_value_by_tlv(peer_xcs_slave.device, peer_xcs_slave.code, 0);
    return result == ok ? ok : static_cast<uint32_t>(report_item(peer_xcs_slave, result));
}

uint32_t MOX_Set_Peer_XCS_Slave(void)
{
    return drvboot_impl_set_peer_xcs_slave();
}
