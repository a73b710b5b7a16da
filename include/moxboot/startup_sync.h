/* SPDX-License-Identifier: Apache-2.0 */
/**
 * @file startup_sync.h The start-up file that two main boards of different models keep in step.
 *
 * Any thread may call; nothing is remembered between calls. "Reported" is explained in channel.h; progress is
 * told with trace level 1. No pointer is kept. "Failed" stands for 0xFFFFFFFF.
 */
#ifndef MOXBOOT_STARTUP_SYNC_H
#define MOXBOOT_STARTUP_SYNC_H

#include <moxboot/types.h>

MOXBOOT_BEGIN

/** Size of the two texts of a MoxStartupFileSync in bytes, terminators included. */
#define MOX_SYNC_TEXT_SIZE 128u

/** The file that is offered to the other board. */
typedef struct MoxStartupFileSync {
    char file_name[MOX_SYNC_TEXT_SIZE];
    char version[MOX_SYNC_TEXT_SIZE];
    uint32_t length; /**< in bytes */
} MoxStartupFileSync;
MOXBOOT_STATIC_ASSERT(sizeof(MoxStartupFileSync) == 260, "MoxStartupFileSync is shared with products");

/** @return hard type of the other board, from the platform environment ("peertype", decimal); 0 when unset */
MOXBOOT_API uint32_t drvboot_impl_get_peer_board_type(void);
/** @return 0 when this board and the other one are of the two models that pair; else failed */
MOXBOOT_API uint32_t drvboot_impl_is_isomerism_pkg(void);
/** @return 0 when "out_version" and "peer_out_version" are equal; failed when not, or when one is missing */
MOXBOOT_API uint32_t drvboot_impl_checkOut_version(void);
/** Fills the file name from "isomerism_cc_file". @return 0; failed: null, unset or too long (reported) */
MOXBOOT_API uint32_t drvboot_impl_get_update_filename(MoxStartupFileSync *record);
/** Fills the version from "isomerism_cc_ver". @return 0; failed: null, unset or too long (reported) */
MOXBOOT_API uint32_t drvboot_impl_get_update_filever(MoxStartupFileSync *record);
/**
 * Fills the length of the named file below "/opt/moxv8bak/home/".
 * @return 0; failed: null, no such file (reported)
 */
MOXBOOT_API uint32_t drvboot_impl_get_update_filelen(MoxStartupFileSync *record);

/**
 * Fills the record.
 * @return 0; -1 for a null pointer, boards that do not pair, or a field that cannot be filled
 */
MOXBOOT_API int32_t MOX_PdtGetStartupFileSyncInfo(MoxStartupFileSync *record);
/** @return 1 when the boards pair and both versions of the file and of the software are equal; else 0 */
MOXBOOT_API uint32_t MOX_PdtIsStartupFileMatch(const MoxStartupFileSync *remote,
                                               const MoxStartupFileSync *local);

MOXBOOT_END

#endif
