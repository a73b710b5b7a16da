/* SPDX-License-Identifier: Apache-2.0 */
/**
 * @file entropy.h Random bytes from the timing jitter of the processor: a walk over a zeroed buffer is timed
 * again and again, each time gives a bit, 64 bits a pool, which is whitened with SHA-256 (FIPS 180-4) and put
 * out.
 *
 * No two neighbouring bytes of one call's output are equal: a byte that repeats the one before is dropped.
 * The min-entropy that is declared for the source is served by DrvBootGetRandMimEntropy() (product.h).
 *
 * Any thread may call. All threads share the last clock reading, without a lock: a race only changes which
 * readings count as repeats. No pointer is kept.
 */
#ifndef MOXBOOT_ENTROPY_H
#define MOXBOOT_ENTROPY_H

#include <moxboot/types.h>

MOXBOOT_BEGIN

/** State of one source. */
typedef struct {
    uint32_t pool[2];    /**< 64 bits, low word first */
    uint32_t last_time;  /**< nanoseconds within the second, of the last measurement */
    uint32_t last_delta; /**< nanoseconds between the last two measurements */
} EntropyState;

/** Size of the buffer that is walked over, in bytes. */
#define ENTROPY_BUFFER_SIZE 0x20000u

/**
 * Writes random bytes. Slow: each refill of the pool gives at most 8 bytes and takes 65 walks.
 * @param output receives @p count bytes
 * @param count  number of bytes; with 0 the source is set up all the same and nothing is written
 * @return 0; 1 when there is no memory for the walk (reported) or @p output is null and @p count is not 0;
 * @p output is then untouched
 */
MOXBOOT_API uint32_t entropy_read(uint8_t *output, uint32_t count);

/** The same in the shape of a product information handler (product.h). The first two arguments are not used.
 */
MOXBOOT_API uint32_t entropy_read_wrapper(uint32_t item, uint32_t reserved, void *output, uint32_t count);

/**
 * Reads the wall clock, at most three times, until it has moved since the last reading of any caller.
 * Readings that failed or stood still are logged (syslog, priority info).
 * @return its nanoseconds within the second
 */
MOXBOOT_API uint32_t entropy_gettime(void);

/** Clears a state; a null pointer is ignored. */
MOXBOOT_API void entropy_init(EntropyState *state);

/**
 * Reads one byte in each 64 of a buffer.
 * @param length in bytes; with 0 or less nothing is read
 * @return all of them, by exclusive or
 */
MOXBOOT_API uint32_t entropy_time_consumer(const uint8_t *buffer, int32_t length);

/**
 * Times walks over a buffer until one takes another time than the last, at most 99.
 * @return 1 when it was shorter; 0 when it was longer, all were alike, or @p state is null
 */
MOXBOOT_API uint32_t entropy_jitter_measure(EntropyState *state, const uint8_t *buffer, int32_t length);

/** @return @p value rotated left by @p count bits, modulo 64 */
MOXBOOT_API uint64_t rol64(uint64_t value, uint32_t count);

/** @return the four little-endian words of the SHA-256 digest of @p value's bytes, by exclusive or */
MOXBOOT_API uint64_t entropy_bitmixer(uint64_t value);

/**
 * Fills the pool with 64 fresh bits, after a measurement that is thrown away, and whitens it.
 * @return the low 32 bits of the new pool; 0 when @p state is null
 */
MOXBOOT_API uint32_t entropy_harvest(EntropyState *state, const uint8_t *buffer, int32_t length);

MOXBOOT_END

#endif
