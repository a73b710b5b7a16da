// SPDX-License-Identifier: Apache-2.0
#include "drv.hpp"
#include "item.hpp"
#include "mcu.hpp"

#include <moxboot/driver.h>

uint32_t drv_sec_mcu_get_mcu_die_id(uint8_t *id, uint32_t size, uint32_t *length)
{
    // A caller with more room than an id can need still gets no more than that.
    const uint32_t room = size < platform::most_die_id_bytes ? size : platform::most_die_id_bytes;
    return moxplatform_read_item("/dev/board0", DRVBOOT_TLV_L1_TYPE, platform::item_mcu_die_id, id, room,
                                 length);
}
