// SPDX-License-Identifier: Apache-2.0
#include "fuzz/hostile_driver.hpp"

#include <moxboot/driver.h>

#include <cerrno>
#include <cstdlib>
#include <fcntl.h>
#include <sys/mman.h>
#include <sys/types.h>
#include <unistd.h>

namespace fuzz
{
namespace
{

Input *driver = nullptr;
int opened = 0;

// Of an answer's first byte.
constexpr std::uint8_t fails = 1;
constexpr std::uint8_t wild = 2;      // begins as the input says, not as a good reply
constexpr unsigned changes_shift = 2; // the rest: how many words are changed

int open_device(const char *, int, unsigned)
{
    const std::uint8_t how = driver->left() != 0 ? driver->byte() : 0;
    if (how == 0xFF) { // rarely: without a device there is nothing to answer
        errno = ENOENT;
        return -1;
    }
    // Not a device of this machine: what the library does to it would be done to that.
    const int fd = memfd_create("device", MFD_CLOEXEC);
    opened += fd >= 0 ? 1 : 0;
    return fd;
}

int close_device(int fd)
{
    --opened;
    return close(fd);
}

std::uint8_t *bytes_at(const AddrDes &where)
{
    std::uint64_t address = 0;
    std::memcpy(&address, where.addr, sizeof where.addr);
    return reinterpret_cast<std::uint8_t *>(static_cast<std::uintptr_t>(address));
}

// What a driver in order would say to a request for one item.
void good_reply(const DrvbootIoctlBlock &block, std::uint32_t value)
{
    std::uint32_t request[3] = {};
    std::memcpy(request, bytes_at(block.in), std::min<std::size_t>(sizeof request, block.in_length));
    const std::uint32_t reply[] = {
        request[0], 0, DRVBOOT_TLV_RET_TYPE, DRVBOOT_TLV_RET_LENGTH, 0, request[2], sizeof value, value,
    };
    std::memcpy(bytes_at(block.out), reply, std::min<std::size_t>(sizeof reply, block.out_length));
}

int answer_item(const DrvbootIoctlBlock &block)
{
    const std::uint8_t how = driver->byte();
    std::uint8_t *out = bytes_at(block.out);
    if ((how & wild) != 0)
        driver->take(out, std::min<std::size_t>(block.out_length, driver->left()));
    else
        good_reply(block, driver->word());
    for (unsigned i = 0; i < static_cast<unsigned>(how >> changes_shift) && block.out_length >= 4; ++i) {
        const std::uint32_t at = driver->below(block.out_length / 4) * 4;
        const std::uint32_t word = driver->word();
        std::memcpy(out + at, &word, sizeof word);
    }
    const std::uint32_t status = driver->byte();
    std::memcpy(bytes_at(block.status), &status, sizeof status);
    return (how & fails) != 0 ? -1 : 0;
}

int answer_variable(unsigned long request, DrvbootEnvBlock &block)
{
    const std::uint8_t how = driver->byte();
    if (request == DRVBOOT_ENV_READ) {
        auto *value = reinterpret_cast<char *>(static_cast<std::uintptr_t>(block.value));
        const std::string text = driver->bytes(block.value_size); // no terminator where it fills the room
        std::memcpy(value, text.data(), text.size());
        if ((how & wild) != 0)
            block.value_size = driver->word();
    }
    return (how & fails) != 0 ? -1 : 0;
}

int answer_request(int, unsigned long request, void *argument)
{
    errno = EIO;
    if (request == DRVBOOT_CMD_GET || request == DRVBOOT_CMD_SET || request == DRVBOOT_CMD_SELF_RESET)
        return answer_item(*static_cast<const DrvbootIoctlBlock *>(argument));
    return answer_variable(request, *static_cast<DrvbootEnvBlock *>(argument));
}

ssize_t read_device(int, void *buffer, size_t count)
{
    const std::uint8_t how = driver->left() != 0 ? driver->byte() : fails;
    if (how == 0xFF) {
        errno = EIO;
        return -1;
    }
    const std::size_t some = std::min({count, static_cast<std::size_t>(how) * 16, driver->left()});
    driver->take(buffer, some);
    return static_cast<ssize_t>(some);
}

ssize_t write_device(int fd, const void *data, size_t count)
{
    // All of it is looked at, as a kernel does.
    const std::string copy(static_cast<const char *>(data), count);
    if (fd == STDERR_FILENO)
        return static_cast<ssize_t>(copy.size());
    const std::uint8_t how = driver->left() != 0 ? driver->byte() : 0;
    if (how == 0xFF) {
        errno = EIO;
        return -1;
    }
    return static_cast<ssize_t>(how == 1 && count > 1 ? count - 1 : copy.size());
}

// Callers of a size's choice must not be answered with all memory that this machine has: a board has far
// less.
void *allocate(size_t size)
{
    constexpr std::size_t most = 64U << 20;
    if (size <= most)
        return std::malloc(size);
    errno = ENOMEM;
    return nullptr;
}

} // namespace

void drive(Input *input)
{
    static const bool placed = [] {
        replace("open", open_device);
        replace("close", close_device);
        replace("ioctl", answer_request);
        replace("read", read_device);
        replace("write", write_device);
        replace("malloc", allocate);
        return true;
    }();
    static_cast<void>(placed);
    driver = input;
    opened = 0;
}

int open_devices()
{
    return opened;
}

} // namespace fuzz
