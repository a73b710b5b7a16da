// SPDX-License-Identifier: Apache-2.0
// Descriptors come and go here: open(), close(), dup() and all their variants.
#include "front/inprocess_devices.hpp"
#include "front/inprocess_hook.hpp"

#include <cstdarg>
#include <cstring>
#include <fcntl.h>
#include <unistd.h>

namespace
{

using namespace vboard;

using Close = int(int);

bool is_device(const char *path)
{
    // Only these can be devices; the board need not be asked about every file that a program opens.
    return path != nullptr && inprocess::attached() &&
           (std::strncmp(path, "/dev/", 5) == 0 || std::strncmp(path, "/proc/", 6) == 0) &&
           inprocess::serves(path);
}

// Opens a device of the board; `next_open` opens a real file.
template <typename NextOpen>
int open_device(const char *path, int flags, NextOpen next_open)
{
    const int before = errno;
    // A real descriptor, so that its number cannot be given to anything else and its flags are as asked.
    const int fd = next_open("/dev/null", flags & (O_ACCMODE | O_CLOEXEC | O_NONBLOCK), 0);
    if (fd < 0)
        return fd;
    const int error = inprocess::open_device(path, flags, fd);
    if (error != 0)
        NEXT(Close, "close")(fd);
    errno = error != 0 ? error : before;
    return error != 0 ? -1 : fd;
}

// One open() of whichever name; `next_open` makes the real one.
template <typename NextOpen>
int open_path(const char *path, int flags, mode_t mode, const void *caller, NextOpen next_open)
{
    LibcCall call{"open", caller};
    call.path = path;
    call.size = static_cast<unsigned>(flags);
    call.data = &mode;
    return inprocess::unless_answered(call, [&] {
        return is_device(path) ? open_device(path, flags, next_open) : next_open(path, flags, mode);
    });
}

template <typename Make>
int copy_descriptor(const char *function, const void *caller, int fd, std::size_t number, Make make)
{
    LibcCall call{function, caller, fd};
    call.size = number;
    return inprocess::unless_answered(call, [&] {
        const int copy = make();
        if (copy >= 0)
            inprocess::remember_copy(fd, copy);
        return copy;
    });
}

template <typename Next>
int fcntl_descriptor(int fd, int command, void *argument, const void *caller, Next next)
{
    LibcCall call{"fcntl", caller, fd};
    call.size = static_cast<unsigned>(command);
    call.data = argument;
    return inprocess::unless_answered(call, [&] {
        const int result = next(fd, command, argument);
        if (result >= 0 && (command == F_DUPFD || command == F_DUPFD_CLOEXEC))
            inprocess::remember_copy(fd, result);
        return result;
    });
}

} // namespace

// `directory` is passed on in front of the path where a variant has it.
#define NEXT_OPEN(type, name, ...)                                                                           \
    [=](const char *path_, int flags_, mode_t mode_) {                                                       \
        return NEXT(type, name)(__VA_ARGS__ path_, flags_, mode_);                                           \
    }

// Without a mode some number is taken for one; the kernel looks at it only where a mode was given.
#define DEFINE_OPEN(name)                                                                                    \
    int name(const char *path, int flags, ...)                                                               \
    {                                                                                                        \
        va_list args;                                                                                        \
        va_start(args, flags);                                                                               \
        const mode_t mode = va_arg(args, mode_t);                                                            \
        va_end(args);                                                                                        \
        return open_path(path, flags, mode, CALLER, NEXT_OPEN(int(const char *, int, ...), #name));          \
    }

#define DEFINE_OPENAT(name)                                                                                  \
    int name(int directory, const char *path, int flags, ...)                                                \
    {                                                                                                        \
        va_list args;                                                                                        \
        va_start(args, flags);                                                                               \
        const mode_t mode = va_arg(args, mode_t);                                                            \
        va_end(args);                                                                                        \
        return open_path(path, flags, mode, CALLER,                                                          \
                         NEXT_OPEN(int(int, const char *, int, ...), #name, directory, ));                   \
    }

// The fortified forms take no mode.
#define DEFINE_OPEN_2(name, plain)                                                                           \
    int name(const char *path, int flags);                                                                   \
    int name(const char *path, int flags)                                                                    \
    {                                                                                                        \
        return open_path(path, flags, 0, CALLER, NEXT_OPEN(int(const char *, int, ...), plain));             \
    }

#define DEFINE_OPENAT_2(name, plain)                                                                         \
    int name(int directory, const char *path, int flags);                                                    \
    int name(int directory, const char *path, int flags)                                                     \
    {                                                                                                        \
        return open_path(path, flags, 0, CALLER,                                                             \
                         NEXT_OPEN(int(int, const char *, int, ...), plain, directory, ));                   \
    }

#define DEFINE_FCNTL(name)                                                                                   \
    int name(int fd, int command, ...)                                                                       \
    {                                                                                                        \
        va_list args;                                                                                        \
        va_start(args, command);                                                                             \
        void *argument = va_arg(args, void *);                                                               \
        va_end(args);                                                                                        \
        return fcntl_descriptor(fd, command, argument, CALLER, NEXT(int(int, int, ...), #name));             \
    }

extern "C" {

DEFINE_OPEN(open)
DEFINE_OPEN(open64)
DEFINE_OPENAT(openat)
DEFINE_OPENAT(openat64)
DEFINE_OPEN_2(__open_2, "open")
DEFINE_OPEN_2(__open64_2, "open64")
DEFINE_OPENAT_2(__openat_2, "openat")
DEFINE_OPENAT_2(__openat64_2, "openat64")

int close(int fd)
{
    return inprocess::unless_answered({"close", CALLER, fd}, [=] {
        inprocess::forget(fd);
        return NEXT(Close, "close")(fd);
    });
}

int dup(int fd) noexcept
{
    return copy_descriptor("dup", CALLER, fd, 0, [=] { return NEXT(int(int), "dup")(fd); });
}

int dup2(int fd, int copy) noexcept
{
    return copy_descriptor("dup2", CALLER, fd, static_cast<unsigned>(copy),
                           [=] { return NEXT(int(int, int), "dup2")(fd, copy); });
}

int dup3(int fd, int copy, int flags) noexcept
{
    return copy_descriptor("dup3", CALLER, fd, static_cast<unsigned>(copy),
                           [=] { return NEXT(int(int, int, int), "dup3")(fd, copy, flags); });
}

DEFINE_FCNTL(fcntl)
DEFINE_FCNTL(fcntl64)
#if __SIZEOF_POINTER__ == 4
int __fcntl_time64(int fd, int command, ...);
DEFINE_FCNTL(__fcntl_time64)
#endif

} // extern "C"
