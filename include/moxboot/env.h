/* SPDX-License-Identifier: Apache-2.0 */
/**
 * @file env.h
 * The boot environment: named text variables that the board keeps in non-volatile storage, behind
 * "/dev/envinfo0".
 *
 * Each function opens the device, sends one request and closes it. Any thread may call; one read or write is
 * atomic in the driver. No pointer is kept. Messages go through drvboot_message() only, not into the step
 * trace.
 *
 * Results: 0 done; 1 a failure that the library saw itself (a null pointer or a text over 255 characters
 * without a message, a device that does not open with one); otherwise the non-zero result of ioctl(), without
 * a message.
 */
#ifndef MOXBOOT_ENV_H
#define MOXBOOT_ENV_H

#include <moxboot/driver.h>
#include <moxboot/types.h>

MOXBOOT_BEGIN

/**
 * Reads a variable.
 * @param name  at most 255 characters
 * @param value receives the text; at least DRVBOOT_ENV_SIZE (256) bytes
 * @return as above; 1 also when the value is longer than the driver says it is, @p value is then empty. A
 * device that does not open is logged at level 1; @p value is then untouched
 */
MOXBOOT_API uint32_t drv_getenv(const char *name, char *value);

/**
 * Reads a variable into a buffer of a given size; a longer value is cut.
 * @param name   a name of more than 255 characters gives 0 and no value: callers rely on "nothing there"
 * being no error
 * @param value  receives at most @p length - 1 characters and a terminator
 * @param length size of @p value in bytes; below 2 is refused with 1 and a line at level 1
 * @return as above; 1 also when the copy fails, @p value is then empty
 */
MOXBOOT_API uint32_t drv_getenv_s(const char *name, char *value, int32_t length);

/** Sets a variable in the running environment; drv_saveenv() makes it last. A value over 255 characters
 * gives 1. */
MOXBOOT_API uint32_t drv_setenv(const char *name, const char *value);

/**
 * Sets a variable in the running environment; a value over 255 characters is cut there.
 * @param length 257 and more is refused with 1 and a line at level 1, before the device is opened; otherwise
 * not used
 */
MOXBOOT_API uint32_t drv_setenv_s(const char *name, const char *value, int32_t length);

/** Deletes a variable from the running environment. */
MOXBOOT_API uint32_t drv_clrenv(const char *name);

/** Saves the running environment to non-volatile storage. A device that does not open is logged at level 2.
 */
MOXBOOT_API uint32_t drv_saveenv(void);

MOXBOOT_END

#endif
