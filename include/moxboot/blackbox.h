/* SPDX-License-Identifier: Apache-2.0 */
/**
 * @file blackbox.h Black boxes: files of a fixed size in which a module keeps its last records across
 * restarts. A box lives in "/opt/moxv8/var/" under the module's name followed by "_blackbox".
 *
 * A handle is a file descriptor that the caller owns between MOX_GetBlackbox() and MOX_PutBlackbox(). Any
 * thread may call; reading and writing move the descriptor's own position, so two threads must not share a
 * handle, and concurrent writers of one box overwrite each other. Handles from DRVBOOT_NVRAM_HANDLE upward
 * stand for boxes in board NVRAM, which boards of this build have not. "Reported" is explained in channel.h.
 * No pointer is kept.
 */
#ifndef MOXBOOT_BLACKBOX_H
#define MOXBOOT_BLACKBOX_H

#include <moxboot/types.h>

MOXBOOT_BEGIN

struct dirent;

/** Largest size of a box in bytes. */
#define MOX_BLACKBOX_MAX_SIZE 0x100000u
/** Longest name of a box in characters. */
#define MOX_BLACKBOX_MAX_NAME 54u
/** Size of an entry of a query's result in bytes. */
#define MOX_BLACKBOX_ENTRY_SIZE 64u
/** First handle of a box in NVRAM. */
#define DRVBOOT_NVRAM_HANDLE 0x10000

/** Results. */
#define MOX_BLACKBOX_ERR_ARGUMENT (-1)
#define MOX_BLACKBOX_ERR_OPEN (-2)
#define MOX_BLACKBOX_ERR_CLOSE (-3)
#define MOX_BLACKBOX_ERR_READ (-4)
#define MOX_BLACKBOX_ERR_WRITE (-5)
#define MOX_BLACKBOX_ERR_RANGE (-6)
#define MOX_BLACKBOX_ERR_RESIZE (-7)
#define MOX_BLACKBOX_ERR_STAT (-8)
#define MOX_BLACKBOX_ERR_UNLINK (-9)
#define MOX_BLACKBOX_ERR_MEMORY (-10)

/**
 * Opens a box, which is made when there is none, and gives it exactly this size: what lies beyond is cut,
 * what is missing reads as zero.
 * @param name of at most MOX_BLACKBOX_MAX_NAME characters
 * @param size in bytes, at most MOX_BLACKBOX_MAX_SIZE
 * @return a handle; MOX_BLACKBOX_ERR_ARGUMENT for a null or overlong name or size (not reported) or a path
 * that cannot be formed; MOX_BLACKBOX_ERR_OPEN, _RESIZE (all reported)
 */
MOXBOOT_API int32_t MOX_GetBlackbox(const char *name, uint32_t size);

/** Closes a handle. @return 0; MOX_BLACKBOX_ERR_CLOSE */
MOXBOOT_API int32_t MOX_PutBlackbox(int32_t handle);

/**
 * Reads from a box.
 * @param offset,length in bytes; their sum, cut to 32 bits, must not exceed the box
 * @return number of bytes read, which can be less than @p length; MOX_BLACKBOX_ERR_ARGUMENT for a null @p
 * buffer, _STAT, _RANGE, _READ (all reported)
 */
MOXBOOT_API int32_t MOX_ReadBlackbox(int32_t handle, uint32_t offset, uint32_t length, uint8_t *buffer);

/**
 * Writes into a box, which never grows. A write that fails is tried again at once, up to five failures in
 * all.
 * @param offset,length in bytes; their sum must not exceed the box
 * @return number of bytes written; MOX_BLACKBOX_ERR_ARGUMENT for a null @p buffer (not reported), _STAT,
 * _RANGE, or _WRITE after five failures, also when a part was written (all reported)
 */
MOXBOOT_API int32_t MOX_WriteBlackbox(int32_t handle, uint32_t offset, uint32_t length,
                                      const uint8_t *buffer);
/** MOX_WriteBlackbox() of a box that is a file. */
MOXBOOT_API int32_t MOX_WriteBlackboxOfNonNvram(int32_t handle, uint32_t offset, uint32_t length,
                                                const uint8_t *buffer);

/**
 * Removes a box; its open handles stay usable.
 * @return 0, also when there is no such box; MOX_BLACKBOX_ERR_ARGUMENT for a null or overlong name. Only with
 * NVRAM boxes: MOX_BLACKBOX_ERR_UNLINK (reported)
 */
MOXBOOT_API int32_t MOX_DestroyBlackbox(const char *name);

/**
 * Lists the entries of the box directory whose names contain @p pattern and "_blackbox".
 * @param count receives their number
 * @param list  receives one block of @p count entries of MOX_BLACKBOX_ENTRY_SIZE bytes, each a name of at
 * most 63 characters with its terminator, in no order; null when there are none. The caller frees it with
 * MOX_ReleaseBlackbox()
 * @return 0, also when the directory cannot be read; MOX_BLACKBOX_ERR_ARGUMENT for a null pointer; _MEMORY
 */
MOXBOOT_API int32_t MOX_QueryBlackbox(const char *pattern, uint32_t *count, char **list);
/** Frees the list of MOX_QueryBlackbox(); null is fine. */
MOXBOOT_API void MOX_ReleaseBlackbox(void *list);

/** Frees @p count entries of scandir() and then the array; with a count of 0 it does nothing. */
MOXBOOT_API void MOX_DestroyScanDirNameList(struct dirent **names, uint32_t count);

/**
 * Opens the file of a box and sets its size.
 * @return descriptor; MOX_BLACKBOX_ERR_OPEN or _RESIZE (reported)
 */
MOXBOOT_API int32_t DrvBootGetBlackBoxFileId(const char *path, int32_t size);
/** @return 1 when a box's name of @p len characters is too long, else 0 */
MOXBOOT_API uint32_t DrvBootBlackBoxInvalidLen(uint32_t len);
/** Reports what failed, and the file behind the handle. @param err errno */
MOXBOOT_API void DrvBootBlackBoxErrLog(int32_t handle, const char *what, int32_t err);
/** Reports, as information, which file a descriptor stands for. */
MOXBOOT_API void DrvBootBlackBoxGetFdInfo(int32_t fd);

/** @return 0: this build has no boxes in NVRAM */
MOXBOOT_API uint32_t DrvBootHasNvramBlackBox(void);
/** @return -2: no such box in NVRAM */
MOXBOOT_API int32_t DrvBootGetNvramBoxIndex(const char *name, uint32_t size);
/** @return -1 */
MOXBOOT_API int32_t DrvBootReadNvramBoxIndex(uint32_t index, uint32_t offset, uint32_t length,
                                             uint8_t *buffer);
/** @return -1 */
MOXBOOT_API int32_t DrvBootWriteNvramBoxIndex(uint32_t index);
/** Does nothing. */
MOXBOOT_API void DrvBootClearNvramBoxIndex(void);

MOXBOOT_END

#endif
