/* SPDX-License-Identifier: Apache-2.0 */
/**
 * @file model.h Product models: which key files and product feature file a board needs. A model is not stored
 * as such; it follows from the hard type and, by product line, the package type, the service type or the
 * logic id. Several models may fit one board; the order of g_linkFileDesc (link.h) then decides.
 *
 * Any thread may call; nothing is remembered between calls. "Reported" is explained in channel.h; every
 * report here is of a failure. No pointer is kept.
 */
#ifndef MOXBOOT_MODEL_H
#define MOXBOOT_MODEL_H

#include <moxboot/families.h>

MOXBOOT_BEGIN

/**
 * Reads the product service type, the number in the boot variable "product_service_type".
 * @param type receives it
 * @return 0; 0xFFFFFFFF when the variable cannot be read (reported) or @p type is null, with @p type
 * untouched
 */
MOXBOOT_API uint32_t DrvBoot_GetProductServiceType(uint32_t *type);

/**
 * Tells whether this board's hard type is in a list.
 * @param types @p count hard types
 * @param flag  receives 1 or 0; 0 also on failure
 * @param spare not used
 * @return 0; 10000 when the hard type cannot be read (reported) or a pointer is null
 */
MOXBOOT_API uint32_t DrvBootInstallRunFile(const uint32_t *types, int32_t count, uint8_t *flag,
                                           uint32_t spare);

/**
 * Tells whether this board's hard type is in a list and the board is in ptn mode (DrvBoot_PtnMode(), whose
 * failure counts as a no).
 * @param flag receives 1 or 0; untouched on failure
 * @return as DrvBootInstallRunFile()
 */
MOXBOOT_API uint32_t DrvBootInstallRunFileWithPtnmode(const uint32_t *types, int32_t count, uint8_t *flag,
                                                      uint32_t spare);

/** KYP467R: 0x90020709, 0x9002071F. Results and flag as for DrvBootInstallRunFile(). */
MOXBOOT_API uint32_t DrvBootInstallRunFileKYP467R(uint8_t *flag, uintptr_t argument);
/** KYP467R in ptn mode. Results and flag as for DrvBootInstallRunFileWithPtnmode(). */
MOXBOOT_API uint32_t DrvBootInstallRunFileKYP467RPtnMode(uint8_t *flag, uintptr_t argument);

/* All functions below are board predicates (DrvBootPredicate): the flag is 1 or 0 and the result 0, or the
 * result is 0xFFFFFFFF, with the flag untouched, when a board attribute cannot be read (reported) or the flag
 * is null. The second argument is not used. */

#define DRVBOOT_KEY_FILE_BOARDS 8u
/** A board that may have a key file of its model. */
typedef struct {
    uint32_t hard_type;
    uint32_t service_type; /**< the one with a key file of its own; 0 for all */
} DrvbootKeyFileBoard;
/** Boards that may have a key file of their model. */
extern MOXBOOT_API const DrvbootKeyFileBoard g_noNeedLinkKeyFileMoxBoard[DRVBOOT_KEY_FILE_BOARDS];

/**
 * Tells whether this board takes the generic key file: all boards but those of g_noNeedLinkKeyFileMoxBoard
 * with the service type named there, and 0x9002071C with logic id 0x32F08300. Reads all three attributes on
 * every board.
 */
MOXBOOT_API uint32_t DrvBoot_KeyFileNoNeedLink(uint8_t *flag, uintptr_t argument);

/* ---- Models by hard type alone ---- */

/** KYP362R-H, -J, -V: 0x900005D2, 0x900005D3, 0x900005DB. */
MOXBOOT_API uint32_t DrvBoot_IsInstallRunFile_KYP362R_HJV(uint8_t *flag, uintptr_t argument);
/** KYP427W-432R: 0x900005F5, 0x900005E7. */
MOXBOOT_API uint32_t DrvBoot_IsInstallKYP432RRunFileByHardtype(uint8_t *flag, uintptr_t argument);
/** KYP245W-432V: 0x9002071C. */
MOXBOOT_API uint32_t DrvBoot_IsInstallRunFile_KYP432V_6273(uint8_t *flag, uintptr_t argument);
/** KYP519W-432V: 0x90020752. */
MOXBOOT_API uint32_t DrvBoot_IsInstallRunFile_KYP432V_6274(uint8_t *flag, uintptr_t argument);
/** KYP245W-432R: 0x900005F4, 0x900005D1. */
MOXBOOT_API uint32_t DrvBoot_IsInstallRunFile_KYP432R_6273(uint8_t *flag, uintptr_t argument);
/** KYP519W-432R: 0x90020759. */
MOXBOOT_API uint32_t DrvBoot_IsInstallRunFile_KYP432R_6274(uint8_t *flag, uintptr_t argument);
/** KYP467J-427W: 0x900005E6. */
MOXBOOT_API uint32_t DrvBoot_IsInstallKYP467JRunFileByHardtype(uint8_t *flag, uintptr_t argument);
/** KYP247: 0x90000758, 0x900005F8. */
MOXBOOT_API uint32_t DrvBoot_IsInstallRunFile_KYP247(uint8_t *flag, uintptr_t argument);
/** KYP362V-H, of any service type: 0x90020720. */
MOXBOOT_API uint32_t DrvBoot_InstallKYP362VH(uint8_t *flag, uintptr_t argument);

/* ---- Models by hard type and package type ----
 * The package type is the number in the memory environment variable "pack_type". It is read only on a board
 * of a listed hard type; one that cannot be read is a no, not a failure.
 */

/** KYP362R-L, -W: 0x9000054B of any package type, which is then not read; 0x90000713 of 102. */
MOXBOOT_API uint32_t DrvBoot_IsInstallRunFile_KYP362R_LW(uint8_t *flag, uintptr_t argument);
/** KYP362R-Z, -Q: 0x9002077B, 0x90020757 of package type 102. */
MOXBOOT_API uint32_t DrvBoot_IsInstallRunFile_KYP362R_ZQ(uint8_t *flag, uintptr_t argument);
/** GL6264-Q2R: 0x9002077B, 0x90020757 of package type 165. */
MOXBOOT_API uint32_t DrvBoot_IsInstallRunFile_GL6264_Q2R(uint8_t *flag, uintptr_t argument);
/** GL6264-Q2H: 0x90000713 of package type 145. */
MOXBOOT_API uint32_t DrvBoot_IsInstallRunFile_GL6264_Q2H(uint8_t *flag, uintptr_t argument);
/** GL6264-Q2V: 0x90020720 of package type 157. */
MOXBOOT_API uint32_t DrvBoot_IsInstallRunFile_GL6264_Q2V(uint8_t *flag, uintptr_t argument);
/** GL6264-Q2V-J: 0x9002202A of package type 157. */
MOXBOOT_API uint32_t DrvBoot_IsInstallRunFile_GL6264_Q2V_J(uint8_t *flag, uintptr_t argument);
/** KYP613-S: 0x90000713 of package type 254. */
MOXBOOT_API uint32_t DrvBoot_IsInstallRunFile_KYP613_S(uint8_t *flag, uintptr_t argument);
/** DUB594J-R92: 0x90000758 of package type 169. */
MOXBOOT_API uint32_t DrvBoot_IsInstallRunFile_GL6264_R92(uint8_t *flag, uintptr_t argument);
/** DUB594H-R22: 0x90020786, 0x90020787, 0x90020784, 0x90B2077D of package type 174. */
MOXBOOT_API uint32_t DrvBoot_IsInstallRunFile_DUB594_R22(uint8_t *flag, uintptr_t argument);

/* ---- Models by hard type and logic id ----
 * The logic id is that of MOX_GetSelfEncapLogicId(). It is read on every board, whatever its hard type.
 */

/** GL6264-Q7: 0x9002071C, logic id 0x32F08200 to 0x32F08205. */
MOXBOOT_API uint32_t DrvBoot_IsInstallRunFile_GL6264_Q7(uint8_t *flag, uintptr_t argument);
/** GL6264-Q7Z: 0x9002071C, logic id 0x32F08300. */
MOXBOOT_API uint32_t DrvBoot_IsInstallRunFile_GL6264_Q7Z(uint8_t *flag, uintptr_t argument);
/** GL6264-R22: 0x90B2077D, logic id 0x32F0B000. */
MOXBOOT_API uint32_t DrvBoot_IsInstallRunFile_GL6264_R22(uint8_t *flag, uintptr_t argument);
/** Ploxy-H639Q: 0x90B2077D, logic id 0x32F0B020. */
MOXBOOT_API uint32_t DrvBoot_IsInstallRunFile_GL6264_H639Q(uint8_t *flag, uintptr_t argument);
/** Ploxy-H632: 0x90B2077D, logic id 0x32F0B050, 0x32F0B090. */
MOXBOOT_API uint32_t DrvBoot_IsInstallRunFile_Ploxy_H632(uint8_t *flag, uintptr_t argument);
/** Ploxy-H632U: 0x90B2077D, logic id 0x32F0B060, 0x32F0B070. */
MOXBOOT_API uint32_t DrvBoot_IsInstallRunFile_Ploxy_H632U(uint8_t *flag, uintptr_t argument);
/** Ploxy-H622: 0x90B2077D, logic id 0x32F0B080, 0x32F0B010. */
MOXBOOT_API uint32_t DrvBoot_IsInstallRunFile_GL6264_H622(uint8_t *flag, uintptr_t argument);
/** Ploxy-H622Q: 0x90B2077D, logic id 0x32F0B030. */
MOXBOOT_API uint32_t DrvBoot_IsInstallRunFile_GL6264_H622Q(uint8_t *flag, uintptr_t argument);

/* ---- Models by hard type and service type ----
 * The service type is that of DrvBoot_GetProductServiceType(). It is read on every board, whatever its hard
 * type.
 */

/** KYP362V-H: 0x90020720 of service type 148. */
MOXBOOT_API uint32_t DrvBoot_InstallKYP362VHWithoutPack(uint8_t *flag, uintptr_t argument);
/** KYP362V-J: 0x9002202A of service type 148. */
MOXBOOT_API uint32_t DrvBoot_IsInstallRunFile_KYP362V_J(uint8_t *flag, uintptr_t argument);
/** KYP627-S: 0x9002071C of service type 253. */
MOXBOOT_API uint32_t DrvBoot_IsInstallRunFile_KYP627_S(uint8_t *flag, uintptr_t argument);

/* ---- Models in ptn mode ----
 * Yes when the plain predicate and DrvBoot_PtnMode() both say yes; the mode is asked also when the plain
 * answer is no. */

/* A failure of DrvBoot_PtnMode() counts as a no. */

/** DrvBoot_IsInstallRunFile_KYP362R_HJV() in ptn mode. */
MOXBOOT_API uint32_t DrvBoot_IsInstallPtnRunFile_KYP362R_HJV(uint8_t *flag, uintptr_t argument);
/** DrvBoot_IsInstallRunFile_KYP247() in ptn mode. */
MOXBOOT_API uint32_t DrvBoot_IsInstallPtnRunFile_KYP247(uint8_t *flag, uintptr_t argument);
/** DrvBoot_IsInstallKYP432RRunFileByHardtype() in ptn mode. */
MOXBOOT_API uint32_t DrvBoot_KYP432RRunFileByHardtypeAndPtnmode(uint8_t *flag, uintptr_t argument);
/** DrvBoot_IsInstallRunFile_KYP432V_6273() in ptn mode. */
MOXBOOT_API uint32_t DrvBoot_IsInstallPtnRunFile_KYP432V_6273(uint8_t *flag, uintptr_t argument);
/** DrvBoot_IsInstallRunFile_KYP432V_6274() in ptn mode. */
MOXBOOT_API uint32_t DrvBoot_IsInstallPtnRunFile_KYP432V_6274(uint8_t *flag, uintptr_t argument);
/** DrvBoot_IsInstallRunFile_KYP432R_6274() in ptn mode. */
MOXBOOT_API uint32_t DrvBoot_IsInstallPtnRunFile_KYP432R_6274(uint8_t *flag, uintptr_t argument);
/** DrvBoot_IsInstallKYP467JRunFileByHardtype() in ptn mode. */
MOXBOOT_API uint32_t DrvBoot_KYP467JRunFileByHardtypeAndPtnmode(uint8_t *flag, uintptr_t argument);
/** DrvBoot_IsInstallRunFile_KYP362R_LW() in ptn mode. */
MOXBOOT_API uint32_t DrvBoot_IsInstallPtnRunFile_KYP362R_LW(uint8_t *flag, uintptr_t argument);
/** DrvBoot_IsInstallRunFile_KYP613_S() in ptn mode. */
MOXBOOT_API uint32_t DrvBoot_IsInstallPtnRunFile_KYP613_S(uint8_t *flag, uintptr_t argument);
/** DrvBoot_InstallKYP362VHWithoutPack() in ptn mode. */
MOXBOOT_API uint32_t DrvBoot_IsInstallPtnRunFile_KYP362V_H(uint8_t *flag, uintptr_t argument);
/** DrvBoot_IsInstallRunFile_KYP362V_J() in ptn mode. */
MOXBOOT_API uint32_t DrvBoot_IsInstallPtnRunFile_KYP362V_J(uint8_t *flag, uintptr_t argument);

/* A failure of DrvBoot_PtnMode() is one of the predicate, too. */

/** DrvBoot_IsInstallRunFile_KYP432R_6273() in ptn mode. */
MOXBOOT_API uint32_t DrvBoot_IsInstallPtnRunFile_KYP432R_6273(uint8_t *flag, uintptr_t argument);
/** DrvBoot_IsInstallRunFile_KYP362R_ZQ() in ptn mode. */
MOXBOOT_API uint32_t DrvBoot_IsInstallPtnRunFile_KYP362R_ZQ(uint8_t *flag, uintptr_t argument);
/** DrvBoot_IsInstallRunFile_GL6264_Q7() in ptn mode. */
MOXBOOT_API uint32_t DrvBoot_IsInstallPtnRunFile_GL6264_Q7(uint8_t *flag, uintptr_t argument);
/** DrvBoot_IsInstallRunFile_GL6264_Q7Z() in ptn mode. */
MOXBOOT_API uint32_t DrvBoot_IsInstallPtnRunFile_GL6264_Q7Z(uint8_t *flag, uintptr_t argument);
/** DrvBoot_IsInstallRunFile_GL6264_R22() in ptn mode. */
MOXBOOT_API uint32_t DrvBoot_IsInstallPtnRunFile_GL6264_R22(uint8_t *flag, uintptr_t argument);
/** DrvBoot_IsInstallRunFile_GL6264_H639Q() in ptn mode. */
MOXBOOT_API uint32_t DrvBoot_IsInstallPtnRunFile_GL6264_H639Q(uint8_t *flag, uintptr_t argument);
/** DrvBoot_IsInstallRunFile_Ploxy_H632() in ptn mode. */
MOXBOOT_API uint32_t DrvBoot_IsInstallPtnRunFile_Ploxy_H632(uint8_t *flag, uintptr_t argument);
/** DrvBoot_IsInstallRunFile_Ploxy_H632U() in ptn mode. */
MOXBOOT_API uint32_t DrvBoot_IsInstallPtnRunFile_Ploxy_H632U(uint8_t *flag, uintptr_t argument);
/** DrvBoot_IsInstallRunFile_GL6264_H622() in ptn mode. */
MOXBOOT_API uint32_t DrvBoot_IsInstallPtnRunFile_GL6264_H622(uint8_t *flag, uintptr_t argument);
/** DrvBoot_IsInstallRunFile_GL6264_H622Q() in ptn mode. */
MOXBOOT_API uint32_t DrvBoot_IsInstallPtnRunFile_GL6264_H622Q(uint8_t *flag, uintptr_t argument);
/** DrvBoot_IsInstallRunFile_GL6264_Q2R() in ptn mode. */
MOXBOOT_API uint32_t DrvBoot_IsInstallPtnRunFile_GL6264_Q2R(uint8_t *flag, uintptr_t argument);
/** DrvBoot_IsInstallRunFile_GL6264_Q2H() in ptn mode. */
MOXBOOT_API uint32_t DrvBoot_IsInstallPtnRunFile_GL6264_Q2H(uint8_t *flag, uintptr_t argument);
/** DrvBoot_IsInstallRunFile_GL6264_Q2V() in ptn mode. */
MOXBOOT_API uint32_t DrvBoot_IsInstallPtnRunFile_GL6264_Q2V(uint8_t *flag, uintptr_t argument);
/** DrvBoot_IsInstallRunFile_GL6264_Q2V_J() in ptn mode. */
MOXBOOT_API uint32_t DrvBoot_IsInstallPtnRunFile_GL6264_Q2V_J(uint8_t *flag, uintptr_t argument);
/** DrvBoot_IsInstallRunFile_GL6264_R92() in ptn mode. */
MOXBOOT_API uint32_t DrvBoot_IsInstallPtnRunFile_GL6264_R92(uint8_t *flag, uintptr_t argument);
/** DrvBoot_IsInstallRunFile_DUB594_R22() in ptn mode. */
MOXBOOT_API uint32_t DrvBoot_IsInstallPtnRunFile_DUB594_R22(uint8_t *flag, uintptr_t argument);

MOXBOOT_END

#endif
