/* SPDX-License-Identifier: Apache-2.0 */
/**
 * @file reserved_memory.h Memory that survives a soft reset: files on a RAM disk that the kernel keeps,
 * mapped into the caller's address space; and the file systems that lie in memory.
 *
 * Any thread may call; nothing is remembered between calls. Processes that map the same file share it.
 * "Reported" is explained in channel.h. No pointer is kept.
 */
#ifndef MOXBOOT_RESERVED_MEMORY_H
#define MOXBOOT_RESERVED_MEMORY_H

#include <moxboot/types.h>

MOXBOOT_BEGIN

/** Longest name of a reserved memory file in characters. */
#define MOX_RSVMEM_MAX_NAME 127u
/** Size of a buffer of MOX_GetMemFsList() in bytes. */
#define MOX_MEMFS_DIR_SIZE 128u

/** Results, as unsigned numbers. */
#define MOX_RSVMEM_ERR_OPEN 0xFFFFFFFEu   /* -2 */
#define MOX_RSVMEM_ERR_RESIZE 0xFFFFFFF9u /* -7 */
#define MOX_RSVMEM_ERR_MMAP 0xFFFFFFF3u   /* -13 */
#define MOX_RSVMEM_ERR_LENGTH 0xFFFFFFF2u /* -14 */

/**
 * Maps a file of the RAM disk, which is made when there is none, with exactly this size; bytes that it held
 * before are kept. Every page is touched and flushed, so that later accesses take no page faults.
 * @param file_name of at most MOX_RSVMEM_MAX_NAME characters
 * @param file_size in bytes, not 0
 * @param addr      receives the address; the mapping lives until the process ends
 * @return 0; 0xFFFFFFFF for a null pointer, or when "/opt/moxv8/SoftResetData" is not the RAM disk;
 * MOX_RSVMEM_ERR_LENGTH, _OPEN, _RESIZE, _MMAP (all reported)
 */
MOXBOOT_API uint32_t MOX_GetRsvMemMmapAddr(const char *file_name, uint32_t file_size, void **addr);

/**
 * Opens or makes a file with mode 0640, sets its size and maps it, shared, for reading and writing.
 * @param fd   receives the descriptor, which the caller closes; only on success
 * @param addr receives the address; only on success
 * @return 0; 0xFFFFFFFF for a length of 0 or a null pointer; MOX_RSVMEM_ERR_OPEN, _RESIZE, _MMAP (reported)
 */
MOXBOOT_API uint32_t drvboot_get_mmap_addr(int32_t *fd, const char *path, uint32_t length, void **addr);

/**
 * Reads and writes back every byte of a mapping, then flushes it. Bytes that somebody else changes meanwhile
 * may get their old values back.
 * @param addr start of a page
 * @return 0; -1 for a null address or a length of 0, a failed copy, or a failed flush (reported)
 */
MOXBOOT_API int32_t drvboot_force_load_virtual_page(void *addr, uint32_t len);

/** @return 0 when @p dir exists and is where the RAM disk is mounted; 0xFFFFFFFF when not (reported) */
MOXBOOT_API uint32_t MOX_IsMemDirExist(const char *dir);

/**
 * Counts the mounted file systems of any type but the flash types "yaffs2" and "ext2".
 * @return 0; 0xFFFFFFFF for a null pointer (not reported) or an unreadable mount table (reported)
 */
MOXBOOT_API uint32_t MOX_GetMemFsCount(uint32_t *count);

/**
 * Lists where they are mounted.
 * @param max   number of buffers
 * @param list  @p max buffers of MOX_MEMFS_DIR_SIZE bytes, each of which receives a directory, cut at 127
 * characters
 * @param count receives the number of buffers filled
 * @return as above
 */
MOXBOOT_API uint32_t MOX_GetMemFsList(uint32_t max, char **list, uint32_t *count);

/** @return 0; no file's mode is changed */
MOXBOOT_API uint32_t MOX_ChmodRsvMemFile(void);

MOXBOOT_END

#endif
