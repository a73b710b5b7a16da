/* SPDX-License-Identifier: Apache-2.0 */
/**
 * @file preload.h The preload: before a new operating system starts for the first time, the extracted BIOS,
 * OS package and HSM images are written to the start-up flash.
 *
 * One thread at a time, after the other steps of the installation (see boot_file.h). "Reported" is explained
 * in channel.h. No pointer is kept.
 */
#ifndef MOXBOOT_PRELOAD_H
#define MOXBOOT_PRELOAD_H

#include <moxboot/families.h>

MOXBOOT_BEGIN

/** Kinds of start-up files, the codes of the platform's updater. */
#define DRVBOOT_STARTUP_BIOS 256u
#define DRVBOOT_STARTUP_OS_PACKAGE 260u
#define DRVBOOT_STARTUP_HSM 265u

/** One file that is written to the start-up flash. */
typedef struct {
    const char *directory;
    const char *file_name;
    uint32_t startup_type;      /**< one of DRVBOOT_STARTUP_* */
    DrvBootPredicate predicate; /**< whether this board takes the file; called with argument 0 */
} PreloadFileDesc;

#define DRVBOOT_PRELOAD_FILES 8u
/** All files of the preload, in the order in which they are written. */
extern MOXBOOT_API const PreloadFileDesc g_preloadFileTbl[DRVBOOT_PRELOAD_FILES];

/** "drv_update_startup_file" of libdrv_basic.so: writes a file to the start-up flash; 0 on success. */
typedef uint32_t (*DrvBootUpdateFunction)(uint32_t startup_type, const char *path);
/** "drv_update_delete_startup_file" of libdrv_basic.so: removes a start-up file; 0 on success. */
typedef uint32_t (*DrvBootDeleteFunction)(uint32_t startup_type, uint32_t zero, uint32_t one);

/**
 * Brings the start-up flash up to date: PreLoadBootFileXTN() on a next generation board,
 * bsp_update_norflash_data_area() on any other one and when the hard type cannot be read. Begin and end are
 * reported.
 * @return the result of the function that ran; 0 on success
 */
MOXBOOT_API uint32_t MOX_NotifyPdtAfterPreInstallOS(void);

/**
 * Opens the platform's updater, "libdrv_basic.so", runs DrvBootUpdateStartupFile() and closes the updater
 * again. Every step is reported.
 * @return 0; -1 when the updater or its update function is missing, or a file could not be written
 */
MOXBOOT_API int32_t PreLoadBootFileXTN(void);

/**
 * Writes the files of those rows of g_preloadFileTbl whose predicate says yes, in order. A predicate that
 * fails says no. Where DrvBoot_DeleteBootFileCheck() deletes a start-up file, none is written for that row.
 * @param update called for each file; failures are reported
 * @param remove called by DrvBoot_DeleteBootFileCheck(); may be null
 * @return 0, also when a file that is not there was not written; 0xFFFFFFFF when an existing one was not (the
 * rows behind it are left out), or @p update is null
 */
MOXBOOT_API uint32_t DrvBootUpdateStartupFile(DrvBootUpdateFunction update, DrvBootDeleteFunction remove);

/**
 * Deletes the BIOS from the start-up flash, once, when the new one could not be extracted. Uses up
 * g_nandFlashDeleteFlag (boot_file.h), also when there is no function to delete with.
 * @param startup_type nothing is done for any other than DRVBOOT_STARTUP_BIOS
 * @param remove       called with (startup_type, 0, 1), its result reported; may be null
 * @return 1 when @p remove was called, else 0
 */
MOXBOOT_API uint32_t DrvBoot_DeleteBootFileCheck(uint32_t startup_type, DrvBootDeleteFunction remove);

MOXBOOT_END

#endif
