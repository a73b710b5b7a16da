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

// From now on the device files are this board's; the board must outlive that. One board at a time. Detaching
// takes the devices away from descriptors that are still open; no other thread may use one meanwhile.
void attach(Board *board);
void detach();

// A call of a libc function, as a hook sees it before it is made. `function` is the plain name, whichever
// variant was called: "open" also stands for openat, open64 and __open64_2. Fields that a function has no use
// for keep their defaults.
//
//   open                             path; size: flags; data: its mode, a mode_t
//   close, ioctl, read, write        fd; size: request or count of bytes; data: argument or buffer
//   lseek, fstat, dup, dup2, dup3, fcntl   fd; size: new number or command; data: output
//   malloc, calloc, free             size; data: the block to free (a hook cannot keep it from being freed)
//   usleep, nanosleep, select        microseconds; data: the timeout
//   time, clock_gettime, localtime_r, sysinfo   data: the output
//   ftruncate, fchmod, mmap          fd; size: length or mode
//   msync                            size: length; data: the address
//   stat, lstat, readlink, scandir   path; size: room; data: the output
//   unlink, chmod, opendir, setmntent   path; size: mode
//   symlink                          path: of the link; data: what it points to
//   execv                            path; data: the arguments
//   mkfifo, remove, dlopen           path; size: mode or flags
//   dlclose                          data: the library
//   sync, pthread_create
//   sleep                            microseconds
//   sigprocmask                      size: how; data: the set
//   openlog, syslog, closelog        path: identity or format; size: facility or priority
struct LibcCall {
    const char *function = "";
    const void *caller = nullptr; // return address
    int fd = -1;
    const char *path = nullptr;
    std::size_t size = 0;
    std::uint64_t microseconds = 0;
    void *data = nullptr;
};

// What a hook answers in place of the call. A pointer result is the number cast.
struct LibcAnswer {
    long result = 0;
    std::optional<int> error; // errno to set
};

// Asked before each call; nothing: the call is made. A null hook asks nobody. What the hook itself calls is
// not shown to it, so it may allocate, open and sleep.
using LibcHook = std::optional<LibcAnswer> (*)(const LibcCall &call);
void set_libc_hook(LibcHook hook);

// Told of every block that malloc and calloc hand out.
using BlockHook = void (*)(void *block, const void *caller);
void set_block_hook(BlockHook hook);

} // namespace vboard
