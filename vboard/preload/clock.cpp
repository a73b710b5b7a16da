// SPDX-License-Identifier: Apache-2.0
// Setting the clock: the board is told, and the machine's clock goes on as it is, for all who share it.
#include "preload/device.hpp"
#include "preload/next.hpp"

#include <cerrno>
#include <cinttypes>
#include <cstdint>
#include <cstdio>
#include <ctime>
#include <fcntl.h>
#include <sys/time.h>
#include <unistd.h>

namespace
{

using vboard::wire::Action;

constexpr const char *node = "/dev/vboard/clock";
constexpr std::int64_t nanoseconds = 1000;
constexpr std::int64_t microseconds_in_a_second = 1000000;

// The kernel's answer to who may not.
int forbidden()
{
    errno = EPERM;
    return -1;
}

int set_clock(std::int64_t seconds, std::int64_t microseconds)
{
    if (seconds < 0 || microseconds < 0 || microseconds >= microseconds_in_a_second) {
        errno = EINVAL;
        return -1;
    }
    const int fd = vboard::preload::open_device(AT_FDCWD, node, O_WRONLY | O_CLOEXEC);
    if (fd < 0)
        return forbidden();
    char text[32];
    const int length = std::snprintf(text, sizeof text, "%" PRId64 ".%06" PRId64, seconds, microseconds);
    const ssize_t written = vboard::preload::call_device(
        fd, Action::write, static_cast<std::uint32_t>(length), reinterpret_cast<std::uintptr_t>(text));
    const int error = written < 0 ? errno : EIO; // half a time is none
    close(fd);
    if (written == length)
        return 0;
    errno = error;
    return -1;
}

} // namespace

VBOARD_FRONT int settimeofday(const timeval *time, const struct timezone * /*zone*/) noexcept
{
    return time ? set_clock(time->tv_sec, time->tv_usec) : forbidden();
}

VBOARD_FRONT int clock_settime(clockid_t clock, const timespec *time) noexcept
{
    return clock == CLOCK_REALTIME ? set_clock(time->tv_sec, time->tv_nsec / nanoseconds) : forbidden();
}

#if __SIZEOF_POINTER__ == 4
// The names that a 32-bit program with 64-bit times calls.
namespace
{
struct Time64 {
    std::int64_t seconds;
    std::int64_t part; // of a second; of nanoseconds the low half alone counts
};
} // namespace

VBOARD_FRONT int __settimeofday64(const Time64 *time, const struct timezone * /*zone*/) noexcept
{
    return time ? set_clock(time->seconds, time->part) : forbidden();
}

VBOARD_FRONT int __clock_settime64(clockid_t clock, const Time64 *time) noexcept
{
    return clock == CLOCK_REALTIME && time
               ? set_clock(time->seconds, static_cast<std::int32_t>(time->part) / nanoseconds)
               : forbidden();
}
#endif
