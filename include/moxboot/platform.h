/* SPDX-License-Identifier: Apache-2.0 */
/**
 * @file platform.h
 * What the library calls and the platform supplies. A build with MOXBOOT_PLATFORM=standalone takes these
 * functions from the stand-ins (libmoxplatform.so); with MOXBOOT_PLATFORM=external the platform's own
 * libraries bring them.
 *
 * Every function may be called from any thread. None keeps a pointer that it is given beyond the call.
 */
#ifndef MOXBOOT_PLATFORM_H
#define MOXBOOT_PLATFORM_H

#include <moxboot/driver.h>
#include <moxboot/types.h>

#include <stdarg.h>

MOXBOOT_BEGIN

/* ---- Start-up step trace and timer
 * ------------------------------------------------------------------------- */

/**
 * Records one line of the start-up step trace. Never fails towards the caller.
 * @param code   the caller's return code or argument at hand, 0 if it has none
 * @param level  4 for a failure, 1 for information
 * @param format printf format of the line, followed by its arguments
 */
MOXBOOT_API void iof_startupstep_trace(uint32_t code, uint32_t level, const char *format, ...)
    MOXBOOT_PRINTF(3, 4);

/**
 * Reads the CPU time base, a counter that never runs backwards.
 * @param low,high receive the two halves of the 64-bit tick count; an unusable timer leaves them untouched
 * @return 0, or non-zero when the timer is unusable
 */
MOXBOOT_API uint32_t iof_timer_get_base_64bit(uint32_t *low, uint32_t *high);

/** @return ticks of the time base per second; 0 when the time base is unusable */
MOXBOOT_API uint32_t iof_timer_get_freq(void);

/* ---- Board attributes and address descriptors
 * -------------------------------------------------------------- */

/**
 * Reads one attribute of a device.
 * @param device path of the device, e.g. "/dev/chassis0"
 * @param l1type outer type of the request, DRVBOOT_TLV_L1_TYPE
 * @param l2type item code
 * @param index  0
 * @param value  receives @p size bytes
 * @param size   size of the attribute in bytes (4)
 * @return 0, or non-zero with @p value untouched
 */
MOXBOOT_API uint32_t iof_get_attr_value(const char *device, uint32_t l1type, uint32_t l2type, uint32_t index,
                                        void *value, uint32_t size);

/**
 * Writes the address of @p buffer into @p descriptor: least significant byte first, the bytes above the
 * meaningful ones zero, and the count of meaningful bytes (4 in a 32-bit process, 8 in a 64-bit one).
 */
MOXBOOT_API void Iof_SetAddrToAddrDes(void *buffer, AddrDes *descriptor);

/* ---- Environments
 * ------------------------------------------------------------------------------------------ */

/**
 * Reads a variable of the platform environment.
 * @param name  NUL-terminated, at most 255 characters
 * @param value receives the text with its terminator; at least 256 bytes
 * @return 0, or non-zero when the variable is absent or unreadable
 */
MOXBOOT_API uint32_t GetEnv(const char *name, char *value);

/** Sets a variable of the platform environment, lastingly. @return 0, or non-zero on failure */
MOXBOOT_API uint32_t SetEnv(const char *name, const char *value);

/**
 * Reads a variable of the memory environment, which survives a soft reset and no other one.
 * @param size room at @p value in bytes, terminator included
 * @return 0, or non-zero when the variable is absent or does not fit
 */
MOXBOOT_API uint32_t bsp_getmemenv_s(const char *name, char *value, uint32_t size);

/**
 * Sets a variable of the memory environment.
 * @param length length of @p value in bytes, terminator included (5 for a 4-character value)
 * @return 0, or non-zero on failure
 */
MOXBOOT_API uint32_t bsp_setenv_s(const char *name, const char *value, uint32_t length);

/* ---- Installation
 * ------------------------------------------------------------------------------------------ */

/** Refreshes the NOR flash data area. @return 0, or the updater's own non-zero code */
MOXBOOT_API uint32_t bsp_update_norflash_data_area(void);

/**
 * Takes one file out of a software package.
 * @param package     the package, as it was named to the library
 * @param destination path of the file to write
 * @param file_id     the file's id inside the package
 * @param mode        permission bits of the new file (0755)
 * @return 0 when the file was written with that mode, non-zero when it was not
 */
MOXBOOT_API uint32_t CCPKG_ExtractFileFromCCExt(const char *package, const char *destination,
                                                uint32_t file_id, uint32_t mode);

/* ---- Root proxy
 * -------------------------------------------------------------------------------------------- */

/** @return 1 when this process must have privileged commands run for it by the root proxy service */
MOXBOOT_API int32_t IsNeedRootProxy(void);

/**
 * Has the root proxy service run a command.
 * @param command     command line
 * @param length      its length in bytes, terminator included
 * @param output      receives what the command printed
 * @param output_size room at @p output in bytes
 * @return 0, or non-zero when the command was not run or failed
 */
MOXBOOT_API int32_t RootProxyExecCmd(const char *command, uint32_t length, char *output,
                                     uint32_t output_size);

/* ---- Bounds-checked functions
 * ------------------------------------------------------------------------------ */
/*
 * Copies return 0; EINVAL for a null pointer; ERANGE for a destination of size 0 or one that is too small. On
 * a failure with a usable destination a text destination becomes empty and a memory destination is zeroed.
 * Prints return the count of characters, or -1.
 */

/** Copies @p count bytes. */
MOXBOOT_API int memcpy_s(void *dest, size_t dest_max, const void *src, size_t count);
/** Fills @p count bytes with @p c. */
MOXBOOT_API int memset_s(void *dest, size_t dest_max, int c, size_t count);
/** Copies a text with its terminator. */
MOXBOOT_API int strcpy_s(char *dest, size_t dest_max, const char *src);
/** Copies at most @p count characters and terminates; needs min(strlen(src), count) + 1 <= dest_max; does not
 * pad. */
MOXBOOT_API int strncpy_s(char *dest, size_t dest_max, const char *src, size_t count);
/** Appends at most @p count characters and terminates. */
MOXBOOT_API int strncat_s(char *dest, size_t dest_max, const char *src, size_t count);
/** Prints; -1 with an empty destination when the text does not fit. */
MOXBOOT_API int sprintf_s(char *dest, size_t dest_max, const char *format, ...) MOXBOOT_PRINTF(3, 4);
MOXBOOT_API int vsprintf_s(char *dest, size_t dest_max, const char *format, va_list args)
    MOXBOOT_PRINTF(3, 0);
/**
 * Prints at most @p count characters. A text longer than @p count with count < dest_max leaves its first @p
 * count characters and gives -1; one that does not fit @p dest_max gives an empty destination and -1.
 */
MOXBOOT_API int snprintf_s(char *dest, size_t dest_max, size_t count, const char *format, ...)
    MOXBOOT_PRINTF(4, 5);
MOXBOOT_API int vsnprintf_s(char *dest, size_t dest_max, size_t count, const char *format, va_list args)
    MOXBOOT_PRINTF(4, 0);
/** Prints and cuts: the count of characters, or dest_max - 1 with the text cut; -1 for an error. */
MOXBOOT_API int snprintf_truncated_s(char *dest, size_t dest_max, const char *format, ...)
    MOXBOOT_PRINTF(3, 4);
/** Reads numbers. @return number of fields read, or -1 for a null pointer or when the text ends before the
 * first */
MOXBOOT_API int sscanf_s(const char *buffer, const char *format, ...) __attribute__((format(scanf, 2, 3)));

MOXBOOT_END

#endif
