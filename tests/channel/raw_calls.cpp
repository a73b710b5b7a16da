// SPDX-License-Identifier: Apache-2.0
#include "channel/raw_calls.hpp"

#include <array>
#include <cerrno>
#include <cstdarg>
#include <cstring>
#include <fcntl.h>
#include <sys/types.h>
#include <unistd.h>

namespace test
{

RawKernel &raw_kernel()
{
    static RawKernel kernel;
    return kernel;
}

void reset_raw_kernel()
{
    raw_kernel() = {};
}

bool closed(const RawOpen &opened)
{
    return fcntl(opened.fd, F_GETFD) == -1 && errno == EBADF;
}

std::vector<std::uint8_t> bytes_at(const void *address, std::size_t count)
{
    std::vector<std::uint8_t> bytes(count);
    if (count > 0)
        memcpy(bytes.data(), address, count);
    return bytes;
}

void *to_pointer(std::uint64_t address)
{
    return reinterpret_cast<void *>(static_cast<std::uintptr_t>(address));
}

namespace
{

bool is_device(const char *path)
{
    static const std::array prefixes = {"/dev/board", "/dev/chassis", "/dev/slot", "/dev/envinfo",
                                        "/dev/ttyS0"};
    for (const char *prefix : prefixes)
        if (strncmp(path, prefix, strlen(prefix)) == 0)
            return true;
    return false;
}

int open_raw(const char *path, int flags, mode_t mode)
{
    if (!is_device(path))
        return openat(AT_FDCWD, path, flags, mode);
    int fd = openat(AT_FDCWD, "/dev/null", O_RDWR);
    raw_kernel().opened.push_back({path, flags & ~O_LARGEFILE, fd});
    return fd;
}

int ioctl_raw(unsigned long request, void *argument)
{
    RawKernel &kernel = raw_kernel();
    kernel.requests.push_back(request);
    return kernel.on_ioctl ? kernel.on_ioctl(request, argument) : 0;
}

} // namespace
} // namespace test

// Defined under assembler names: the headers may hold inline forms of the same functions. The 32-bit target
// with 64-bit times calls the second name of each.
extern "C" {

int raw_open(const char *path, int flags, ...) __asm__("open");
int raw_open64(const char *path, int flags, ...) __asm__("open64");
int raw_ioctl(int fd, unsigned long request, ...) __asm__("ioctl");
int raw_ioctl_time64(int fd, unsigned long request, ...) __asm__("__ioctl_time64");

int raw_open(const char *path, int flags, ...)
{
    va_list args;
    va_start(args, flags);
    mode_t mode = (flags & (O_CREAT | __O_TMPFILE)) != 0 ? va_arg(args, mode_t) : 0;
    va_end(args);
    return test::open_raw(path, flags, mode);
}

int raw_open64(const char *path, int flags, ...)
{
    va_list args;
    va_start(args, flags);
    mode_t mode = (flags & (O_CREAT | __O_TMPFILE)) != 0 ? va_arg(args, mode_t) : 0;
    va_end(args);
    return test::open_raw(path, flags | O_LARGEFILE, mode);
}

int raw_ioctl(int, unsigned long request, ...)
{
    va_list args;
    va_start(args, request);
    void *argument = va_arg(args, void *);
    va_end(args);
    return test::ioctl_raw(request, argument);
}

int raw_ioctl_time64(int, unsigned long request, ...)
{
    va_list args;
    va_start(args, request);
    void *argument = va_arg(args, void *);
    va_end(args);
    return test::ioctl_raw(request, argument);
}

// select() with 64-bit times, as the library is built to call it.
struct RawTime {
    std::int64_t seconds;
    std::int64_t microseconds;
};
#ifdef __LP64__
#define RAW_SELECT "select"
#else
#define RAW_SELECT "__select64"
#endif
int raw_select(int count, void *in, void *out, void *errors, RawTime *timeout) __asm__(RAW_SELECT);

int raw_select(int count, void *in, void *out, void *errors, RawTime *timeout)
{
    auto &handler = test::raw_kernel().on_select;
    bool any_set = in != nullptr || out != nullptr || errors != nullptr;
    return handler ? handler(count, any_set, timeout->seconds, timeout->microseconds) : 0;
}

} // extern "C"
