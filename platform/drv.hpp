// SPDX-License-Identifier: Apache-2.0
// The functions of the board-support libraries that are opened at run time, one in each.
#pragma once

#include <moxboot/types.h>

MOXBOOT_BEGIN

// "libdrv_basic.so": whether a sub-board is online (0). Only this board (0xFFFFFFFF) and its MCU (sub-board
// 4) are known. 0, or non-zero with the status untouched.
MOXBOOT_API uint32_t drv_subboard_get_online_status(uint32_t board, uint32_t subboard, uint32_t *status);

// "libdrv_basic.so": whether the TPM is active (1), and whether it is there (0). Only this board is known. 0;
// (uint32_t)-14 when the board has no such item or cannot be asked, another code for wrong arguments, each
// with the status untouched.
MOXBOOT_API uint32_t drv_board_get_tpm_active_status(uint32_t board, uint32_t *status);
MOXBOOT_API uint32_t drv_board_get_tpm_online_status(uint32_t board, uint32_t *status);

// "libdrv_basic.so": writes a file to the start-up flash area of its kind (256 BIOS, 260 OS package, 265
// HSM). 0, or non-zero with the area as it was, unless only its new name could not be made to last.
MOXBOOT_API uint32_t drv_update_startup_file(uint32_t startup_type, const char *path);

// "libdrv_basic.so": empties an area; the other arguments are 0 and 1. 0, also when it was empty, or non-zero
// with the area as it was, unless only its absence could not be made to last.
MOXBOOT_API uint32_t drv_update_delete_startup_file(uint32_t startup_type, uint32_t zero, uint32_t one);

// "libdrv_secure.so": the MCU's die id of at most 32 bytes; `length` receives their number. 0, or non-zero
// with both outputs untouched, also when the id has more than `size` bytes.
MOXBOOT_API uint32_t drv_sec_mcu_get_mcu_die_id(uint8_t *id, uint32_t size, uint32_t *length);

// "libdrv_secure.so": keeps a certificate revocation list in place of the one before. 0, or non-zero with the
// old one as it was, unless only the new one's name could not be made to last.
MOXBOOT_API uint32_t drv_crl_patch_write(const uint8_t *list, uint32_t length);

// "libdrv_secure.so": where that list is kept; lives as long as the library. The stand-in's own.
MOXBOOT_API const char *moxplatform_crl_path(void);

// "libnb_bsp.so": 1 when secure boot is enabled; 0 when it is not, or the board cannot tell.
MOXBOOT_API int nb_is_sec_boot_en(void);

MOXBOOT_END
