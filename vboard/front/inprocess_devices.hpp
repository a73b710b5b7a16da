// SPDX-License-Identifier: Apache-2.0
// Which descriptors of this process stand for a device of the attached board.
#pragma once

#include "front/marshal.hpp"

#include <memory>
#include <string>

namespace vboard::inprocess
{

// An open file of a device; copies of a descriptor share one. The board is told when the last is gone.
struct OpenFile {
    Board *board;
    std::string device;
    int flags;
    mutable std::int64_t position = 0; // the board's to move

    OpenFile(Board *board_, std::string device_, int flags_);
    ~OpenFile();
    OpenFile(const OpenFile &) = delete;
    OpenFile &operator=(const OpenFile &) = delete;
};
using File = std::shared_ptr<const OpenFile>;

// Whether a board is attached, and whether opening this path is its business.
bool attached();
bool serves(const char *path);
// Opens the device as the descriptor `fd`: 0, or the errno with which the board refuses.
int open_device(const char *path, int flags, int fd);

// The device that a descriptor stands for; null for any other descriptor.
File file_of(int fd);
// To be told before the number is given back.
void forget(int fd);
// `copy` is a new number of what `fd` stands for, whatever it stood for before.
void remember_copy(int fd, int copy);

IoctlResult ioctl(const OpenFile &file, unsigned long request, void *argument);
IoResult read(const OpenFile &file, void *buffer, std::size_t count);
IoResult write(const OpenFile &file, const void *data, std::size_t count);
IoResult seek(const OpenFile &file, std::int64_t offset, int whence);

} // namespace vboard::inprocess
