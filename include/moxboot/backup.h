/* SPDX-License-Identifier: Apache-2.0 */
/**
 * @file backup.h Where the second copy of a directory lies, and whether the backup is ready.
 *
 * Any thread may call; the backup state of the process is a plain variable. "Reported" is explained in
 * channel.h. No pointer is kept.
 */
#ifndef MOXBOOT_BACKUP_H
#define MOXBOOT_BACKUP_H

#include <moxboot/types.h>

MOXBOOT_BEGIN

/** Backup states. */
#define MOX_BACKUP_READY 0u
#define MOX_BACKUP_UNREADY 1u

/** Backup state of this process: MOX_BACKUP_UNREADY at load, changed by MOX_SetBackupState() only. */
extern MOXBOOT_API uint32_t g_backupState;

/**
 * Maps a directory to its counterpart on the backup location: "/opt/moxv8/home", "/opt/moxv8/data",
 * "/opt/moxv8/private", "/opt/moxv8bak/private", "/opt/moxv8bak/home" and "/opt/moxv8/home/rootbak", each
 * with or without a slash at its end.
 * @param dir     directory, compared as text
 * @param out     receives the path, with a slash at its end
 * @param out_len size of @p out in bytes
 * @return 0; -1 for a null pointer, a directory without a counterpart (neither reported), an unreadable hard
 * type (reported), or a path that does not fit (reported for most paths; @p out is then empty)
 */
MOXBOOT_API int32_t MOX_GetSysBackupPath(const char *dir, char *out, uint32_t out_len);

/**
 * Path of the backup of "/opt/moxv8/home/", by the board's hard type. Arguments and results as above; a null
 * pointer counts as a path that does not fit.
 */
MOXBOOT_API uint32_t DrvbootGetBackupPathofHome(char *out, uint32_t out_len);
/**
 * Path of the backup of "/opt/moxv8/data/", by hard type and product family. Arguments and results as for
 * DrvbootGetBackupPathofHome().
 */
MOXBOOT_API uint32_t DrvbootGetBackupPathofData(char *out, uint32_t out_len);

/**
 * Keeps the backup state: in the platform environment as "backup_state" (one decimal digit of the low byte;
 * empty when that has no single digit), in g_backupState, and in the board driver.
 * @return result of MOX_SetBackupStatetoDrv(); a failure of the environment is reported as information only
 */
MOXBOOT_API int32_t MOX_SetBackupState(uint32_t state);

/**
 * Reads the backup state from the platform environment.
 * @param state receives the number in the variable's first two characters; untouched when there is none
 * @return 0 stored; 0 also, with nothing stored, when the text is no number; 0xFFFFFFFF when it is empty or
 * @p state is null; the environment's code when it cannot be read (reported as information)
 */
MOXBOOT_API uint32_t MOX_GetBackupState(uint16_t *state);

/** @return 1 when boards of @p hard_type can run on their own, else 0 */
MOXBOOT_API uint32_t MOX_IsBoardSuppSelfRun(uint32_t hard_type);
/** @return 1: self-run is enabled. Products may replace this function. */
MOXBOOT_API uint32_t MOX_IsSysSelfRunEnable(void);
/** @return 0, without a request. Products may replace this function. */
MOXBOOT_API uint32_t MOX_GetSysMMBState(void);

MOXBOOT_END

#endif
