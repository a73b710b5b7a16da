/* SPDX-License-Identifier: Apache-2.0 */
/**
 * @file tpm.h TPM (trusted platform module) and trusted startup. The answers come from lists of hard types,
 * from board-support libraries that are opened for each question, and from variables.
 *
 * Any thread may call. Messages that are logged once a process are counted without a lock. "Reported" is
 * explained in channel.h; a line here has trace level 1 unless said otherwise. No pointer is kept.
 */
#ifndef MOXBOOT_TPM_H
#define MOXBOOT_TPM_H

#include <moxboot/types.h>

MOXBOOT_BEGIN

/** The board-support library cannot be asked, or cannot answer (-14). */
#define DRVBOOT_TPM_CANNOT_ASK 0xFFFFFFF2u
/** Trusted startup, a result of MOX_GetTrustStartupType(). */
#define MOX_TRUST_STARTUP 3u
/** The board has a TPM, a result of MOX_GetBoardTpmType(). */
#define MOX_TPM_PRESENT 2u

/**
 * @return 1 when the board's TPM is active, else 0. Where nobody can be asked, or the board is not one of
 * those with a TPM, the boot variable "tpm_is_actived" tells: exactly "true"
 */
MOXBOOT_API uint32_t MOX_IsTpmActived(void);

/**
 * @return 1 when random bytes may be taken from the TPM: "tpm_is_actived" is "true", or the board is one of
 * those that can, for some of them unless "product_family_type" is 8 (both told); else 0
 */
MOXBOOT_API uint32_t MOX_IsSupportTpmRandom(void);

/** @return MOX_TRUST_STARTUP, on some boards only with secure boot; 0 otherwise and for an unreadable hard
 * type */
MOXBOOT_API uint32_t MOX_GetTrustStartupType(void);

/**
 * @return MOX_TPM_PRESENT when the board has a TPM, or else the boot variable "brd_is_sp_tpm" is exactly
 * "yes"; otherwise 0
 */
MOXBOOT_API uint32_t MOX_GetBoardTpmType(void);

/** @return 1 when there is a "/dev/tpm0"; else 0 (logged once a process, syslog, priority info) */
MOXBOOT_API uint32_t MOX_IsTpm2Type(void);

/** @return 1 when the board has a TPM and that is a TPM 2.0, else 0 */
MOXBOOT_API uint32_t MOX_IsSupportKeyStore(void);

/** @return 1 when the hard type is one of the boards with a TPM; else 0, also when it cannot be read
 * (reported, trace level 4) */
MOXBOOT_API uint32_t DrvBootIsTpmsiReady(void);

/** @return 1 for a board that supports remote attestation, else 0 */
MOXBOOT_API uint32_t DrvbootIsSupportRemoteAttest(uint32_t hard_type);

/**
 * Asks "libdrv_basic.so" whether the TPM is active. Answers are reported once a process, failures to ask
 * always.
 * @return 1 active; 0 not, or the question failed; DRVBOOT_TPM_CANNOT_ASK
 */
MOXBOOT_API uint32_t DrvBootGetTpmActiveStatus(void);

/**
 * Asks "libdrv_basic.so" whether a TPM is present. One message is reported in a process, whichever comes
 * first.
 * @return 1 present; 0 absent, or the question failed; DRVBOOT_TPM_CANNOT_ASK
 */
MOXBOOT_API uint32_t DrvBootGetTpmBoardType(void);

/** Asks "/lib/libnb_bsp.so". @return 1 when secure boot is enabled; else 0, also when nobody can be asked */
MOXBOOT_API uint32_t Drvboot_GetSecureBootType(void);

/** @return 1 when @p hard_type is among the first @p count entries of @p list; else 0, also for a null list
 */
MOXBOOT_API uint32_t IsExistInHWList(uint32_t hard_type, const uint32_t *list, uint32_t count);

MOXBOOT_END

#endif
