// SPDX-License-Identifier: Apache-2.0
// The shim's side of a board device. Nothing is remembered between calls: the descriptor that a program gets
// is the connection itself, so fork, dup, exec, close and reuse of numbers are the kernel's business.
#pragma once

#include "front/wire.hpp"

#include <sys/types.h>

namespace vboard::preload
{

// Whether `fd` is an open board device. Keeps errno.
bool is_device(int fd);

// Opens the device whose node is a socket at `path`. Descriptor, or -1 with errno; ENXIO when it is no board
// device.
int open_device(int directory, const char *path, int flags);

// A request on an open device and all that the board does to answer it. `data` is what is written, or room
// for what is read. Result and errno as the libc function gives them.
struct Call {
    wire::Action action;
    std::uint32_t number;
    std::uint64_t argument;
    void *data;
    std::uint32_t size;
};
ssize_t call_device(int fd, const Call &call);

} // namespace vboard::preload
