/* SPDX-License-Identifier: Apache-2.0 */
/**
 * @file system_time.h The operating system's clock, and two fixed answers for the platform's hardware
 * management. "Reported" is explained in channel.h. No pointer is kept.
 */
#ifndef MOXBOOT_SYSTEM_TIME_H
#define MOXBOOT_SYSTEM_TIME_H

#include <moxboot/types.h>

MOXBOOT_BEGIN

/**
 * Sets the clock. On a board that is not in hard active state 1 the seconds are also saved as the boot
 * variable "board_system_time", so that the time survives a restart.
 * @param seconds      since 1970-01-01 00:00:00 UTC, from 0
 * @param microseconds 0 to 999999
 * @return 0; 1 for a negative value, a clock that cannot be set (reported for the first three in a process,
 * counted without a lock), a hard active state that cannot be read, a variable that cannot be set or saved
 * (reported)
 */
MOXBOOT_API uint32_t MOX_PdtSetSystemTime(int32_t seconds, int32_t microseconds);

/** Weak: a platform may bring its own. @return 2 */
MOXBOOT_API uint32_t DEV_HardwareOmPosition(void);

/** Weak: a platform may bring its own. @return 0 */
MOXBOOT_API uint32_t MOX_GetHardMngMode(void);

MOXBOOT_END

#endif
