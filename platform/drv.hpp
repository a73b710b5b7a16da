// SPDX-License-Identifier: Apache-2.0
// The functions of the board-support libraries that are opened at run time, one in each.
#pragma once

#include <moxboot/types.h>

MOXBOOT_BEGIN

// "libdrv_basic.so": whether a sub-board is online (0). Only this board (0xFFFFFFFF) and its MCU (sub-board
// 4) are known. 0, or non-zero with the status untouched.
MOXBOOT_API uint32_t drv_subboard_get_online_status(uint32_t board, uint32_t subboard, uint32_t *status);

// "libdrv_basic.so": writes a file to the start-up flash area of its kind (256 BIOS, 260 OS package, 265
// HSM). 0, or non-zero with the area as it was, unless only its new name could not be made to last.
MOXBOOT_API uint32_t drv_update_startup_file(uint32_t startup_type, const char *path);

// "libdrv_basic.so": empties an area; the other arguments are 0 and 1. 0, also when it was empty, or non-zero
// with the area as it was, unless only its absence could not be made to last.
MOXBOOT_API uint32_t drv_update_delete_startup_file(uint32_t startup_type, uint32_t zero, uint32_t one);

// "libdrv_secure.so": the MCU's die id of at most 32 bytes; `length` receives their number. 0, or non-zero
// with both outputs untouched, also when the id has more than `size` bytes.
MOXBOOT_API uint32_t drv_sec_mcu_get_mcu_die_id(uint8_t *id, uint32_t size, uint32_t *length);

MOXBOOT_END
