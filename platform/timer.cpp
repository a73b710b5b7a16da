// SPDX-License-Identifier: Apache-2.0
// The CPU time base: the kernel's monotonic clock, counted in nanoseconds.
#include <moxboot/platform.h>

#include <ctime>

namespace
{

constexpr uint32_t ticks_per_second = 1'000'000'000;

bool read_ticks(uint64_t *ticks)
{
    struct timespec now;
    if (clock_gettime(CLOCK_MONOTONIC, &now) != 0)
        return false;
    *ticks = static_cast<uint64_t>(now.tv_sec) * ticks_per_second + static_cast<uint64_t>(now.tv_nsec);
    return true;
}

} // namespace

uint32_t iof_timer_get_base_64bit(uint32_t *low, uint32_t *high)
{
    uint64_t ticks = 0;
    if (low == nullptr || high == nullptr || !read_ticks(&ticks))
        return 1;
    *low = static_cast<uint32_t>(ticks);
    *high = static_cast<uint32_t>(ticks >> 32);
    return 0;
}

uint32_t iof_timer_get_freq(void)
{
    uint64_t ticks = 0;
    return read_ticks(&ticks) ? ticks_per_second : 0;
}
