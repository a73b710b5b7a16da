// SPDX-License-Identifier: Apache-2.0
#include "front/inprocess_devices.hpp"

#include "front/inprocess.hpp"

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <cstring>
#include <map>
#include <memory>
#include <mutex>
#include <unistd.h>

namespace vboard
{
namespace
{

// An open file of a device; copies of a descriptor share one.
using OpenFile = std::shared_ptr<const std::string>;

std::atomic<Board *> attached{nullptr};
std::atomic<int> open_files{0}; // lets the usual case, no device open, do without the lock
std::mutex mutex;

std::map<int, OpenFile> &table()
{
    // Never destroyed: descriptors are closed until the very end of the process.
    static auto *files = new std::map<int, OpenFile>;
    return *files;
}

// The caller's memory is this process's own.
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
    attached = board;
}

void detach()
{
    attached = nullptr;
}

namespace inprocess
{

bool serves(const char *path)
{
    Board *board = attached;
    return board != nullptr && path != nullptr && board->serves(path);
}

int open_device(const char *path, int flags)
{
    Board *board = attached;
    return board != nullptr ? board->open(path, flags, getpid()) : ENXIO;
}

void remember(int fd, const char *path)
{
    std::lock_guard lock(mutex);
    table()[fd] = std::make_shared<const std::string>(path);
    open_files = static_cast<int>(table().size());
}

void remember_copy(int fd, int copy)
{
    if (open_files == 0)
        return;
    std::lock_guard lock(mutex);
    auto found = table().find(fd);
    if (found == table().end())
        table().erase(copy);
    else
        table()[copy] = found->second;
    open_files = static_cast<int>(table().size());
}

void forget(int fd)
{
    if (open_files == 0)
        return;
    OpenFile closed;
    {
        std::lock_guard lock(mutex);
        auto found = table().find(fd);
        if (found == table().end())
            return;
        closed = found->second;
        table().erase(found);
        open_files = static_cast<int>(table().size());
    }
    Board *board = attached;
    if (board != nullptr && closed.use_count() == 1)
        board->close(*closed, getpid());
}

std::optional<std::string> device_of(int fd)
{
    if (open_files == 0)
        return std::nullopt;
    std::lock_guard lock(mutex);
    auto found = table().find(fd);
    return found == table().end() ? std::nullopt : std::optional<std::string>(*found->second);
}

IoctlResult ioctl(const std::string &device, unsigned long request, void *argument)
{
    Board *board = attached;
    if (board == nullptr)
        return {-1, ENODEV};
    OwnMemory memory;
    return run_ioctl(*board, device, static_cast<std::uint32_t>(request),
                     reinterpret_cast<std::uintptr_t>(argument), getpid(), memory);
}

IoResult read(const std::string &device, void *buffer, std::size_t count)
{
    Board *board = attached;
    if (board == nullptr)
        return {-1, ENODEV, {}};
    IoResult done = board->read(device, count, getpid());
    std::memcpy(buffer, done.data.data(), std::min(count, done.data.size()));
    return done;
}

IoResult write(const std::string &device, const void *data, std::size_t count)
{
    Board *board = attached;
    if (board == nullptr)
        return {-1, ENODEV, {}};
    const auto *bytes = static_cast<const std::uint8_t *>(data);
    return board->write(device, Bytes(bytes, bytes + count), getpid());
}

} // namespace inprocess
} // namespace vboard
