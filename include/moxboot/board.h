/* SPDX-License-Identifier: Apache-2.0 */
/**
 * @file board.h
 * Who this board is: hard type, role, active and high-availability states, chassis, slots, OS type.
 *
 * Most items come in pairs: an exported MOX_ function and the drvboot_impl_ function that does the work. The
 * pair has one description here; arguments and results are the same. Each item query is one request on the
 * driver channel (channel.h). Any thread may call. Two functions remember the last value for their log line
 * in a plain variable; a race can only duplicate or drop that line. No pointer is kept.
 *
 * Common results, unless a function says otherwise:
 * - "channel result": 0, DRVBOOT_ERR_IOCTL or 0xFFFFFFFF as drvboot_ioctrl() gives them; an output is stored
 * on 0 only.
 * - -1 stands for 0xFFFFFFFF. A null output pointer gives the failure result and stores nothing.
 * - Every failure is "reported" (see channel.h), a set additionally by drvboot_set_value_by_tlv().
 * - "MPU only": on a board that is not a main processing unit the function answers as told, without asking
 * the item. A board whose hard type cannot be read counts as an MPU.
 */
#ifndef MOXBOOT_BOARD_H
#define MOXBOOT_BOARD_H

#include <moxboot/types.h>

MOXBOOT_BEGIN

/* ---- Classes of boards
 * ------------------------------------------------------------------------------------- */

/** @return 1 when @p hard_type is a main processing unit's, else 0 */
MOXBOOT_API uint32_t drvboot_IsMpu(uint32_t hard_type);
/** The same as drvboot_IsMpu(). */
MOXBOOT_API uint32_t drvboot_impl_is_mpu_by_hardtype(uint32_t hard_type);
/** @return 1 when this board is a main processing unit, or when its hard type cannot be read (reported); else
 * 0 */
MOXBOOT_API uint32_t drvboot_impl_is_mpu_brd(void);
/** @return 1 when a board of @p hard_type is capable of high availability, else 0 */
MOXBOOT_API uint32_t drvboot_IsHaBoard(uint32_t hard_type);
/** @return 1 when @p hard_type is a line card's, else 0 */
MOXBOOT_API uint32_t drvboot_IsLpu(uint32_t hard_type);
/** @return 1 when a board of @p hard_type keeps a backup of its root, else 0 */
MOXBOOT_API uint32_t drvboot_IsUseRootbak(uint32_t hard_type);

/** One row of the OS type table. */
typedef struct DrvbootHardtypeOstype {
    uint32_t hard_type;
    uint32_t os_type;
} DrvbootHardtypeOstype;

#define DRVBOOT_OSTYPE_ROWS 46u
/** OS type by hard type; the first row that matches counts. */
extern MOXBOOT_API const DrvbootHardtypeOstype g_arrHardtype2Ostype[DRVBOOT_OSTYPE_ROWS];

/** Result of MOX_GetOsType() when the hard type cannot be read. */
#define MOX_OSTYPE_UNKNOWN 255u
/** @return OS type of this board; 0 when its hard type is not in the table; MOX_OSTYPE_UNKNOWN (reported) */
MOXBOOT_API uint32_t MOX_GetOsType(void);

/** @return 33 for CPU id 10, 35 for 4 and 9, 0 for any other; the answer is reported as information */
MOXBOOT_API uint32_t MOX_GetCpuFullType(void);

/**
 * The coarse role of this board.
 * @param role receives 1 for an MPU that is the master main board, 0 for another MPU, 3 for a line card, 4
 * for others
 * @return 0; 1 for a null pointer; -1 when the hard type cannot be read (reported)
 */
MOXBOOT_API int32_t MOX_GetRoleOfBoard(uint32_t *role);

/** The one identifier that MOX_GetBlockTime() knows. */
#define MOX_BLOCK_TIME_ID 0x6010017u
/** @return 0 for MOX_BLOCK_TIME_ID, 2 (not supported) for any other */
MOXBOOT_API int32_t MOX_GetBlockTime(uint32_t id);

/* ---- Hard type and hard information
 * ------------------------------------------------------------------------ */

/** Stores the hard type. @return 1 on success, 0 on failure: inverted on purpose, against everything else
 * here */
MOXBOOT_API uint32_t MOX_GetBoardHardType(uint32_t *hard_type);
MOXBOOT_API uint32_t drvboot_impl_get_brd_hard_type(uint32_t *hard_type);

/** Number of meaningful bytes in MoxHardInfo::address. */
#define MOX_HARD_ADDRESS_LENGTH 6u

/** Board hard information. */
typedef struct MoxHardInfo {
    uint16_t version_low;    /**< 0 */
    uint16_t version_high;   /**< 1: the first word reads 0x10000 on a little-endian machine */
    uint16_t slot;           /**< slot number, as in "/dev/slot%u" */
    uint16_t reserved;       /**< 0 */
    uint32_t hard_type;      /**< hard type */
    uint32_t item_2200;      /**< item 0x10002200 */
    uint32_t address_length; /**< MOX_HARD_ADDRESS_LENGTH */
    uint8_t address[16];     /**< the first 6 bytes are filled, the rest stay as the caller had them */
    uint32_t item_29b4;      /**< item 0x100029b4 */
} MoxHardInfo;
MOXBOOT_STATIC_ASSERT(sizeof(MoxHardInfo) == 40, "MoxHardInfo is shared with products");
MOXBOOT_STATIC_ASSERT(offsetof(MoxHardInfo, address) == 20, "MoxHardInfo is shared with products");
MOXBOOT_STATIC_ASSERT(offsetof(MoxHardInfo, item_29b4) == 36, "MoxHardInfo is shared with products");

/**
 * Reads six items with one request. A device that does not open is tried once more after 500 ms. The first
 * success in a process clears g_idebug_print_flag.
 * @return 0, or DRVBOOT_ERR_IOCTL for every failure; all are reported but a failed ioctl or a refused reply
 */
MOXBOOT_API uint32_t MOX_GetHard_Info(MoxHardInfo *info);
MOXBOOT_API uint32_t drvboot_impl_get_hardinfo(MoxHardInfo *info);

/* ---- Roles
 * ------------------------------------------------------------------------------------------------- */

/** Sets the board role. MPU only: -1 (reported). @return channel result */
MOXBOOT_API uint32_t MOX_SetBoardRole(uint32_t role);
MOXBOOT_API uint32_t drvboot_impl_set_brd_role(uint32_t role);
/** @return the board role, or -1. MPU only: -1 (reported) */
MOXBOOT_API uint32_t MOX_GetBoardRole(void);
MOXBOOT_API uint32_t drvboot_impl_get_brd_role(void);

/**
 * Asks the driver for the role item and then answers as if it had none: callers rely on the fallback this
 * causes.
 * @param role receives 0, always
 * @return -1, always; only a failed read is reported
 */
MOXBOOT_API uint32_t drv_boot_get_boardrole(uint32_t *role);
MOXBOOT_API uint32_t drvboot_impl_get_board_role(uint32_t *role);
/** Sets the role item that drv_boot_get_boardrole() asks. @return channel result */
MOXBOOT_API uint32_t MOX_SetRoleOfBoard(uint32_t role);
MOXBOOT_API uint32_t drvboot_impl_set_role_of_brd(uint32_t role);

/** Board roles that stand for a backup state. */
#define MOX_ROLE_BACKUP_1 2u
#define MOX_ROLE_BACKUP_0 3u
/** Sets the role that stands for backup state 0 or 1. @return MOX_SetBoardRole()'s; 1 for any other state,
 * unasked */
MOXBOOT_API uint32_t MOX_SetBoardBackupState(uint32_t state);
/** Stores the backup state that the board role stands for. @return 0; 1 for a null pointer or any other role
 */
MOXBOOT_API uint32_t MOX_GetBoardBackupState(uint32_t *state);
/** Tells the driver the backup state. @return 0, or on failure the count of characters that the report
 * printed */
MOXBOOT_API uint32_t MOX_SetBackupStatetoDrv(uint32_t state);
MOXBOOT_API uint32_t drvboot_impl_set_backup_state_to_drv(uint32_t state);

/* ---- Active and high-availability states
 * ------------------------------------------------------------------- */

/** @return 1 when this board is the master main board, else 0, also on failure. MPU only: 0 (reported) */
MOXBOOT_API uint32_t MOX_BoardIsMMB(void);
MOXBOOT_API uint32_t drvboot_impl_brd_is_mmb(void);
/** @return 1 when the active item reads 0, else 0, also on failure. MPU only: 0 (reported) */
MOXBOOT_API uint32_t MOX_BoardStatusIsActive(void);
MOXBOOT_API uint32_t drvboot_impl_brd_status_is_active(void);

/** Stands for "not applicable" in the hard active and all-HA states of a board that is not an MPU. */
#define MOX_STATE_NOT_APPLICABLE 2u
/** Stores the hard active state. MPU only: MOX_STATE_NOT_APPLICABLE, 0. @return 0 or -1 */
MOXBOOT_API uint32_t MOX_GetBoardHardActiveState(uint32_t *state);
MOXBOOT_API uint32_t drvboot_impl_get_brd_hard_active_state(uint32_t *state);
/** Sets the hard active state, 0 or 1. MPU only: -1 (not logged). @return 0; -1 */
MOXBOOT_API uint32_t drvboot_impl_set_brd_hard_active_state(uint32_t state);
/**
 * Sets the soft active state, 1 or 2: writes 1 for 2 and 0 for 1, waits 2000 ms, writes 0. MPU only: -1 (not
 * logged).
 * @return 0 when both writes succeeded, else -1
 */
MOXBOOT_API uint32_t drvboot_impl_set_brd_soft_active_state(uint32_t state);
/** Marks the board as active for the switch-over (XCS). The argument is not used. MPU only: -1 (not logged).
 */
MOXBOOT_API uint32_t MOX_SetBoardXcsActiveState(uint32_t state);
/** The same. @return 0 or -1 */
MOXBOOT_API uint32_t drvboot_impl_set_brd_xcs_active_state(void);
/**
 * Stores the state of all high-availability conditions, the item that the XCS setter writes. A value that
 * differs from the last one is reported as information. MPU only: MOX_STATE_NOT_APPLICABLE, 0.
 * @return 0 or -1
 */
MOXBOOT_API uint32_t drvboot_impl_get_brd_all_ha_status(uint32_t *status);
/** @return the logic HA state, or -1. MPU only: -1 (reported) */
MOXBOOT_API uint32_t MOX_GetLogicHaStatus(void);
MOXBOOT_API uint32_t drvboot_impl_get_logic_ha_status(void);
/** Makes the peer the XCS slave. @return 0, or on failure the count of characters that the report printed */
MOXBOOT_API uint32_t MOX_Set_Peer_XCS_Slave(void);
MOXBOOT_API uint32_t drvboot_impl_set_peer_xcs_slave(void);
/** Writes an item, despite its name. MPU only: -1 (reported). @return channel result */
MOXBOOT_API uint32_t MOX_GetM2SPID(uint32_t pid);
MOXBOOT_API uint32_t drvboot_impl_get_m2s_pid(uint32_t pid);
/** @return -1, always; no request is made */
MOXBOOT_API uint32_t drvboot_impl_get_soft_act_disable(void);
/** @return -1, always; no request is made */
MOXBOOT_API uint32_t MOX_SetMasterBoardEnable(void);
MOXBOOT_API uint32_t drvboot_impl_set_master_brd_enable(void);
/** @return 0; no request is made */
MOXBOOT_API uint32_t MOX_SetDelayVoteSlave(void);

/* ---- Chassis, slots and the other boards
 * ------------------------------------------------------------------- */

/** Sets the chassis id. MPU only: -1 (reported). @return channel result */
MOXBOOT_API uint32_t MOX_SetChassisID(uint32_t id);
MOXBOOT_API uint32_t drvboot_impl_set_chassis_id(uint32_t id);
/** Stores the chassis' hard type. @return channel result */
MOXBOOT_API uint32_t MOX_GetChassis_HardType(uint32_t *hard_type);
MOXBOOT_API uint32_t drvboot_impl_get_chassis_hardtype(uint32_t *hard_type);
/** Stores the version of the chassis' circuit board. @return channel result */
MOXBOOT_API uint32_t MOX_GetChassis_PcbVerson(uint32_t *version);
MOXBOOT_API uint32_t drvboot_impl_get_chassis_pcb_verson(uint32_t *version);

#define MOX_SLOT_FIRST 1u
#define MOX_SLOT_LAST 32u
/**
 * Stores whether a board is present in a slot.
 * @param slot MOX_SLOT_FIRST to MOX_SLOT_LAST; any other is reported
 * @return 0 or -1. MPU only: -1 (not logged), as is a failed query
 */
MOXBOOT_API uint32_t drvboot_impl_get_brd_present(uint32_t slot, uint32_t *present);

/**
 * Stores this board's own logic id, which its slot device knows.
 * @return channel result; the hard information's code when the slot is not to be had, reported as the logic
 * id's failure
 */
MOXBOOT_API uint32_t MOX_GetSelfEncapLogicId(uint32_t *logic_id);
MOXBOOT_API uint32_t drvboot_impl_get_self_encap_logicid(uint32_t *logic_id);
/** Stores the registration status of the slave board. @return channel result */
MOXBOOT_API uint32_t MOX_GetSlaveBoardRegStatus(uint32_t *status);
MOXBOOT_API uint32_t drvboot_impl_get_slavebrd_reg_status(uint32_t *status);
/**
 * Stores the peer's half (the upper 16 bits) of the hardware fault state, 0 on failure. Reports the state as
 * information, the raw value only when it differs from the last one.
 * @return channel result
 */
MOXBOOT_API uint32_t Drv_GetPeerBoardHardBadStatus(uint32_t *status);
MOXBOOT_API uint32_t drvboot_impl_get_peerbrd_hardbad_status(uint32_t *status);
/** @return the CPU id; 1 on failure */
MOXBOOT_API uint32_t GetCpuIdFromLpu(void);
MOXBOOT_API uint32_t drvboot_impl_get_cpuId_from_lpu(void);

/* ---- Reset modes
 * ------------------------------------------------------------------------------------------- */

/** Asks for the reset mode, and stores the constant 2 in place of the answer. @return 0 or -1 */
MOXBOOT_API uint32_t MOX_GetResetMode(uint32_t *mode);
MOXBOOT_API uint32_t drvboot_impl_get_rstmode(uint32_t *mode);
/** Stores the mode of the coming reset. @return 0 or -1 */
MOXBOOT_API uint32_t drvboot_impl_pre_rstmode(uint32_t *mode);
/** @return 1 when the system supports a soft reset, else 0, also on failure */
MOXBOOT_API uint32_t drvboot_impl_is_system_support_softrst(void);

/* ---- Package synchronisation light
 * ------------------------------------------------------------------------- */

/**
 * Reads whether the board can blink its ACT light, from the platform environment's "actx_led_support".
 * @return 0; the platform's code when the variable is missing; DRVBOOT_ERR_IOCTL when it holds no number
 */
MOXBOOT_API uint32_t drv_get_actx_led_flag(uint32_t *capable);
/**
 * Has the ACT light show that a package is being synchronised, where the board can do so and its hard active
 * state is not 0. MPU only: 0 (reported).
 * @return 0, also where there is nothing to show; -1 when the capability or the item fails
 */
MOXBOOT_API uint32_t MOX_SetSyncCCPkgFlag(uint32_t flag);
MOXBOOT_API uint32_t drvboot_impl_set_sync_ccpkg_flag(uint32_t flag);

/* ---- Constant answers, kept for their callers
 * -------------------------------------------------------------- */

/** @return 0. A weak symbol: a product may put its own in front */
MOXBOOT_API uint32_t MOX_GetAutoUpgrade_Flag(void);
MOXBOOT_API uint32_t drvboot_impl_get_auto_upgrade_flag(void);
/** @return 0 */
MOXBOOT_API uint32_t setQuickStartFlag(void);
MOXBOOT_API uint32_t drvboot_impl_set_quick_start_flag(void);
/** @return 0 */
MOXBOOT_API uint32_t setNotQuickstartFlag(void);
/** @return 0. A weak symbol: a product may put its own in front */
MOXBOOT_API uint32_t MOX_IsRunInLS(void);
/** Does nothing. A weak symbol: a product may put its own in front */
MOXBOOT_API void MOX_CpuOverLoadHandleHook(void);
/** @return 1, and reports so (step trace level 4) */
MOXBOOT_API uint32_t MOX_UseBootpCount(void);

MOXBOOT_END

#endif
