// SPDX-License-Identifier: Apache-2.0
#include "trust/system_time_clock.hpp"

#include <cerrno>
#include <cstdlib>
#include <ctime>
#include <dlfcn.h>
#include <sys/time.h>

namespace test
{

std::vector<ClockSetting> clock_settings;
int clock_setting_error = 0;

} // namespace test

namespace
{

template <typename Word>
struct Fields {
    Word seconds;
    Word microseconds;
};

template <typename Word>
int set_clock(const void *time, const void *zone)
{
    const auto *fields = static_cast<const Fields<Word> *>(time);
    test::clock_settings.push_back({fields->seconds, fields->microseconds, zone != nullptr});
    if (test::clock_setting_error == 0)
        return 0;
    errno = test::clock_setting_error;
    return -1;
}

} // namespace

extern "C" {

int settimeofday(const timeval *time, const struct timezone *zone) noexcept
{
    return set_clock<long>(time, zone);
}

int clock_settime(clockid_t, const timespec *) noexcept
{
    abort(); // nobody sets it in this way
}

#if __SIZEOF_POINTER__ == 4
// Of a 32-bit library with 64-bit times.
int __settimeofday64(const void *time, const void *zone) noexcept;
int __settimeofday64(const void *time, const void *zone) noexcept
{
    return set_clock<std::int64_t>(time, zone);
}

int __clock_settime64(clockid_t, const void *) noexcept;
int __clock_settime64(clockid_t, const void *) noexcept
{
    abort();
}
#endif

} // extern "C"

namespace test
{

bool clock_is_guarded()
{
    const auto is_here = [](const char *name) {
        // Libraries are bound to what the whole program finds first.
        Dl_info found = {}, own = {};
        void *first = dlsym(RTLD_DEFAULT, name);
        return first != nullptr && dladdr(first, &found) != 0 &&
               dladdr(reinterpret_cast<void *>(&clock_is_guarded), &own) != 0 &&
               found.dli_fbase == own.dli_fbase;
    };
#if __SIZEOF_POINTER__ == 4
    if (!is_here("__settimeofday64") || !is_here("__clock_settime64"))
        return false;
#endif
    return is_here("settimeofday") && is_here("clock_settime");
}

} // namespace test
