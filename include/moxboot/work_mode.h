/* SPDX-License-Identifier: Apache-2.0 */
/**
 * @file work_mode.h Two pieces of start-up state: the start flag, a small file that tells whether the board
 * must be rebooted, and the work mode, "ptn_iot" or "base".
 *
 * Any thread may call; nothing is remembered between calls but what lies in the file and in the environments.
 * "Told" means reported (see channel.h) with trace level 1. No pointer is kept.
 */
#ifndef MOXBOOT_WORK_MODE_H
#define MOXBOOT_WORK_MODE_H

#include <moxboot/types.h>

MOXBOOT_BEGIN

/** Start flag that stands for "there is none". */
#define MOX_START_FLAG_NONE 0xFFFFFFFFu
/** Time that the product's start-up check is given, in seconds. */
#define MOX_PDT_CHECK_TIME 120u

/** @return the number in "/tmp/v8_start_flag"; MOX_START_FLAG_NONE when it does not open (told) */
MOXBOOT_API uint32_t MOX_GetStartFlag(void);

/**
 * Writes the start flag.
 * @param mode       the flag
 * @param check_time receives MOX_PDT_CHECK_TIME; with it, a flag that exists already stays. Null: the flag is
 * written in any case
 * @return 0; 0xFFFFFFFF when the file cannot be made or written (reported)
 */
MOXBOOT_API uint32_t MOX_SetPdtCheckMode(uint32_t mode, uint32_t *check_time);

/**
 * Tells whether a reboot is needed: it is unless the start flag is 1 or 2.
 * @param reboot_flag receives the flag, or 0 when no reboot is needed
 * @return 0 needed (told); -1 not needed, or a null pointer
 */
MOXBOOT_API int32_t MOX_PdtStartupCheck(uint32_t *reboot_flag);

/**
 * @return 0 when the work mode is exactly "ptn_iot" (told), else 0xFFFFFFFF. The mode is the next one, or,
 * after a reset that keeps it ("lcs_reset_flag" begins with "0x55aa"), the current one
 */
MOXBOOT_API uint32_t DrvBoot_GetWorkMode(void);

/**
 * @return 0 when the board runs in the ptn_iot mode (0 means yes), else 0xFFFFFFFF, by package type and work
 * mode
 */
MOXBOOT_API uint32_t DrvBoot_IsPtnMode(void);

/**
 * @param is_ptn receives 1 when the variable of the platform environment begins with "ptn_iot", else 0 (both
 * told)
 */
MOXBOOT_API void drv_getptnmode(uint8_t *is_ptn, const char *env_name);

/**
 * Settles the work mode at start-up: the next mode becomes the current one, unless the reset keeps it. Has
 * the shape of a board predicate (families.h).
 * @param is_ptn receives 1 for a mode that begins with "ptn_iot", else 0
 * @return 0; 0xFFFFFFFF for a null pointer
 */
MOXBOOT_API uint32_t DrvBoot_PtnMode(uint8_t *is_ptn, uintptr_t argument);

MOXBOOT_END

#endif
