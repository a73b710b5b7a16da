// SPDX-License-Identifier: Apache-2.0
// Requests to the driver by open(), ioctl(), read(), write() and close() alone, as any program makes them.
#pragma once

#include "contract/control.hpp"

#include <moxboot/driver.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <cerrno>
#include <fcntl.h>
#include <string>
#include <sys/ioctl.h>
#include <unistd.h>
#include <vector>

namespace contract
{

constexpr const char *board0 = "/dev/board0";
constexpr const char *chassis0 = "/dev/chassis0";
constexpr const char *envinfo0 = "/dev/envinfo0";
constexpr const char *module_crl = "/dev/module_crl";

// Items that no board has of its own.
constexpr std::uint32_t item_a = 0x7a000001, item_b = 0x7a000002, no_item = 0x7a0000ff;

using Words = std::vector<std::uint32_t>;

constexpr std::uint32_t untouched = 0xEEEEEEEE;
constexpr std::uint32_t untouched_status = 0xDDDDDDDD;

// An item request, and what became of it. Buffers and status word are marked beforehand, so that what the
// driver leaves alone can be told.
struct ItemCall {
    Words in;
    std::uint32_t in_length, out_length = DRVBOOT_BUFFER_SIZE;
    Words out = Words(64, untouched);
    std::uint32_t status = untouched_status;
    DrvbootIoctlBlock block = {};
    int result = 0, error = 0;

    explicit ItemCall(Words in_);
    ItemCall &ask(int fd, std::uint32_t request = DRVBOOT_CMD_GET);
    // The beginning of the output buffer.
    Words first(std::size_t words) const
    {
        return {out.begin(), out.begin() + static_cast<std::ptrdiff_t>(words)};
    }
    // Whether the driver has left the output buffer alone from this word on.
    bool untouched_from(std::size_t word) const;
};

ItemCall get_call(const Words &codes);
ItemCall set_call(std::uint32_t code, std::uint32_t value);
AddrDes address(const void *buffer);

// The value of an item, through a descriptor of its own; the errno, negative, when that fails.
std::int64_t value_of(const char *device, std::uint32_t code);
// The same through an open one.
std::int64_t value_through(int fd, std::uint32_t code);

// An environment request.
struct EnvCall {
    std::array<char, DRVBOOT_ENV_SIZE> name{};
    std::array<char, DRVBOOT_ENV_SIZE> value{}; // marked with '~' beforehand
    DrvbootEnvBlock block = {};
    int result = 0, error = 0;

    explicit EnvCall(const std::string &name_, const std::string &value_ = "");
    EnvCall &ask(std::uint32_t request);
};

// A descriptor that is closed with its owner.
class Open
{
  public:
    explicit Open(const char *path, int flags = O_RDWR) : fd_(open(path, flags)), error_(fd_ < 0 ? errno : 0)
    {
    }
    ~Open()
    {
        shut();
    }
    Open(const Open &) = delete;
    Open &operator=(const Open &) = delete;
    operator int() const
    {
        return fd_;
    }
    int error() const
    {
        return error_;
    }
    int shut()
    {
        const int result = fd_ >= 0 ? close(fd_) : 0;
        fd_ = -1;
        return result;
    }

  private:
    int fd_, error_;
};

class Contract : public testing::Test
{
  protected:
    void SetUp() override;
    void TearDown() override; // nothing is open any more

    Control &board = control();

    std::vector<vboard::Event> events() const
    {
        return control().journal(before_);
    }
    // "open /dev/board0", "get /dev/board0", "unknown /dev/board0", in order.
    std::vector<std::string> operations() const;
    void expect_open_files(std::uint64_t wanted) const;
    void forget_events();

  private:
    std::uint64_t before_ = 0; // the number of the last event before the test
};

// Tests that have "/dev/board0" open.
class OpenBoard : public Contract
{
  protected:
    void SetUp() override;
    void TearDown() override;

    int fd = -1;
};

} // namespace contract
