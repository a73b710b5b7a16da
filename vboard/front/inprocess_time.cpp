// SPDX-License-Identifier: Apache-2.0
// Sleeping and clocks, for the hook alone. The definitions are weak: a test may bring a clock of its own.
#include "front/inprocess_hook.hpp"

#include <cstring>
#include <ctime>
#include <sys/select.h>
#include <sys/sysinfo.h>
#include <unistd.h>

namespace
{

using namespace vboard;

LibcCall on_output(const char *function, const void *caller, void *output)
{
    LibcCall call{function, caller};
    call.data = output;
    return call;
}

LibcCall on_sleep(const char *function, const void *caller, std::uint64_t microseconds, const void *timeout)
{
    LibcCall call = on_output(function, caller, const_cast<void *>(timeout));
    call.microseconds = microseconds;
    return call;
}

// Seconds and their parts, laid in words of the variant's size: 32-bit ones, or 64-bit ones in a 32-bit
// process with 64-bit times.
template <typename Word>
std::uint64_t microseconds(const void *timeout, std::uint64_t parts_per_microsecond)
{
    Word fields[2] = {};
    if (timeout != nullptr)
        std::memcpy(fields, timeout, sizeof fields);
    return static_cast<std::uint64_t>(fields[0]) * 1000000 +
           static_cast<std::uint64_t>(fields[1]) / parts_per_microsecond;
}

} // namespace

#define WEAK __attribute__((weak))

// Types and names cannot stand in parentheses.
// NOLINTBEGIN(bugprone-macro-parentheses)
#define DEFINE_SELECT(name, word)                                                                            \
    WEAK int name(int count, fd_set *readable, fd_set *writable, fd_set *exceptional, timeval *timeout)      \
    {                                                                                                        \
        return inprocess::unless_answered(                                                                   \
            on_sleep("select", CALLER, microseconds<word>(timeout, 1), timeout), [=] {                       \
                return NEXT(int(int, fd_set *, fd_set *, fd_set *, timeval *),                               \
                            #name)(count, readable, writable, exceptional, timeout);                         \
            });                                                                                              \
    }

#define DEFINE_NANOSLEEP(name, word)                                                                         \
    WEAK int name(const timespec *wanted, timespec *left)                                                    \
    {                                                                                                        \
        return inprocess::unless_answered(                                                                   \
            on_sleep("nanosleep", CALLER, microseconds<word>(wanted, 1000), wanted),                         \
            [=] { return NEXT(int(const timespec *, timespec *), #name)(wanted, left); });                   \
    }

#define DEFINE_TIME(name, type)                                                                              \
    WEAK type name(type *output) noexcept                                                                    \
    {                                                                                                        \
        return inprocess::unless_answered(on_output("time", CALLER, output),                                 \
                                          [=] { return NEXT(type(type *), #name)(output); });                \
    }

#define DEFINE_CLOCK_GETTIME(name)                                                                           \
    WEAK int name(clockid_t clock, timespec *output) noexcept                                                \
    {                                                                                                        \
        return inprocess::unless_answered(on_output("clock_gettime", CALLER, output), [=] {                  \
            return NEXT(int(clockid_t, timespec *), #name)(clock, output);                                   \
        });                                                                                                  \
    }

#define DEFINE_LOCALTIME_R(name, type)                                                                       \
    WEAK tm *name(const type *when, tm *output) noexcept                                                     \
    {                                                                                                        \
        return inprocess::unless_answered(on_output("localtime_r", CALLER, output), [=] {                    \
            return NEXT(tm * (const type *, tm *), #name)(when, output);                                     \
        });                                                                                                  \
    }

// NOLINTEND(bugprone-macro-parentheses)

extern "C" {

WEAK int usleep(useconds_t duration)
{
    return inprocess::unless_answered(on_sleep("usleep", CALLER, duration, nullptr),
                                      [=] { return NEXT(int(useconds_t), "usleep")(duration); });
}

WEAK int sysinfo(struct sysinfo *output) noexcept
{
    return inprocess::unless_answered(on_output("sysinfo", CALLER, output),
                                      [=] { return NEXT(int(struct sysinfo *), "sysinfo")(output); });
}

DEFINE_SELECT(select, long)
DEFINE_NANOSLEEP(nanosleep, long)
DEFINE_TIME(time, time_t)
DEFINE_CLOCK_GETTIME(clock_gettime)
DEFINE_LOCALTIME_R(localtime_r, time_t)

#if __SIZEOF_POINTER__ == 4
int __select64(int count, fd_set *readable, fd_set *writable, fd_set *exceptional, timeval *timeout);
DEFINE_SELECT(__select64, std::int64_t)
int __nanosleep64(const timespec *wanted, timespec *left);
DEFINE_NANOSLEEP(__nanosleep64, std::int64_t)
std::int64_t __time64(std::int64_t *output) noexcept;
DEFINE_TIME(__time64, std::int64_t)
int __clock_gettime64(clockid_t clock, timespec *output) noexcept;
DEFINE_CLOCK_GETTIME(__clock_gettime64)
tm *__localtime64_r(const std::int64_t *when, tm *output) noexcept;
DEFINE_LOCALTIME_R(__localtime64_r, std::int64_t)
#endif

} // extern "C"
