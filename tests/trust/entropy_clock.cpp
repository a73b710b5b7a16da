// SPDX-License-Identifier: Apache-2.0
#include "trust/entropy_clock.hpp"

#include "support/from_library.hpp"

#include <moxboot/entropy.h>

#include <cerrno>
#include <ctime>
#include <dlfcn.h>
#include <utility>

namespace test
{

EntropyWatch entropy_watch;
bool clock_was_read = false;

void replay(Clock clock)
{
    entropy_watch = {};
    entropy_watch.clock = std::move(clock);
}

} // namespace test

namespace
{

using test::entropy_watch;

// As wide as the library's own: its seconds have 64 bits on every machine.
struct Fields {
    std::int64_t seconds;
    long nanoseconds;
};

void note(char step)
{
    if (entropy_watch.noting)
        entropy_watch.steps += step;
}

template <typename Next>
int read_clock(clockid_t id, void *output, const void *caller, Next next)
{
    if (!test::from_library(caller))
        return next();
    test::clock_was_read = true;
    note('c');
    if (id != CLOCK_REALTIME)
        ++entropy_watch.other_clocks;
    const std::size_t index = entropy_watch.readings++;
    if (!entropy_watch.clock)
        return next();
    const test::Reading reading = entropy_watch.clock(index);
    if (reading.filled)
        *static_cast<Fields *>(output) = {1700000000, static_cast<long>(reading.nanoseconds)};
    errno = reading.error;
    return reading.result;
}

template <typename Function>
Function *behind(Function *, const char *name)
{
    return reinterpret_cast<Function *>(dlsym(RTLD_NEXT, name));
}

} // namespace

extern "C" {

#if __SIZEOF_POINTER__ == 4
int __clock_gettime64(clockid_t id, void *output) noexcept;
int __clock_gettime64(clockid_t id, void *output) noexcept
{
    return read_clock(id, output, __builtin_return_address(0), [=] {
        return reinterpret_cast<int (*)(clockid_t, void *)>(dlsym(RTLD_NEXT, "__clock_gettime64"))(id,
                                                                                                   output);
    });
}
#else
int clock_gettime(clockid_t id, timespec *output) noexcept
{
    return read_clock(id, output, __builtin_return_address(0), [=] {
        return reinterpret_cast<int (*)(clockid_t, timespec *)>(dlsym(RTLD_NEXT, "clock_gettime"))(id,
                                                                                                   output);
    });
}
#endif

// In front of the library's own, which it calls through its symbol.
uint32_t entropy_time_consumer(const uint8_t *buffer, int32_t length)
{
    static auto *const walk = behind(&entropy_time_consumer, "entropy_time_consumer");
    if (!test::from_library(__builtin_return_address(0)))
        return walk(buffer, length);
    note('w');
    ++entropy_watch.walks;
    if (entropy_watch.on_walk)
        entropy_watch.on_walk(buffer, length);
    return entropy_watch.walking ? walk(buffer, length) : 0;
}

} // extern "C"
