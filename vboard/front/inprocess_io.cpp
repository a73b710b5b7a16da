// SPDX-License-Identifier: Apache-2.0
// What is done with an open descriptor: ioctl(), read(), write(), lseek(), and calls that only the hook cares
// about.
#include "front/inprocess_devices.hpp"
#include "front/inprocess_hook.hpp"

#include <cstdarg>
#include <sys/stat.h>
#include <unistd.h>

namespace
{

using namespace vboard;

LibcCall on_descriptor(const char *function, const void *caller, int fd, std::size_t size, const void *data)
{
    LibcCall call{function, caller, fd};
    call.size = size;
    call.data = const_cast<void *>(data);
    return call;
}

// The board's result; errno as a system call leaves it: untouched by a success.
template <typename Result>
Result finish(Result result, int error, int before)
{
    errno = result == -1 && error != 0 ? error : before;
    return result;
}

// The board's answer for a device, otherwise the next definition's.
template <typename OnDevice, typename Next>
auto device_or_next(const LibcCall &call, OnDevice on_device, Next next)
{
    return inprocess::unless_answered(call, [&]() -> decltype(next()) {
        const int before = errno;
        const inprocess::File file = inprocess::file_of(call.fd);
        if (!file)
            return next();
        const auto done = on_device(*file);
        return finish(static_cast<decltype(next())>(done.result), done.error, before);
    });
}

template <typename Next>
ssize_t read_descriptor(int fd, void *buffer, std::size_t count, const void *caller, Next next)
{
    return device_or_next(
        on_descriptor("read", caller, fd, count, buffer),
        [=](const inprocess::OpenFile &file) { return inprocess::read(file, buffer, count); }, next);
}

} // namespace

// Types and names cannot stand in parentheses.
// NOLINTBEGIN(bugprone-macro-parentheses)
#define DEFINE_IOCTL(name)                                                                                   \
    int name(int fd, unsigned long request, ...) noexcept                                                    \
    {                                                                                                        \
        va_list args;                                                                                        \
        va_start(args, request);                                                                             \
        void *argument = va_arg(args, void *);                                                               \
        va_end(args);                                                                                        \
        return device_or_next(                                                                               \
            on_descriptor("ioctl", CALLER, fd, request, argument),                                           \
            [=](const inprocess::OpenFile &file) { return inprocess::ioctl(file, request, argument); },      \
            [=] { return NEXT(int(int, unsigned long, ...), #name)(fd, request, argument); });               \
    }

#define DEFINE_LSEEK(name, offset_type)                                                                      \
    offset_type name(int fd, offset_type offset, int whence) noexcept                                        \
    {                                                                                                        \
        return device_or_next(                                                                               \
            on_descriptor("lseek", CALLER, fd, 0, nullptr),                                                  \
            [=](const inprocess::OpenFile &file) { return inprocess::seek(file, offset, whence); },          \
            [=] { return NEXT(offset_type(int, offset_type, int), #name)(fd, offset, whence); });            \
    }

#define DEFINE_FSTAT(name, stat_type)                                                                        \
    int name(int fd, stat_type *output) noexcept                                                             \
    {                                                                                                        \
        return inprocess::unless_answered(on_descriptor("fstat", CALLER, fd, 0, output),                     \
                                          [=] { return NEXT(int(int, stat_type *), #name)(fd, output); });   \
    }

// NOLINTEND(bugprone-macro-parentheses)

extern "C" {

int ioctl(int fd, unsigned long request, ...) noexcept;
DEFINE_IOCTL(ioctl)

ssize_t read(int fd, void *buffer, size_t count)
{
    return read_descriptor(fd, buffer, count, CALLER,
                           [=] { return NEXT(ssize_t(int, void *, size_t), "read")(fd, buffer, count); });
}

ssize_t __read_chk(int fd, void *buffer, size_t count, size_t room);
ssize_t __read_chk(int fd, void *buffer, size_t count, size_t room)
{
    return read_descriptor(fd, buffer, count, CALLER, [=] {
        return NEXT(ssize_t(int, void *, size_t, size_t), "__read_chk")(fd, buffer, count, room);
    });
}

ssize_t write(int fd, const void *data, size_t count)
{
    return device_or_next(
        on_descriptor("write", CALLER, fd, count, data),
        [=](const inprocess::OpenFile &file) { return inprocess::write(file, data, count); },
        [=] { return NEXT(ssize_t(int, const void *, size_t), "write")(fd, data, count); });
}

DEFINE_LSEEK(lseek, off_t)
DEFINE_LSEEK(lseek64, off64_t)
DEFINE_FSTAT(fstat, struct stat)
DEFINE_FSTAT(fstat64, struct stat64)

#if __SIZEOF_POINTER__ == 4
int __ioctl_time64(int fd, unsigned long request, ...) noexcept;
DEFINE_IOCTL(__ioctl_time64)
int __fstat64_time64(int fd, void *output) noexcept;
DEFINE_FSTAT(__fstat64_time64, void)
#endif

} // extern "C"
