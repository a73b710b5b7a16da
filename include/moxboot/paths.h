/* SPDX-License-Identifier: Apache-2.0 */
/**
 * @file paths.h Where product files lie.
 *
 * Any thread may call; nothing is remembered between calls. "Reported" is explained in channel.h; progress is
 * told with trace level 1. No pointer is kept.
 */
#ifndef MOXBOOT_PATHS_H
#define MOXBOOT_PATHS_H

#include <moxboot/types.h>

MOXBOOT_BEGIN

/** Selector of MOX_GetPdtPath(): the boot path. */
#define MOX_PDT_PATH_BOOT 0u
/** Least size of the buffer of MOX_GetPBAPath() in bytes. */
#define MOX_PBA_PATH_SIZE 17u

/**
 * Tells in which boot directory a package is kept. Served on boards of hard type 0x900005d1 only. A symbolic
 * link does not count as the package.
 * @param which    MOX_PDT_PATH_BOOT
 * @param pkg_name name or path of the package; what follows the last slash, at most 236 characters, counts
 * @param path     receives "/boot/" for a package in the main home directory, else "/bootbak/" for one in the
 * backup
 * @param path_len size of @p path in bytes
 * @return 0; 0xFFFFFFFF for a null pointer (not reported), another selector or board, a name that is too
 * long, a package that is in neither place, or a @p path that is too small (all reported)
 */
MOXBOOT_API uint32_t MOX_GetPdtPath(uint32_t which, const char *pkg_name, char *path, uint32_t path_len);

/**
 * Tells where the boot image manager lies, "/opt/moxv8/bim/".
 * @param path_len size of @p path in bytes, at least MOX_PBA_PATH_SIZE
 * @return 0; 0xFFFFFFFF for a null pointer, a buffer that is too small, or a directory that is not the RAM
 * disk (all reported)
 */
MOXBOOT_API uint32_t MOX_GetPBAPath(char *path, uint32_t path_len);

/**
 * Names the resource package of the work mode: "reslink_le_ptn" in the ptn_iot mode, else "reslink_le".
 * @return 0; -1 for a null pointer or a buffer that is too small (reported)
 */
MOXBOOT_API int32_t MOX_GetResPackage(char *name, uint32_t name_len);

MOXBOOT_END

#endif
