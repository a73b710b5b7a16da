// SPDX-License-Identifier: Apache-2.0
// The open family: the real function first, the board when it finds a socket.
#include "preload/device.hpp"
#include "preload/next.hpp"

#include <cerrno>
#include <cstdarg>
#include <cstdio>
#include <cstring>
#include <fcntl.h>

namespace
{

using vboard::preload::Next;
using vboard::preload::open_device;

using Open = int(const char *, int, ...);
using OpenAt = int(int, const char *, int, ...);
using Open2 = int(const char *, int);
using OpenAt2 = int(int, const char *, int);
using Creat = int(const char *, mode_t);
using Fopen = FILE *(const char *, const char *);

Next<Open> next_open{"open"}, next_open64{"open64"};
Next<OpenAt> next_openat{"openat"}, next_openat64{"openat64"};
Next<Open2> next_open_2{"__open_2"}, next_open64_2{"__open64_2"};
Next<OpenAt2> next_openat_2{"__openat_2"}, next_openat64_2{"__openat64_2"};
Next<Creat> next_creat{"creat"}, next_creat64{"creat64"};
Next<Fopen> next_fopen{"fopen"}, next_fopen64{"fopen64"};

constexpr const char *proc = "/proc/";

// What `result`, the real function's, becomes when a board is there. A failure that has nothing to do with a
// board keeps its errno.
int with_board(int result, int directory, const char *path, int flags, mode_t mode)
{
    if (result >= 0 || !path)
        return result;
    if (errno == ENXIO)
        return open_device(directory, path, flags);
    if (errno != ENOENT || std::strncmp(path, proc, std::strlen(proc)) != 0)
        return result;
    char moved[256];
    const int length = std::snprintf(moved, sizeof moved, VBOARD_PROC_ROOT "%s", path);
    if (length < 0 || static_cast<std::size_t>(length) >= sizeof moved)
        return result; // errno is still ENOENT: nothing that a board has is called so
    const int fd = next_open64(moved, flags & ~O_CREAT, mode);
    return fd < 0 && errno == ENXIO ? open_device(AT_FDCWD, moved, flags) : fd;
}

mode_t mode_argument(int flags, va_list arguments)
{
    return (flags & O_CREAT) || (flags & O_TMPFILE) == O_TMPFILE ? static_cast<mode_t>(va_arg(arguments, int))
                                                                 : 0;
}

// libc's stdio opens files without the function above, and takes a descriptor gladly.
FILE *stream_with_board(FILE *stream, const char *path, const char *mode)
{
    if (stream || !path || !mode || (errno != ENXIO && errno != ENOENT))
        return stream;
    const bool update = std::strchr(mode, '+') != nullptr;
    int flags = mode[0] == 'r' ? O_RDONLY : O_WRONLY;
    if (update)
        flags = O_RDWR;
    if (std::strchr(mode, 'e'))
        flags |= O_CLOEXEC;
    const int fd = with_board(-1, AT_FDCWD, path, flags, 0);
    return fd < 0 ? nullptr : fdopen(fd, mode);
}

} // namespace

VBOARD_FRONT int open(const char *path, int flags, ...)
{
    va_list arguments;
    va_start(arguments, flags);
    const mode_t mode = mode_argument(flags, arguments);
    va_end(arguments);
    return with_board(next_open(path, flags, mode), AT_FDCWD, path, flags, mode);
}

VBOARD_FRONT int open64(const char *path, int flags, ...)
{
    va_list arguments;
    va_start(arguments, flags);
    const mode_t mode = mode_argument(flags, arguments);
    va_end(arguments);
    return with_board(next_open64(path, flags, mode), AT_FDCWD, path, flags, mode);
}

VBOARD_FRONT int openat(int directory, const char *path, int flags, ...)
{
    va_list arguments;
    va_start(arguments, flags);
    const mode_t mode = mode_argument(flags, arguments);
    va_end(arguments);
    return with_board(next_openat(directory, path, flags, mode), directory, path, flags, mode);
}

VBOARD_FRONT int openat64(int directory, const char *path, int flags, ...)
{
    va_list arguments;
    va_start(arguments, flags);
    const mode_t mode = mode_argument(flags, arguments);
    va_end(arguments);
    return with_board(next_openat64(directory, path, flags, mode), directory, path, flags, mode);
}

// The fortified names, which programs built with _FORTIFY_SOURCE call when the flags are not a constant.
VBOARD_FRONT int __open_2(const char *path, int flags)
{
    return with_board(next_open_2(path, flags), AT_FDCWD, path, flags, 0);
}

VBOARD_FRONT int __open64_2(const char *path, int flags)
{
    return with_board(next_open64_2(path, flags), AT_FDCWD, path, flags, 0);
}

VBOARD_FRONT int __openat_2(int directory, const char *path, int flags)
{
    return with_board(next_openat_2(directory, path, flags), directory, path, flags, 0);
}

VBOARD_FRONT int __openat64_2(int directory, const char *path, int flags)
{
    return with_board(next_openat64_2(directory, path, flags), directory, path, flags, 0);
}

VBOARD_FRONT int creat(const char *path, mode_t mode)
{
    return with_board(next_creat(path, mode), AT_FDCWD, path, O_WRONLY | O_CREAT | O_TRUNC, mode);
}

VBOARD_FRONT int creat64(const char *path, mode_t mode)
{
    return with_board(next_creat64(path, mode), AT_FDCWD, path, O_WRONLY | O_CREAT | O_TRUNC, mode);
}

VBOARD_FRONT FILE *fopen(const char *path, const char *mode)
{
    return stream_with_board(next_fopen(path, mode), path, mode);
}

VBOARD_FRONT FILE *fopen64(const char *path, const char *mode)
{
    return stream_with_board(next_fopen64(path, mode), path, mode);
}
