// SPDX-License-Identifier: Apache-2.0
// What is done to an open descriptor: the board when it is one of its devices, the real function otherwise.
#include "preload/device.hpp"
#include "preload/next.hpp"

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstdarg>
#include <cstdlib>
#include <sys/ioctl.h>
#include <sys/uio.h>
#include <unistd.h>

namespace
{

using vboard::preload::call_device;
using vboard::preload::is_device;
using vboard::preload::Next;
using vboard::wire::Action;

using Ioctl = int(int, unsigned long, ...);
using Read = ssize_t(int, void *, size_t);
using ReadChk = ssize_t(int, void *, size_t, size_t);
using Write = ssize_t(int, const void *, size_t);
using Vector = ssize_t(int, const iovec *, int);
using Seek = off_t(int, off_t, int);
using Seek64 = off64_t(int, off64_t, int);

Next<Ioctl> next_ioctl{"ioctl"};
Next<Read> next_read{"read"};
Next<ReadChk> next_read_chk{"__read_chk"};
Next<Write> next_write{"write"};
Next<Vector> next_readv{"readv"}, next_writev{"writev"};
Next<Seek> next_lseek{"lseek"};
Next<Seek64> next_lseek64{"lseek64"};

// A long transfer comes back short, as it may from any device.
ssize_t transfer(int fd, Action action, const void *buffer, size_t count)
{
    const auto size = static_cast<std::uint32_t>(std::min<size_t>(count, vboard::wire::max_transfer));
    return call_device(fd, action, size, reinterpret_cast<std::uintptr_t>(buffer));
}

ssize_t read_device(int fd, void *buffer, size_t count)
{
    return transfer(fd, Action::read, buffer, count);
}

ssize_t write_device(int fd, const void *data, size_t count)
{
    return transfer(fd, Action::write, data, count);
}

// The board's positions are such that any program's offsets hold them.
ssize_t seek_device(int fd, off64_t offset, int whence)
{
    return call_device(fd, Action::lseek, static_cast<std::uint32_t>(whence),
                       static_cast<std::uint64_t>(offset));
}

int ioctl_device(int fd, unsigned long request, void *argument)
{
    const auto number = static_cast<std::uint32_t>(request);
    return static_cast<int>(
        call_device(fd, Action::ioctl, number, reinterpret_cast<std::uintptr_t>(argument)));
}

// The first piece that is not empty: a transfer may always be short.
const iovec *first_piece(const iovec *pieces, int count)
{
    for (int i = 0; i < count; i++)
        if (pieces[i].iov_len != 0)
            return &pieces[i];
    return nullptr;
}

} // namespace

VBOARD_FRONT int ioctl(int fd, unsigned long request, ...) noexcept
{
    va_list arguments;
    va_start(arguments, request);
    void *argument = va_arg(arguments, void *);
    va_end(arguments);
    return is_device(fd) ? ioctl_device(fd, request, argument) : next_ioctl(fd, request, argument);
}

#if __SIZEOF_POINTER__ == 4
// The name that a 32-bit program with 64-bit times calls.
namespace
{
Next<Ioctl> next_ioctl_time64{"__ioctl_time64"};
}

VBOARD_FRONT int __ioctl_time64(int fd, unsigned long request, ...) noexcept
{
    va_list arguments;
    va_start(arguments, request);
    void *argument = va_arg(arguments, void *);
    va_end(arguments);
    return is_device(fd) ? ioctl_device(fd, request, argument) : next_ioctl_time64(fd, request, argument);
}
#endif

VBOARD_FRONT ssize_t read(int fd, void *buffer, size_t count)
{
    return is_device(fd) ? read_device(fd, buffer, count) : next_read(fd, buffer, count);
}

VBOARD_FRONT ssize_t __read_chk(int fd, void *buffer, size_t count, size_t room)
{
    // Only the real function may end a program that reads past its buffer.
    return count <= room && is_device(fd) ? read_device(fd, buffer, count)
                                          : next_read_chk(fd, buffer, count, room);
}

VBOARD_FRONT ssize_t write(int fd, const void *data, size_t count)
{
    return is_device(fd) ? write_device(fd, data, count) : next_write(fd, data, count);
}

VBOARD_FRONT ssize_t readv(int fd, const iovec *pieces, int count)
{
    if (count < 1 || count > IOV_MAX || !is_device(fd))
        return next_readv(fd, pieces, count);
    const iovec *piece = first_piece(pieces, count);
    return piece ? read_device(fd, piece->iov_base, piece->iov_len) : 0;
}

VBOARD_FRONT ssize_t writev(int fd, const iovec *pieces, int count)
{
    if (count < 1 || count > IOV_MAX || !is_device(fd))
        return next_writev(fd, pieces, count);
    const iovec *piece = first_piece(pieces, count);
    return piece ? write_device(fd, piece->iov_base, piece->iov_len) : 0;
}

VBOARD_FRONT off_t lseek(int fd, off_t offset, int whence) noexcept
{
    return is_device(fd) ? seek_device(fd, offset, whence) : next_lseek(fd, offset, whence);
}

VBOARD_FRONT off64_t lseek64(int fd, off64_t offset, int whence) noexcept
{
    return is_device(fd) ? seek_device(fd, offset, whence) : next_lseek64(fd, offset, whence);
}
