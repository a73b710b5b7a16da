// SPDX-License-Identifier: Apache-2.0
#include "reset/raw_reset.hpp"

#include <algorithm>

namespace test
{
namespace
{

void *address_in(const AddrDes &descriptor)
{
    std::uint64_t address = 0;
    memcpy(&address, descriptor.addr, sizeof address);
    return to_pointer(address);
}

} // namespace

Bytes words(const std::vector<std::uint32_t> &values, std::size_t size)
{
    Bytes bytes(size, 0);
    memcpy(bytes.data(), values.data(), std::min(size, values.size() * sizeof(std::uint32_t)));
    return bytes;
}

void RawReset::SetUp()
{
    reset_raw_kernel();
    raw_kernel().on_ioctl = [this](unsigned long number, void *argument) {
        DrvbootIoctlBlock block;
        memcpy(&block, argument, sizeof block);
        request = number;
        in_length = block.in_length;
        out_length = block.out_length;
        in = bytes_at(address_in(block.in), in_shown);
        out_before = bytes_at(address_in(block.out), out_length);
        EXPECT_EQ(bytes_at(address_in(block.status), 4), Bytes(4, 0));
        if (!reply.empty())
            memcpy(address_in(block.out), reply.data(), std::min<std::size_t>(reply.size(), out_length));
        return 0;
    };
}

void RawReset::TearDown()
{
    for (const RawOpen &opened : raw_kernel().opened)
        EXPECT_TRUE(closed(opened)) << opened.path;
}

} // namespace test
