// SPDX-License-Identifier: Apache-2.0
#undef _FORTIFY_SOURCE // its inline functions have the names defined here
#include "platform/calls.hpp"

#include <cstdarg>
#include <cstdio>
#include <dlfcn.h>
#include <sys/types.h>

namespace test
{
namespace
{

Hook *current = nullptr;
bool busy = false;

std::optional<long> ask(const Call &call)
{
    if (current == nullptr || busy)
        return std::nullopt;
    busy = true;
    auto answer = (*current)(call);
    busy = false;
    return answer;
}

template <typename Result, typename... Arguments>
Result go_on(const char *symbol, const Call &call, Arguments... arguments)
{
    if (const auto answer = ask(call))
        return static_cast<Result>(*answer);
    return reinterpret_cast<Result (*)(Arguments...)>(dlsym(RTLD_NEXT, symbol))(arguments...);
}

int open_any(const char *symbol, const char *path, int flags, unsigned mode)
{
    const Call call{.function = "open", .path = path, .flags = flags};
    if (const auto answer = ask(call))
        return static_cast<int>(*answer);
    return reinterpret_cast<int (*)(const char *, int, ...)>(dlsym(RTLD_NEXT, symbol))(path, flags, mode);
}

int ioctl_any(const char *symbol, int fd, unsigned long request, void *argument)
{
    const Call call{.function = "ioctl", .fd = fd, .request = request, .argument = argument};
    if (const auto answer = ask(call))
        return static_cast<int>(*answer);
    return reinterpret_cast<int (*)(int, unsigned long, ...)>(dlsym(RTLD_NEXT, symbol))(fd, request,
                                                                                        argument);
}

} // namespace

Watch::Watch(Hook hook)
{
    current = new Hook(std::move(hook));
}

Watch::~Watch()
{
    delete current;
    current = nullptr;
}

} // namespace test

using test::go_on;

extern "C" {

int open(const char *path, int flags, ...);
int open64(const char *path, int flags, ...);
int ioctl(int fd, unsigned long request, ...) noexcept;
int __ioctl_time64(int fd, unsigned long request, ...) noexcept;
int flock(int fd, int operation) noexcept;
int fchmod(int fd, mode_t mode) noexcept;
int fstat64(int fd, struct stat64 *status) noexcept;
int __fstat64_time64(int fd, void *status) noexcept;
int fsync(int fd);
int mkdir(const char *path, mode_t mode) noexcept;
int unlink(const char *path) noexcept;
int close(int fd);
ssize_t read(int fd, void *buffer, size_t size);
ssize_t write(int fd, const void *buffer, size_t size);
int __clock_gettime64(int clock, void *now) noexcept;

int open(const char *path, int flags, ...)
{
    va_list rest;
    va_start(rest, flags);
    const unsigned mode = va_arg(rest, unsigned);
    va_end(rest);
    return test::open_any("open", path, flags, mode);
}

int open64(const char *path, int flags, ...)
{
    va_list rest;
    va_start(rest, flags);
    const unsigned mode = va_arg(rest, unsigned);
    va_end(rest);
    return test::open_any("open64", path, flags, mode);
}

int ioctl(int fd, unsigned long request, ...) noexcept
{
    va_list rest;
    va_start(rest, request);
    void *argument = va_arg(rest, void *);
    va_end(rest);
    return test::ioctl_any("ioctl", fd, request, argument);
}

int __ioctl_time64(int fd, unsigned long request, ...) noexcept
{
    va_list rest;
    va_start(rest, request);
    void *argument = va_arg(rest, void *);
    va_end(rest);
    return test::ioctl_any("__ioctl_time64", fd, request, argument);
}

int flock(int fd, int operation) noexcept
{
    return go_on<int>("flock", {.function = "flock", .fd = fd, .flags = operation}, fd, operation);
}

int fchmod(int fd, mode_t mode) noexcept
{
    return go_on<int>("fchmod", {.function = "fchmod", .fd = fd}, fd, mode);
}

int fstat64(int fd, struct stat64 *status) noexcept
{
    return go_on<int>("fstat64", {.function = "fstat", .fd = fd}, fd, status);
}

int __fstat64_time64(int fd, void *status) noexcept
{
    return go_on<int>("__fstat64_time64", {.function = "fstat", .fd = fd}, fd, status);
}

int fsync(int fd)
{
    return go_on<int>("fsync", {.function = "fsync", .fd = fd}, fd);
}

int rename(const char *from, const char *to) noexcept
{
    return go_on<int>("rename", {.function = "rename", .path = from}, from, to);
}

int mkdir(const char *path, mode_t mode) noexcept
{
    return go_on<int>("mkdir", {.function = "mkdir", .path = path}, path, mode);
}

int unlink(const char *path) noexcept
{
    return go_on<int>("unlink", {.function = "unlink", .path = path}, path);
}

int close(int fd)
{
    return go_on<int>("close", {.function = "close", .fd = fd}, fd);
}

ssize_t read(int fd, void *buffer, size_t size)
{
    return go_on<ssize_t>("read", {.function = "read", .fd = fd}, fd, buffer, size);
}

ssize_t write(int fd, const void *buffer, size_t size)
{
    const test::Call call{
        .function = "write", .fd = fd, .argument = const_cast<void *>(buffer), .size = size};
    return go_on<ssize_t>("write", call, fd, buffer, size);
}

int clock_gettime(clockid_t clock, struct timespec *now) noexcept
{
    return go_on<int>("clock_gettime", {.function = "clock_gettime", .argument = now}, clock, now);
}

int __clock_gettime64(int clock, void *now) noexcept
{
    return go_on<int>("__clock_gettime64", {.function = "clock_gettime", .argument = now}, clock, now);
}
}
