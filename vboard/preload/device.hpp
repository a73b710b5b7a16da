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

// Makes a request on an open device and does all that the board asks for to answer it. `number` and
// `argument` as in wire::Request. Result and errno as the libc function gives them.
ssize_t call_device(int fd, wire::Action action, std::uint32_t number, std::uint64_t argument);

} // namespace vboard::preload
