/* SPDX-License-Identifier: Apache-2.0 */
/**
 * @file watchdog.h The board's hardware watchdog. The board driver starts and stops it; next generation
 * boards clear it through the driver, all others through the kernel's watchdog service, "/proc/wdt".
 *
 * The first clear through "/proc/wdt" takes the feeding over from the kernel: from then on this process must
 * keep clearing. Any thread may call, but the state below is plain variables: two first clears at once may
 * each send the first-time commands. "Reported" is explained in channel.h.
 */
#ifndef MOXBOOT_WATCHDOG_H
#define MOXBOOT_WATCHDOG_H

#include <moxboot/types.h>

MOXBOOT_BEGIN

/** Operations of WDT_Ctrl(). */
#define MOX_WDT_START 0u
#define MOX_WDT_STOP 1u
#define MOX_WDT_CLEAR 2u

/** Descriptor of "/proc/wdt": -1 at load, opened by the first clear and kept. */
extern MOXBOOT_API int32_t g_fd_wdt;
/** 1 once the kernel's feeder was stopped and the threshold set. */
extern MOXBOOT_API uint16_t g_CLEAR_KERNEL_DOG;
/** 1 after any failure on "/proc/wdt", for ever: a broken node must not flood the log. */
extern MOXBOOT_API uint16_t g_CLEAR_DOG_ERROR;

/** Starts the watchdog; two progress lines. @return result of WDT_Ctrl() */
MOXBOOT_API uint32_t MOX_WDTStart(void);
/** Stops the watchdog; two progress lines. @return result of WDT_Ctrl() */
MOXBOOT_API uint32_t MOX_WDTStop(void);
/** Clears (feeds) the watchdog. @return result of WDT_Ctrl() */
MOXBOOT_API uint32_t MOX_WDTClear(void);

/**
 * Runs an operation; a result other than 0 is reported as information.
 * @param op MOX_WDT_START, _STOP or _CLEAR
 * @return result of drvboot_impl_wdt_ctrl(); the platform's callers give it no meaning
 */
MOXBOOT_API uint32_t WDT_Ctrl(uint32_t op);

/**
 * Runs an operation.
 * @return 0; 0xFFFFFFFF for an unknown operation (reported) or a failed clear through "/proc/wdt"; else the
 * driver channel's result (reported)
 */
MOXBOOT_API uint32_t drvboot_impl_wdt_ctrl(uint32_t op);

/**
 * Clears the watchdog through "/proc/wdt": one write() on the usual path. The first time it also stops the
 * kernel's feeder (a kernel that has none answers EINVAL, which is accepted) and sets the threshold to 1.
 * @return 0; 0xFFFFFFFF on a failure (reported, the descriptor closed) and, silently, ever after one
 */
MOXBOOT_API uint32_t drvboot_impl_wdt_clr_dog(void);
/** The same as drvboot_impl_wdt_clr_dog(). */
MOXBOOT_API uint32_t WDT_Clear_Dog(void);

MOXBOOT_END

#endif
