// SPDX-License-Identifier: Apache-2.0
// Which descriptors of this process stand for a device of the attached board.
#pragma once

#include "front/marshal.hpp"

#include <optional>
#include <string>

namespace vboard::inprocess
{

// Whether opening this path is the attached board's business.
bool serves(const char *path);
// 0, or the errno with which the board refuses to open.
int open_device(const char *path, int flags);
// Remembers that `fd` stands for the device at `path`; that `copy` stands for the same open file as `fd`.
void remember(int fd, const char *path);
void remember_copy(int fd, int copy);
// To be told before the number is given back.
void forget(int fd);

std::optional<std::string> device_of(int fd);

IoctlResult ioctl(const std::string &device, unsigned long request, void *argument);
IoResult read(const std::string &device, void *buffer, std::size_t count);
IoResult write(const std::string &device, const void *data, std::size_t count);

} // namespace vboard::inprocess
