// SPDX-License-Identifier: Apache-2.0
#include "vboard/model/requests.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>

namespace vboard_test
{

vboard::Profile small_profile()
{
    vboard::Profile profile;
    profile.name = "small";
    profile.items[board0] = {{hard_type_item, 0x90020709}, {role_item, 3}, {0x10002800, 7}};
    profile.items["/dev/slot7"] = {{0x10002636, 0x6001}};
    profile.address = {1, 2, 3, 4, 5, 6};
    profile.boot_env = {{"bootdelay", "3"}, {"BOOTMEDIA", "NAND"}, {"empty", ""}};
    return profile;
}

Bytes words(std::initializer_list<std::uint32_t> values)
{
    Bytes bytes(values.size() * 4);
    std::memcpy(bytes.data(), std::data(values), bytes.size());
    return bytes;
}

std::uint32_t word(const Bytes &bytes, std::size_t at)
{
    std::uint32_t value = 0;
    EXPECT_LE(at + 4, bytes.size()) << "the reply is too short";
    if (at + 4 <= bytes.size())
        std::memcpy(&value, bytes.data() + at, 4);
    return value;
}

namespace
{

vboard::IoctlCall item_call(const std::string &device, std::uint32_t request, Bytes in, std::uint32_t size)
{
    vboard::IoctlCall call;
    call.device = device;
    call.request = request;
    call.pid = 4711;
    call.in = std::move(in);
    call.in.resize(size); // callers send whole buffers
    call.out_size = size;
    return call;
}

} // namespace

vboard::IoctlCall get(const std::string &device, std::uint32_t item)
{
    return item_call(device, 3, words({0x1000000, 8, item, 0}), 64);
}

vboard::IoctlCall set(const std::string &device, std::uint32_t item, std::uint32_t value)
{
    return item_call(device, 200, words({0x1000000, 12, item, 4, value}), 64);
}

vboard::IoctlCall self_reset(std::uint32_t reason, const Bytes &date)
{
    Bytes in = words({0x1000003, 40, 0x8000004, 0, 0x10002206, 4, reason, 0x10002207, 12});
    in.insert(in.end(), date.begin(), date.end());
    return item_call(board0, 1, in, 64);
}

vboard::IoctlCall hard_info(std::initializer_list<std::uint32_t> items)
{
    Bytes in = words({0x1000000, static_cast<std::uint32_t>(8 * items.size())});
    for (const std::uint32_t item : items) {
        const Bytes pair = words({item, 0});
        in.insert(in.end(), pair.begin(), pair.end());
    }
    return item_call(board0, 3, in, 256);
}

vboard::IoctlCall env(std::uint32_t request, const std::string &name, const std::string &value)
{
    vboard::IoctlCall call;
    call.device = envinfo0;
    call.request = request;
    call.name.assign(name.begin(), name.end());
    call.name.resize(256);
    call.value.assign(value.begin(), value.end());
    call.value.resize(256);
    return call;
}

std::string text(const Bytes &buffer)
{
    return {buffer.begin(), std::ranges::find(buffer, std::uint8_t{0})};
}

} // namespace vboard_test
