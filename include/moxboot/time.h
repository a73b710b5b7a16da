/* SPDX-License-Identifier: Apache-2.0 */
/**
 * @file time.h
 * CPU time base, run times, the start-up footprint, wall clock, and the multi-core signal callback.
 *
 * Any thread may call. The callback slot is a plain pointer: register once, before signals are delivered.
 * "Reported" is explained in channel.h.
 */
#ifndef MOXBOOT_TIME_H
#define MOXBOOT_TIME_H

#include <moxboot/types.h>

MOXBOOT_BEGIN

/** @return the CPU time base in ticks; 0 when the platform's timer leaves it untouched */
MOXBOOT_API uint64_t drvboot_get_tb(void);

/** iof_timer_get_base_64bit(), arguments and result passed through. @param low,high receive the two halves */
MOXBOOT_API uint32_t drvboot_timer_get_base_64bit(uint32_t *low, uint32_t *high);
/** The same as drvboot_timer_get_base_64bit(). */
MOXBOOT_API uint32_t MOX_GetCpuCurrentTick(uint32_t *low, uint32_t *high);

/** @return ticks of the time base per second; 0 when it is unusable */
MOXBOOT_API uint64_t drvboot_GetCpuTimeBaseFreq(void);
/** @return the frequency too, in ticks per second, not the tick count */
MOXBOOT_API uint64_t MOX_GetCpuTimeBase(void);
/** @return the frequency divided by 100 (ticks per 10 ms), rounded down */
MOXBOOT_API uint32_t MOX_GetCpuTimeBaseFreq(void);

/** @return 0: this processor has no lower time base register */
MOXBOOT_API uint32_t drvboot_get_mftbl(void);
/** @return 0: this processor has no upper time base register */
MOXBOOT_API uint32_t drvboot_get_mftbu(void);

/** @return whole seconds since the time base started; 0 when its frequency is 0 */
MOXBOOT_API uint64_t GetBoardStartTime(void);

/** Stores GetBoardStartTime(). @return 0; -1 for a null pointer (reported) */
MOXBOOT_API int32_t MOX_GetBoardRunTime(uint64_t *seconds);

/** Stores the run time of the CPU, split. @return 0; 0xFFFFFFFF for a null pointer or a frequency of 0 */
MOXBOOT_API uint32_t MOX_GetCPURunTime(uint32_t *seconds, uint32_t *milliseconds);

/** Room for a footprint step's description with its terminator. */
#define MOX_FOOTPRINT_TEXT_SIZE 32u

/** One step of the start-up footprint. */
typedef struct MoxFootprintStep {
    uint32_t seconds;                          /**< time of the step: seconds */
    uint32_t milliseconds;                     /**< and milliseconds */
    char description[MOX_FOOTPRINT_TEXT_SIZE]; /**< at most 31 characters, NUL-terminated */
} MoxFootprintStep;
MOXBOOT_STATIC_ASSERT(sizeof(MoxFootprintStep) == 40, "MoxFootprintStep is shared with products");

/**
 * Reads the first @p count steps of the board support layer's footprint: the first 1024 bytes of
 * "/proc/bsp/footprint", or of "/tmp/footprint" where the first cannot be opened (reported).
 * @param steps array of @p count records, owned by the caller
 * @param count number of records; below 1 nothing is stored
 * @return 0, also for a footprint with fewer steps: the first missing step's record is then zero and empty,
 * the ones behind it are untouched. 0xFFFFFFFF when no footprint can be opened or read, or for want of memory
 * (all reported), and for a null array
 */
MOXBOOT_API uint32_t MOX_GetBSPRunTime(MoxFootprintStep *steps, int32_t count);

/** @return seconds since the kernel started; 0 when it does not tell */
MOXBOOT_API uint32_t get_uptime(void);

/**
 * @return the wall clock time of the start in seconds since the epoch. A clock that still stands near the
 * epoch (a difference below 11) gives the current time itself
 */
MOXBOOT_API int32_t get_starttime(void);

/** Local time, as Drvboot_GetTime() fills it. */
typedef struct DrvbootLocalTime {
    uint16_t year;  /**< full year */
    uint8_t month;  /**< 1 to 12 */
    uint8_t day;    /**< day of the month */
    uint8_t hour;   /**< 0 to 23 */
    uint8_t minute; /**< 0 to 59 */
    uint8_t second; /**< 0 to 60 */
} DrvbootLocalTime;
MOXBOOT_STATIC_ASSERT(offsetof(DrvbootLocalTime, second) == 6, "DrvbootLocalTime is shared with products");

/** Stores the local time. @return 0; -1 for a null pointer or an unusable clock (reported as information) */
MOXBOOT_API int32_t Drvboot_GetTime(DrvbootLocalTime *out);

/** A multi-core signal callback. */
typedef void (*MoxMulticoreSigProc)(uint32_t a, uint32_t b);

/** The stored callback; null at load. */
extern MOXBOOT_API MoxMulticoreSigProc g_pfMulticoreSigProcFunc;

/** Stores the callback in place of any earlier one; null clears it. @return 0 */
MOXBOOT_API uint32_t MOX_RegMulticoreSigProc(MoxMulticoreSigProc callback);

/** Calls the stored callback, if any, on the caller's thread. @return 1 in both cases */
MOXBOOT_API uint32_t MOX_MultiCoreProcSig(uint32_t a, uint32_t b);

MOXBOOT_END

#endif
