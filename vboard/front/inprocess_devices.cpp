// SPDX-License-Identifier: Apache-2.0
#include "front/inprocess_devices.hpp"

#include "front/inprocess.hpp"

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <map>
#include <mutex>
#include <unistd.h>

namespace vboard
{
namespace
{

using inprocess::File;
using inprocess::OpenFile;

std::atomic<Board *> the_board{nullptr};
std::atomic<std::size_t> open_count{0}; // lets the usual case, no device open, do without the lock
std::mutex mutex;                       // guards the table

std::map<int, File> &table()
{
    // Never destroyed: descriptors are closed until the very end of the process.
    static auto *files = new std::map<int, File>;
    return *files;
}

// Puts a file (or none) at a number. What was there before is let go of by the caller, without the lock:
// the board is told then.
[[nodiscard]] File exchange(int fd, File file)
{
    const std::lock_guard lock(mutex);
    File before;
    if (const auto found = table().find(fd); found != table().end()) {
        before = std::move(found->second);
        table().erase(found);
    }
    if (file)
        table()[fd] = std::move(file);
    open_count = table().size();
    return before;
}

// The caller's memory is this process's own. A wild address is not caught here: the test crashes, and a
// sanitizer shows where.
class OwnMemory : public Memory
{
  public:
    int fetch(std::uint64_t address, void *into, std::size_t size) override
    {
        std::memcpy(into, reinterpret_cast<const void *>(static_cast<std::uintptr_t>(address)), size);
        return 0;
    }
    int store(std::uint64_t address, const void *from, std::size_t size) override
    {
        std::memcpy(reinterpret_cast<void *>(static_cast<std::uintptr_t>(address)), from, size);
        return 0;
    }
};

} // namespace

void attach(Board *board)
{
    the_board = board;
}

void detach()
{
    std::map<int, File> left;
    {
        const std::lock_guard lock(mutex);
        left.swap(table());
        open_count = 0;
    }
    left.clear();
    the_board = nullptr;
}

namespace inprocess
{

OpenFile::OpenFile(Board *board_, std::string device_, int flags_)
    : board(board_), device(std::move(device_)), flags(flags_)
{
}

OpenFile::~OpenFile()
{
    board->close(device, getpid());
}

bool attached()
{
    return the_board != nullptr;
}

bool serves(const char *path)
{
    const Board *board = the_board;
    return board != nullptr && board->serves(path);
}

int open_device(const char *path, int flags, int fd)
{
    Board *board = the_board;
    const int error = board == nullptr ? ENXIO : board->open(path, flags, getpid());
    if (error == 0)
        static_cast<void>(exchange(fd, std::make_shared<const OpenFile>(board, path, flags)));
    return error;
}

File file_of(int fd)
{
    if (open_count == 0)
        return nullptr;
    const std::lock_guard lock(mutex);
    const auto found = table().find(fd);
    return found == table().end() ? nullptr : found->second;
}

void forget(int fd)
{
    if (open_count != 0)
        static_cast<void>(exchange(fd, nullptr));
}

void remember_copy(int fd, int copy)
{
    if (open_count != 0 && fd != copy)
        static_cast<void>(exchange(copy, file_of(fd)));
}

IoctlResult ioctl(const OpenFile &file, unsigned long request, void *argument)
{
    OwnMemory memory;
    return run_ioctl(*file.board, file.device, static_cast<std::uint32_t>(request),
                     reinterpret_cast<std::uintptr_t>(argument), getpid(), memory);
}

IoResult read(const OpenFile &file, void *buffer, std::size_t count)
{
    if ((file.flags & O_ACCMODE) == O_WRONLY)
        return {-1, EBADF, {}};
    IoResult done = file.board->read(file.device, count, getpid(), &file.position);
    if (!done.data.empty())
        std::memcpy(buffer, done.data.data(), std::min(count, done.data.size()));
    return done;
}

IoResult write(const OpenFile &file, const void *data, std::size_t count)
{
    if ((file.flags & O_ACCMODE) == O_RDONLY)
        return {-1, EBADF, {}};
    if (data == nullptr && count != 0)
        return {-1, EFAULT, {}};
    const auto *bytes = static_cast<const std::uint8_t *>(data);
    return file.board->write(file.device, Bytes(bytes, bytes + count), getpid(), &file.position);
}

IoResult seek(const OpenFile &file, std::int64_t offset, int whence)
{
    return file.board->seek(file.device, offset, whence, getpid(), &file.position);
}

} // namespace inprocess
} // namespace vboard
