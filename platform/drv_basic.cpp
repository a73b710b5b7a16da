// SPDX-License-Identifier: Apache-2.0
#include "drv.hpp"
#include "mcu.hpp"

#include <moxboot/platform.h>

namespace
{

constexpr uint32_t refused = 1;
constexpr uint32_t this_board = 0xFFFFFFFF;
constexpr uint32_t mcu = 4;

} // namespace

uint32_t drv_subboard_get_online_status(uint32_t board, uint32_t subboard, uint32_t *status)
{
    if (board != this_board || subboard != mcu || status == nullptr)
        return refused;
    return iof_get_attr_value("/dev/board0", DRVBOOT_TLV_L1_TYPE, platform::item_mcu_status, 0, status,
                              sizeof *status);
}
