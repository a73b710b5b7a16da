/* SPDX-License-Identifier: Apache-2.0 */
/**
 * @file mcu.h The board's management microcontroller (MCU). The answers come from two board-support
 * libraries, which are opened for each call and closed right after; "libdrv_basic.so" and "libdrv_secure.so"
 * must lie where the dynamic linker finds them.
 *
 * Any thread may call. All messages go to the system log alone, priority info. No pointer is kept.
 */
#ifndef MOXBOOT_MCU_H
#define MOXBOOT_MCU_H

#include <moxboot/types.h>

MOXBOOT_BEGIN

/**
 * @return 1 when the board's MCU is online; 0 when it is not, or nobody can tell (logged, as is every answer)
 */
MOXBOOT_API uint32_t MOX_IsSupportMcu(void);

/** Most bytes of a die id. */
#define MOX_MCU_DIE_ID_MAX 32u

/**
 * Reads the die id of the MCU as text: two upper-case hexadecimal digits for each byte, cut when the room
 * ends.
 * @param id     receives the text with its terminator; untouched when the MCU has an id of no bytes
 * @param length in: size of @p id in bytes; out: number of characters in it. Once the board-support library
 * was asked, it holds what that left there, also on failure
 * @return 0; 0xFFFFFFFF for a null pointer or a size of 0, a library or function that is missing, a refusal
 * by the library, or a failed print (all but the last logged)
 */
MOXBOOT_API uint32_t MOX_GetMcuID(char *id, uint32_t *length);

MOXBOOT_END

#endif
