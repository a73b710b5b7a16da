// SPDX-License-Identifier: Apache-2.0
// The other boards: registration of the slave, hardware faults of the peer.
#include "base/report.hpp"
#include "base/result.hpp"
#include "board/item.hpp"

#include <moxboot/board.h>

using namespace moxboot;

namespace
{

constexpr Item slave_registration = {
    board0, 0x10003044, "Drvboot get slave board reg status not success, excute cmd return 0x%x\n"};
constexpr Item hard_bad = {board0, 0x100030ad,
                           "Drvboot get board hardbad status not success, excute cmd return 0x%x\n"};
constexpr unsigned peer_half = 16; // the lower half is this board's own

uint32_t last_hard_bad = 0;

} // namespace

uint32_t drvboot_impl_get_slavebrd_reg_status(uint32_t *status)
{
    return read_item(slave_registration, status);
}

uint32_t MOX_GetSlaveBoardRegStatus(uint32_t *status)
{
    return drvboot_impl_get_slavebrd_reg_status(status);
}

uint32_t drvboot_impl_get_peerbrd_hardbad_status(uint32_t *status)
{
    if (status == nullptr)
        return failed;
    uint32_t raw = 0;
    uint32_t result = read_item(hard_bad, &raw);
    if (raw != last_hard_bad) {
        last_hard_bad = raw;
        REPORT_INFO("Get hard status =  0x%x\n", raw);
    }
    *status = raw >> peer_half;
    REPORT_INFO("Get peer hard status =  0x%x\n", *status);
    return result;
}

uint32_t Drv_GetPeerBoardHardBadStatus(uint32_t *status)
{
    return drvboot_impl_get_peerbrd_hardbad_status(status);
}
