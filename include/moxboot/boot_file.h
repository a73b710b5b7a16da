/* SPDX-License-Identifier: Apache-2.0 */
/**
 * @file boot_file.h Boot files: BIOS, kernel image, initial RAM disk, device tree, OS package and signatures.
 * When a software package is installed, those that this board needs are taken out of it and written to
 * "/boot".
 *
 * The steps of an installation follow one another on one thread: MOX_InstallPkgNotify() here,
 * MOX_AfterInstallRunFile() (link.h), MOX_NotifyPdtAfterPreInstallOS() (preload.h). They share
 * g_nandFlashDeleteFlag without a lock. "Reported" is explained in channel.h. No pointer is kept.
 */
#ifndef MOXBOOT_BOOT_FILE_H
#define MOXBOOT_BOOT_FILE_H

#include <moxboot/families.h>

MOXBOOT_BEGIN

/** One boot file that some board needs. */
typedef struct {
    const char *file_name;      /**< in the package and in "/boot" */
    const char *file_id;        /**< the package's id of the file, in hexadecimal with "0x" */
    DrvBootPredicate predicate; /**< whether this board needs the file; called with argument 0 */
} BootFileDesc;

#define DRVBOOT_BOOT_FILES 22u
/**
 * All boot files. Where two share an id, the package holds the right variant under it, and the predicates see
 * to it that a board asks for only one.
 */
extern MOXBOOT_API const BootFileDesc g_bootFileDesc[DRVBOOT_BOOT_FILES];

/**
 * 1 when a BIOS file could not be extracted in the current installation, else 0. Cleared by
 * MOX_InstallPkgNotify(); used up by DrvBoot_DeleteBootFileCheck().
 */
extern MOXBOOT_API uint32_t g_nandFlashDeleteFlag;

/**
 * Takes this board's boot files out of a package and writes them to "/boot", mode 0755. Begins by clearing
 * g_nandFlashDeleteFlag. The beginning, the end and a failure are reported.
 * @param phase        phase of the installation; only reported
 * @param package      path of the package, handed on to CCPKG_ExtractFileFromCCExt() as it stands
 * @param install_path only reported; the files always go to "/boot"
 * @return DrvBoot_ExtractBootFileXTN()'s result
 */
MOXBOOT_API int32_t MOX_InstallPkgNotify(uint32_t phase, const char *package, const char *install_path);

/**
 * Extracts the files of those rows whose predicate says yes, in order. A predicate that fails says no. A file
 * that cannot be extracted is reported and told to Drvboot_ClearBiosFile(); the others are still extracted.
 * @param package   as for MOX_InstallPkgNotify()
 * @param table     @p count rows; a row without a predicate is for no board
 * @param count     number of rows; with 0 nothing is touched
 * @param directory directory of the extracted files; with "/" and a file name at most 255 characters
 * @return 0, also when an extraction failed; 0xFFFFFFFF when a path is too long (reported; the rows behind it
 * are left out) or a pointer is null
 */
MOXBOOT_API uint32_t DrvBoot_ExtractBootFileXTN(const char *package, const BootFileDesc *table,
                                                uint32_t count, const char *directory);

/**
 * Sets g_nandFlashDeleteFlag when a file is one of the BIOS files of g_preloadFileTbl (preload.h).
 * @param file_name name without directory; null is no BIOS file
 * @return 0 when it is one, else non-zero
 */
MOXBOOT_API int32_t Drvboot_ClearBiosFile(const char *file_name);

MOXBOOT_END

#endif
