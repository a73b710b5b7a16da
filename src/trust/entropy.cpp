// SPDX-License-Identifier: Apache-2.0
// Random bytes from timing jitter.
#include "base/guard.hpp"
#include "base/report.hpp"
#include "base/result.hpp"

#include <moxboot/entropy.h>
#include <moxboot/platform.h>

#include <cerrno>
#include <cstddef>
#include <ctime>
#include <mbedtls/sha256.h>
#include <syslog.h>

using namespace moxboot;

static_assert(sizeof(EntropyState) == 16 && offsetof(EntropyState, last_delta) == 12);

namespace
{

constexpr int clock_attempts = 3;
constexpr int measurements = 99;
constexpr uint32_t second = 1'000'000'000; // in nanoseconds
constexpr uint32_t cache_line = 64;
constexpr int word_bits = 64;
constexpr int word_bytes = 8;
constexpr int digest_words = 4;

uint32_t last_reading = 0; // of all callers, without a lock

uint64_t pool_of(const EntropyState &state)
{
    return state.pool[0] | static_cast<uint64_t>(state.pool[1]) << 32;
}

uint8_t byte_of(uint64_t word, int index)
{
    return static_cast<uint8_t>(word >> (8 * index));
}

// The one name that all versions of the crypto library have: it gives nothing, and is on its way out, in
// version 2, and gives an error that cannot happen here from version 3 on.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wdeprecated-declarations"
void sha256(const uint8_t (&input)[word_bytes], uint8_t *digest)
{
    static_cast<void>(mbedtls_sha256(input, sizeof input, digest, 0));
}
#pragma GCC diagnostic pop

} // namespace

uint32_t entropy_gettime(void)
{
    timespec now = {};
    uint32_t reading = 0;
    for (int attempt = 0; attempt < clock_attempts; ++attempt) {
        int result = clock_gettime(CLOCK_REALTIME, &now);
        reading = static_cast<uint32_t>(now.tv_nsec);
        if (result == 0 && reading != last_reading)
            break;
        syslog(LOG_INFO, "get clock time unsuccessfully. ret(0x%x) error(%d) last_time(%d) now_time(%d)\r\n",
               static_cast<unsigned>(result), errno, static_cast<int>(last_reading),
               static_cast<int>(reading));
    }
    last_reading = reading;
    return reading;
}

void entropy_init(EntropyState *state)
{
    if (state != nullptr)
        *state = {};
}

uint32_t entropy_time_consumer(const uint8_t *buffer, int32_t length)
{
    uint32_t all = 0;
    if (buffer == nullptr)
        return all;
    const uint32_t end = length > 0 ? static_cast<uint32_t>(length) : 0;
    for (uint32_t at = 0; at < end; at += cache_line) // steps beyond the largest length, too
        all ^= buffer[at];
    return all;
}

uint32_t entropy_jitter_measure(EntropyState *state, const uint8_t *buffer, int32_t length)
{
    if (state == nullptr)
        return 0;
    for (int attempt = 0; attempt < measurements; ++attempt) {
        entropy_time_consumer(buffer, length);
        const uint32_t now = entropy_gettime();
        uint32_t delta = now - state->last_time;
        if (state->last_time > now)
            delta += second;
        const uint32_t difference = delta - state->last_delta;
        state->last_time = now;
        state->last_delta = delta;
        if (difference != 0)
            return difference >> 31;
    }
    return 0;
}

uint64_t rol64(uint64_t value, uint32_t count)
{
    count %= word_bits;
    return count == 0 ? value : value << count | value >> (word_bits - count);
}

uint64_t entropy_bitmixer(uint64_t value)
{
    uint8_t input[word_bytes];
    for (int i = 0; i < word_bytes; ++i)
        input[i] = byte_of(value, i);
    uint8_t digest[digest_words * word_bytes] = {};
    sha256(input, digest);
    uint64_t mixed = 0;
    for (size_t i = 0; i < sizeof digest; ++i)
        mixed ^= static_cast<uint64_t>(digest[i]) << (8 * (i % word_bytes));
    return mixed;
}

uint32_t entropy_harvest(EntropyState *state, const uint8_t *buffer, int32_t length)
{
    if (state == nullptr)
        return 0;
    uint64_t pool = pool_of(*state);
    entropy_jitter_measure(state, buffer, length); // settles the last time and delta
    for (int i = 0; i < word_bits; ++i)
        pool = rol64(pool ^ (entropy_jitter_measure(state, buffer, length) & 0xFF), 1);
    pool = entropy_bitmixer(pool);
    state->pool[0] = static_cast<uint32_t>(pool);
    state->pool[1] = static_cast<uint32_t>(pool >> 32);
    return state->pool[0];
}

uint32_t entropy_read(uint8_t *output, uint32_t count)
{
    if (output == nullptr && count != 0)
        return refused;
    const Block<uint8_t> buffer(ENTROPY_BUFFER_SIZE);
    if (!buffer.valid()) {
        REPORT_FAILURE("[drvboot] GetRandom by RAM, malloc unsuccessfully.\n\n");
        return refused;
    }
    memset_s(buffer.get(), ENTROPY_BUFFER_SIZE, 0, ENTROPY_BUFFER_SIZE);
    EntropyState state;
    entropy_init(&state);
    entropy_harvest(&state, buffer.get(), ENTROPY_BUFFER_SIZE);
    // Of the first pool nothing is put out but the place where a repetition would begin.
    uint8_t last = byte_of(pool_of(state), word_bytes - 1);
    while (count > 0) {
        entropy_harvest(&state, buffer.get(), ENTROPY_BUFFER_SIZE);
        for (int i = 0; i < word_bytes && count > 0; ++i) {
            const uint8_t byte = byte_of(pool_of(state), i);
            if (byte == last)
                continue;
            *output++ = last = byte;
            --count;
        }
    }
    return ok;
}

uint32_t entropy_read_wrapper(uint32_t, uint32_t, void *output, uint32_t count)
{
    return entropy_read(static_cast<uint8_t *>(output), count);
}
