// SPDX-License-Identifier: Apache-2.0
#include "contract/contract.hpp"

#include "vboard/model/journal.hpp"

#include <algorithm>
#include <chrono>
#include <cstring>
#include <thread>

namespace contract
{

AddrDes address(const void *buffer)
{
    AddrDes descriptor = {};
    const std::uint64_t number = reinterpret_cast<std::uintptr_t>(buffer);
    std::memcpy(descriptor.addr, &number, sizeof number);
    descriptor.count = sizeof buffer;
    return descriptor;
}

ItemCall::ItemCall(Words in_) : in(std::move(in_)), in_length(0)
{
    in.resize(std::max<std::size_t>(in.size(), DRVBOOT_BUFFER_SIZE / 4));
    in_length = static_cast<std::uint32_t>(in.size() * 4);
}

ItemCall &ItemCall::ask(int fd, std::uint32_t request)
{
    // What a test has put there stays.
    if (block.in.count == 0)
        block.in = address(in.data());
    if (block.out.count == 0)
        block.out = address(out.data());
    if (block.status.count == 0)
        block.status = address(&status);
    block.in_length = in_length;
    block.out_length = out_length;
    errno = 0;
    result = ioctl(fd, request, &block);
    error = errno;
    return *this;
}

bool ItemCall::untouched_from(std::size_t word) const
{
    return std::all_of(out.begin() + static_cast<std::ptrdiff_t>(word), out.end(),
                       [](std::uint32_t one) { return one == untouched; });
}

ItemCall get_call(const Words &codes)
{
    Words in{DRVBOOT_TLV_L1_TYPE, static_cast<std::uint32_t>(codes.size() * 8)};
    for (const std::uint32_t code : codes)
        in.insert(in.end(), {code, 0});
    return ItemCall(in);
}

ItemCall set_call(std::uint32_t code, std::uint32_t value)
{
    return ItemCall({DRVBOOT_TLV_L1_TYPE, 12, code, 4, value});
}

std::int64_t value_through(int fd, std::uint32_t code)
{
    ItemCall call = get_call({code});
    if (call.ask(fd).result != 0)
        return -call.error;
    return call.out[4] == 0 ? std::int64_t{call.out[7]} : -1000 - std::int64_t{call.out[4]};
}

std::int64_t value_of(const char *device, std::uint32_t code)
{
    const Open fd(device, O_RDONLY);
    return fd < 0 ? -fd.error() : value_through(fd, code);
}

EnvCall::EnvCall(const std::string &name_, const std::string &value_)
{
    value.fill('~');
    std::memcpy(name.data(), name_.data(), std::min(name_.size(), name.size()));
    if (!value_.empty()) {
        std::memcpy(value.data(), value_.data(), std::min(value_.size(), value.size()));
        if (value_.size() < value.size())
            value[value_.size()] = '\0';
    }
    block = {reinterpret_cast<std::uintptr_t>(name.data()), reinterpret_cast<std::uintptr_t>(value.data()),
             DRVBOOT_ENV_SIZE, DRVBOOT_ENV_SIZE};
}

EnvCall &EnvCall::ask(std::uint32_t request)
{
    const Open fd(envinfo0);
    EXPECT_GE(fd, 0) << fd.error();
    errno = 0;
    result = ioctl(fd, request, &block);
    error = errno;
    return *this;
}

void Contract::SetUp()
{
    board.clear_faults();
    expect_open_files(0);
    board.set_item(board0, item_a, 0x11223344);
    board.set_item(board0, item_b, 0x55667788);
    board.set_item(board0, no_item, std::nullopt);
    forget_events();
}

void Contract::TearDown()
{
    expect_open_files(0);
    board.clear_faults();
}

void Contract::forget_events()
{
    before_ = board.last_event();
}

void OpenBoard::SetUp()
{
    Contract::SetUp();
    fd = open(board0, O_RDONLY | O_NONBLOCK);
    ASSERT_GE(fd, 0) << errno;
    forget_events();
}

void OpenBoard::TearDown()
{
    EXPECT_EQ(close(fd), 0);
    Contract::TearDown();
}

std::vector<std::string> Contract::operations() const
{
    std::vector<std::string> lines;
    for (const vboard::Event &event : events())
        lines.push_back((event.what.empty() ? std::string(vboard::op_name(event.op)) : event.what) + " " +
                        event.device);
    return lines;
}

// Another process may hear of a close a little later.
void Contract::expect_open_files(std::uint64_t wanted) const
{
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(5);
    while (control().open_files() != wanted && std::chrono::steady_clock::now() < end)
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    EXPECT_EQ(control().open_files(), wanted);
}

} // namespace contract
