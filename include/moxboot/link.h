/* SPDX-License-Identifier: Apache-2.0 */
/**
 * @file link.h Links: after a package is installed, its boot, key, configuration and product feature files
 * are found under fixed names, by symbolic links to the files that are meant for this board.
 *
 * One thread at a time for one install root (see boot_file.h). "Reported" is explained in channel.h; unless
 * said otherwise a line is reported with trace level 1. No pointer is kept.
 */
#ifndef MOXBOOT_LINK_H
#define MOXBOOT_LINK_H

#include <moxboot/families.h>

MOXBOOT_BEGIN

/** Room for the path of a source or of a link, terminator included, in bytes. */
#define DRVBOOT_LINK_PATH_SIZE 384u

/** A link that a board predicate selects. */
typedef struct {
    const char *source_directory; /**< relative to the install root unless it begins with "/" */
    const char *source_file;
    const char *destination_directory; /**< always relative to the install root */
    const char *destination_file;
    DrvBootPredicate predicate; /**< called with the install root's address; null for every board */
} LinkFileDesc;

/** A link that the board's logic id selects. */
typedef struct {
    uint32_t logic_id; /**< as of MOX_GetSelfEncapLogicId() */
    const char *source_directory;
    const char *source_file;
    const char *destination_directory;
    const char *destination_file;
} LinkEncapFileDesc;

#define DRVBOOT_LINK_FILES 98u
#define DRVBOOT_ENCAP_LINK_FILES 119u
/** Links by predicate. Of the rows for one destination the first that applies and has its source wins. */
extern MOXBOOT_API const LinkFileDesc g_linkFileDesc[DRVBOOT_LINK_FILES];
/** Links by logic id. Of the rows for one destination the last that applies and has its source wins. */
extern MOXBOOT_API const LinkEncapFileDesc g_linkEncapFileDesc[DRVBOOT_ENCAP_LINK_FILES];

/**
 * Makes this board's links: DrvBoot_InstallBootFile() over g_linkFileDesc, then
 * DrvBoot_Encap_InstallBootFile() over g_linkEncapFileDesc. Begin, end and failures are reported.
 * @param install_root directory of the installation, without "/" at its end
 * @return the second walk's result; the first one's failure neither stops the second nor is handed on
 */
MOXBOOT_API int32_t MOX_AfterInstallRunFile(const char *install_root);

/**
 * Makes the links of those rows whose predicate says yes, in order. A predicate that fails without having
 * answered counts as a yes. The link of a boot file (g_bootFileDesc) is removed and made anew; any other link
 * that is there is kept. A row whose source is missing leaves its destination as it is. Every step is
 * reported.
 * @param table        @p count rows
 * @param count        number of rows; with 0 nothing is touched
 * @param install_root as for MOX_AfterInstallRunFile()
 * @return 0, also when a link could not be made, which ends the walk; 0xFFFFFFFF when a path is too long,
 * which ends it, too, or a pointer is null
 */
MOXBOOT_API uint32_t DrvBoot_InstallBootFile(const LinkFileDesc *table, uint32_t count,
                                             const char *install_root);

/**
 * Makes the links of all rows for this board's logic id, in order, by DrvBoot_LinkFile(). Every step is
 * reported.
 * @param table        @p count rows
 * @param count        number of rows; with 0 or less only the logic id is read
 * @param install_root as for MOX_AfterInstallRunFile()
 * @return the result for the last row that was linked, 0 without any; the code of MOX_GetSelfEncapLogicId()
 * when that fails (reported with trace level 4; nothing is linked); 0xFFFFFFFF for a null pointer
 */
MOXBOOT_API uint32_t DrvBoot_Encap_InstallBootFile(const LinkEncapFileDesc *table, int32_t count,
                                                   const char *install_root);

/**
 * Makes the link of one row, whatever its logic id. A link or a file at the destination is removed first.
 * Every step is reported.
 * @param table        table of the row
 * @param index        which row, from 0
 * @param install_root as for MOX_AfterInstallRunFile()
 * @return 0, also when the source is missing (the destination is left as it is) or the link could not be
 * made; 0xFFFFFFFF when a path is too long or a pointer is null
 */
MOXBOOT_API uint32_t DrvBoot_LinkFile(const LinkEncapFileDesc *table, uint32_t index,
                                      const char *install_root);

/**
 * Makes the path of a source: directory and file, behind the install root unless the directory begins with
 * "/".
 * @param path receives the path
 * @param size room at @p path in bytes, terminator included
 * @return 0; -1 when the path does not fit or a pointer is null
 */
MOXBOOT_API int32_t DrvBoot_FormatSrcPath(const char *install_root, const char *source_directory,
                                          const char *source_file, char *path, uint32_t size);

/** @return 1 when something is at @p path, links followed; else 0 (reported; not for a null pointer) */
MOXBOOT_API uint32_t DrvBoot_IsFileExisted(const char *path);

/**
 * Makes a link.
 * @param target    what the link names
 * @param link_path where it is made
 * @param name      what the report calls it
 * @return 0; -1 when it could not be made (reported) or a path is null
 */
MOXBOOT_API int32_t DrvBoot_LinkExistedBootFile(const char *target, const char *link_path, const char *name);

/**
 * Removes the link of a boot file: one whose source's name begins with a file name of g_bootFileDesc.
 * @param source_file name without directory
 * @param link_path   what is removed
 * @return unlink()'s result; non-zero, with nothing removed, when it is no boot file or a pointer is null
 */
MOXBOOT_API int32_t DrvBoot_UnlinkExistedUnexpectedBootFile(const char *source_file, const char *link_path);

MOXBOOT_END

#endif
