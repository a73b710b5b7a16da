// SPDX-License-Identifier: Apache-2.0
// The front end that is linked into a test program: the program's own definitions of open(), ioctl() and
// their like stand before libc's, serve a board's devices, and pass everything else on.
//
// The test program must export its symbols (ENABLE_EXPORTS), so that shared libraries bind to these
// definitions.
#pragma once

#include "model/board.hpp"

#include <cstddef>
#include <cstdint>
#include <optional>

namespace vboard
{

// From now on the device files are this board's; the board must outlive that. One board at a time.
void attach(Board *board);
void detach();

// A call of a libc function, as a hook sees it before it is made. `function` is the plain name, whichever
// variant was called: "open" also stands for open64 and __open64_2. Fields that a function has no use for
// keep their defaults.
//
//   open (path, size: flags)   close, ioctl, read, write, lseek, fsync (fd; size: count or request)
//   malloc, calloc (size)      free (data)
//   usleep, nanosleep, select (microseconds)     time, clock_gettime, localtime_r, sysinfo
struct LibcCall {
    const char *function = "";
    const void *caller = nullptr; // return address
    int fd = -1;
    const char *path = nullptr;
    std::size_t size = 0;
    std::uint64_t microseconds = 0;
    void *data = nullptr; // free: the block; ioctl: the argument; write: the bytes; select: its timeout;
                          // time, ...: the output
};

// What a hook answers in place of the call. A pointer result is the number cast.
struct LibcAnswer {
    long result = 0;
    std::optional<int> error; // errno to set
};

// Asked before each call; nothing: the call is made. A null hook asks nobody. The hook may allocate.
using LibcHook = std::optional<LibcAnswer> (*)(const LibcCall &call);
void set_libc_hook(LibcHook hook);

// Told of every block that malloc and calloc hand out.
using BlockHook = void (*)(void *block, const void *caller);
void set_block_hook(BlockHook hook);

} // namespace vboard
