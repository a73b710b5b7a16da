/* SPDX-License-Identifier: Apache-2.0 */
/**
 * @file reset.h Taking the board down in order, and knowing afterwards why: the reboot sequence, the reset
 * reason records, and the soft reset.
 *
 * A reboot is started by one thread of the platform. The other functions may run on any thread; the caches of
 * the reset records and the reboot control attribute are plain variables (concurrent first reads may each ask
 * the driver and write the same bytes). "Reported" is explained in channel.h; "told" means the same with
 * trace level 1. No pointer is kept.
 */
#ifndef MOXBOOT_RESET_H
#define MOXBOOT_RESET_H

#include <moxboot/driver.h>
#include <moxboot/types.h>

MOXBOOT_BEGIN

/* ---- Reset reasons ---- */

/** Reason that asks for a fast reboot: the reboot functions return at once. */
#define MOX_RESET_FAST 0u
/** Reason that stands for "nobody knows". */
#define MOX_RESET_UNKNOWN 0x1010013u
/** The one reason whose time MOX_RebootOS() also traces into the boot environment. */
#define MOX_RESET_TRACED 0x10100d9u

/** Room for a reset reason as text. */
#define MOX_RESET_TEXT_SIZE 72u
/** Size of the reset mode record in bytes. */
#define MOX_RESET_MODE_SIZE 8u
/** Room for a name or value of the traced resets in the boot environment. */
#define MOX_RESET_ENV_SIZE 32u

/** The reset mode as cached: valid when bytes 5 and 6 are both 0xFF. All zero at load. */
extern MOXBOOT_API uint8_t g_stResetMode[MOX_RESET_MODE_SIZE];

/**
 * Tells why the board went down last. The driver is asked until it has given a valid answer once, then never
 * again.
 * @param text    receives e.g. "2024/03/01 08:00:05,0x010100d9,", or, when the driver holds no reason, the
 * board's start time as "2024/03/01 08:00:05s,0x1010013"
 * @param text_len size of @p text in bytes; MOX_RESET_TEXT_SIZE always suffices
 * @param code    receives the reason, MOX_RESET_UNKNOWN when the driver holds none
 * @return 0; 0xFFFFFFFF for a null pointer (not reported), exhausted memory, a device that does not open, a
 * failed ioctl, a status other than 0 in the reply, or a cached text that does not fit (reported); 10000 for
 * a record longer than @p text_len or not within the reply (not reported) or than its 12 bytes, a failed
 * print, or a fresh text that does not fit (reported)
 */
MOXBOOT_API uint32_t MOX_ReadResetReason(char *text, uint32_t text_len, uint32_t *code);
MOXBOOT_API uint32_t drvboot_impl_read_reset_reason(char *text, uint32_t text_len, uint32_t *code);

/**
 * Reads the reset mode record, which the library does not interpret. The driver is asked until it has given a
 * valid answer once; the first caller sees bytes 5 and 6 as the driver sent them, every later one sees 0xFF
 * there.
 * @param mode receives MOX_RESET_MODE_SIZE bytes
 * @return 0; 0xFFFFFFFF for exhausted memory, a device that does not open, a failed ioctl (reported), a null
 * pointer or a status other than 0 in the reply (not reported); 10000 for a record that is not 8 bytes long
 * (not reported)
 */
MOXBOOT_API uint32_t MOX_ReadResetReasonMode(uint8_t *mode);
MOXBOOT_API uint32_t drvboot_impl_read_reset_reason_mode(uint8_t *mode);

/**
 * Writes the text of an unknown reset: the board's start time in local time.
 * @param len size of @p text in bytes; a text that does not fit leaves it empty
 * @return 0; 0xFFFFFFFF for a null pointer, a size of 0, or a time that has no local form
 */
MOXBOOT_API uint32_t unknown_reset_info(char *text, uint32_t len);

/**
 * Chooses the pair of boot variables for the next traced reset: "early_reset_code" and "early_reset_time"
 * while the first is unset or empty; then the same with "1" behind them; then, for ever, with "2".
 * @param code_name,time_name receive the names, @p len bytes each (MOX_RESET_ENV_SIZE)
 * @return sum of the lengths of both names, as sprintf_s() gives them
 */
MOXBOOT_API int32_t drvBootGetRstEnvName(char *code_name, char *time_name, uint32_t len);

/**
 * Traces a reset in the boot environment and saves it: the code as "0x10100d9", the time as "20240301080005".
 * @param date when; the hour is taken as a signed number. Null gives -1 and does nothing
 * @return result of the last log line, without a meaning
 */
MOXBOOT_API int32_t WriteResetReasonToEnv(uint32_t code, const MoxResetDate *date);

/**
 * @return @p date as seconds since the epoch, taken as local time without daylight saving, cut to 32 bits; -1
 * for a null pointer or a date that mktime() refuses
 */
MOXBOOT_API int32_t Drvboot_ResetTimeStamp(const MoxResetDate *date);

/* ---- Reboot ---- */

/** Reboot control: enabled. */
#define MOX_REBOOT_ENABLED 0u
/** Reboot control: not by the platform. */
#define MOX_REBOOT_CONTROLLED 0xfee1deadu
/** Attribute of MOX_SetBoardAttr(): reboot control. */
#define MOX_ATTR_REBOOT_CONTROL 1u
/** Reboot control; MOX_REBOOT_ENABLED at load. Kept for the platform: the library itself does not read it. */
extern MOXBOOT_API uint32_t g_attr_reboot_ctl;

/**
 * Reboots the board: traces the reset (MOX_RESET_TRACED only), sets the XCS active state, clears the
 * watchdog, tells the driver reason and date, syncs the file systems, clears the watchdog again, and runs
 * drvboot_reboot(). Each step is told; a failed one is reported and never stops the sequence.
 * @param reason MOX_RESET_FAST: nothing but MOX_FastReboot()
 * @return does not return, except 0 for MOX_RESET_FAST and -1 for a null @p date (reported, nothing done)
 */
MOXBOOT_API int32_t MOX_RebootOS(uint32_t reason, const MoxResetDate *date);

/**
 * Does all of a reboot but the reboot, for callers that reboot by other means; nothing is traced. At the end
 * the watchdog is started, so that a reboot which never comes ends in a watchdog reset.
 * @return 0; -1 for a null @p date (reported) unless @p reason is MOX_RESET_FAST
 */
MOXBOOT_API int32_t MOX_PreRebootOS(uint32_t reason, const MoxResetDate *date);

/**
 * Tells the driver that the board is about to be reset; the driver keeps reason and date over the reset.
 * @return 0; 0xFFFFFFFF for a null @p date or a device that does not open (reported), or a failed copy; 10000
 * when the driver refuses
 */
MOXBOOT_API uint32_t MOX_SelfReset(uint32_t reason, const MoxResetDate *date);
MOXBOOT_API uint32_t drvboot_impl_self_reset(uint32_t reason, const MoxResetDate *date);

/** Does nothing. Products may replace this function. */
MOXBOOT_API void MOX_FastReboot(void);
/** Does nothing. Products may replace this function. */
MOXBOOT_API void MOX_PreResetBoard(void);

/** Writes the pre-reset reason to the driver. @return 0, or the driver channel's result (reported) */
MOXBOOT_API int32_t drvboot_impl_pre_reset_board(uint32_t reason);

/**
 * Clears and starts the watchdog, runs "/sbin/reboot" in place of this process, or "reboot" through the root
 * proxy where that is needed, and waits for the board to go down. Does not return; a failure is reported.
 */
MOXBOOT_API void drvboot_reboot(void);
/** Sleeps for ever, a second at a time. */
MOXBOOT_API void drvboot_loop_forever(void);
/** sigprocmask() with all signals. @param how SIG_BLOCK, SIG_UNBLOCK or SIG_SETMASK @return its result */
MOXBOOT_API int32_t drvboot_sigprocmask_allsigs(int32_t how);

/**
 * Sets an attribute of the board.
 * @param attr_id MOX_ATTR_REBOOT_CONTROL
 * @param value   MOX_REBOOT_ENABLED or MOX_REBOOT_CONTROLLED; any other value is told and stored as
 * MOX_REBOOT_ENABLED
 * @return 0; -1 for a null pointer or another attribute (reported)
 */
MOXBOOT_API int32_t MOX_SetBoardAttr(uint32_t attr_id, const uint32_t *value);
/**
 * Reads an attribute of the board.
 * @return 0; -1 for a null pointer (reported) or another attribute (not reported)
 */
MOXBOOT_API int32_t MOX_GetBoardAttr(uint32_t attr_id, uint32_t *value);

/* ---- Soft reset: a restart of the software that keeps reserved memory ---- */

/** Soft reset switch. */
#define MOX_SOFT_RESET_OPEN 0u
#define MOX_SOFT_RESET_CLOSED 1u

/**
 * MOX_RebootOS() with words of its own around it.
 * @return -1 for a null @p date (reported); 0 when the reboot comes back
 */
MOXBOOT_API int32_t MOX_SoftRebootOS(uint32_t reason, const MoxResetDate *date);

/**
 * Writes the soft reset switch into the memory environment ("package_set_flag").
 * @param value MOX_SOFT_RESET_OPEN or _CLOSED; a value of more than four digits is written as an empty text
 * @return 0, also when the system does not support soft reset (nothing is written then); 1 on failure
 * (reported)
 */
MOXBOOT_API uint32_t DrvBoot_SetSoftReset_Switch(uint32_t value);
/** Allows soft reset for the next package installation. Results of DrvBoot_SetSoftReset_Switch(). */
MOXBOOT_API uint32_t MOX_Open_SoftReset(void);
/** Forbids it. Results of DrvBoot_SetSoftReset_Switch(). */
MOXBOOT_API uint32_t MOX_Close_SoftReset(void);

/** @return 1 when the system supports soft reset, else 0; see drvboot_impl_is_system_support_softrst() */
MOXBOOT_API uint32_t MOX_IsSystemSupportSoftReset(void);
/** @return 0: no board is reset softly alone. Asks whether this board is an MPU all the same. */
MOXBOOT_API uint32_t MOX_IsBoardSupportSoftReset(uint32_t slot);

/** @param state receives 1 on a board with role 1, else 2 @return 0; 1 for a null pointer */
MOXBOOT_API uint32_t MOX_GetBoardSoftActiveState(uint32_t *state);
/** See drvboot_impl_set_brd_soft_active_state(). */
MOXBOOT_API int32_t MOX_SetBoardSoftActiveState(uint32_t state);
/** See drvboot_impl_get_soft_act_disable(). */
MOXBOOT_API int32_t MOX_GetSoftActDisableFlag(void);
/** Disables soft activation, which no call enables again. @return 0; 0xFFFFFFFF on failure (reported) */
MOXBOOT_API uint32_t MOX_SetSoftActDisableFlag(void);

MOXBOOT_END

#endif
