// SPDX-License-Identifier: Apache-2.0
#include "board/own_clock.hpp"

#include <ctime>
#include <dlfcn.h>
#include <sys/sysinfo.h>

namespace test
{
OwnClock own_clock;
}

namespace
{
template <typename Time>
Time clock_or_next(Time *output, const char *name)
{
    if (!test::own_clock.now)
        return reinterpret_cast<Time (*)(Time *)>(dlsym(RTLD_NEXT, name))(output);
    Time now = static_cast<Time>(*test::own_clock.now);
    if (output != nullptr)
        *output = now;
    return now;
}
} // namespace

extern "C" {

time_t time(time_t *output) noexcept
{
    return clock_or_next(output, "time");
}

#if __SIZEOF_POINTER__ == 4
// What a 32-bit program with 64-bit times calls.
std::int64_t __time64(std::int64_t *output) noexcept;
std::int64_t __time64(std::int64_t *output) noexcept
{
    return clock_or_next(output, "__time64");
}
#endif

int sysinfo(struct sysinfo *info) noexcept
{
    int result = reinterpret_cast<int (*)(struct sysinfo *)>(dlsym(RTLD_NEXT, "sysinfo"))(info);
    if (test::own_clock.uptime)
        info->uptime = static_cast<decltype(info->uptime)>(*test::own_clock.uptime);
    return result;
}

} // extern "C"
