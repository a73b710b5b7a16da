// SPDX-License-Identifier: Apache-2.0
#include "vboard/front/marshal.hpp"
#include "vboard/model/requests.hpp"

#include <moxboot/driver.h>

#include <gtest/gtest.h>

#include <cerrno>
#include <cstring>

using namespace vboard_test;
using vboard::Board;
using vboard::IoctlResult;

namespace
{

// A caller whose memory is a few hundred bytes at a high address; everything else is not its own.
class CallersMemory : public vboard::Memory
{
  public:
    static constexpr std::uint64_t base = 0x10000;
    Bytes bytes = Bytes(2048, 0);

    int fetch(std::uint64_t address, void *into, std::size_t size) override
    {
        if (!inside(address, size))
            return EFAULT;
        std::memcpy(into, bytes.data() + (address - base), size);
        return 0;
    }
    int store(std::uint64_t address, const void *from, std::size_t size) override
    {
        if (!inside(address, size))
            return EFAULT;
        std::memcpy(bytes.data() + (address - base), from, size);
        return 0;
    }
    template <class Record>
    void put(std::size_t at, const Record &record)
    {
        std::memcpy(bytes.data() + at, &record, sizeof record);
    }

  private:
    bool inside(std::uint64_t address, std::size_t size) const
    {
        return address >= base && size <= bytes.size() && address - base <= bytes.size() - size;
    }
};

constexpr std::size_t in_at = 256, out_at = 512, status_at = 1000, name_at = 256, value_at = 768;

class Marshal : public testing::Test
{
  protected:
    Board board{small_profile()};
    CallersMemory memory;
    DrvbootIoctlBlock block{};
    DrvbootEnvBlock env_block{CallersMemory::base + name_at, CallersMemory::base + value_at, 256, 256};

    static AddrDes at(std::size_t offset, std::uint32_t count = 4)
    {
        const std::uint64_t address = CallersMemory::base + offset;
        AddrDes descriptor{};
        for (unsigned i = 0; i < 8; ++i)
            descriptor.addr[i] = static_cast<std::uint8_t>(address >> (8 * i));
        descriptor.count = count;
        return descriptor;
    }
    void SetUp() override
    {
        block = {at(in_at), 64, at(out_at), 64, at(status_at)};
        const Bytes in = get(board0, role_item).in;
        std::copy(in.begin(), in.end(), memory.bytes.begin() + in_at);
        memory.put(status_at, 0xffffffffu);
    }
    IoctlResult run(std::uint32_t request = 3)
    {
        memory.put(0, block);
        return run_ioctl(board, board0, request, CallersMemory::base, 7, memory);
    }
    IoctlResult run_env(std::uint32_t request)
    {
        memory.put(0, env_block);
        return run_ioctl(board, envinfo0, request, CallersMemory::base, 7, memory);
    }
    void name(const char *text)
    {
        std::memcpy(memory.bytes.data() + name_at, text, std::strlen(text) + 1);
    }
    std::string value()
    {
        return text(Bytes(memory.bytes.begin() + value_at, memory.bytes.begin() + value_at + 256));
    }
};

TEST_F(Marshal, FollowsTheDescriptorsAndPutsReplyAndStatusBack)
{
    EXPECT_EQ(run().result, 0);
    EXPECT_EQ(word(memory.bytes, out_at + 16), 0u);
    EXPECT_EQ(word(memory.bytes, out_at + 28), 3u);
    EXPECT_EQ(word(memory.bytes, status_at), 0u);
    EXPECT_EQ(board.journal().at(0).pid, 7);
}

TEST_F(Marshal, ReadsAsManyAddressBytesAsTheCountSays)
{
    block.in = at(in_at, 8);
    EXPECT_EQ(run().result, 0);
    block.in.addr[5] = 1; // now it points elsewhere
    EXPECT_EQ(run().error, EFAULT);
    block.in.count = 4; // the bytes above do not matter
    EXPECT_EQ(run().result, 0);
    for (std::uint32_t count : {0u, 1u, 5u, 9u, 0xffffffffu}) {
        block.in.count = count;
        EXPECT_EQ(run().error, EINVAL) << count;
    }
}

TEST_F(Marshal, NullAndForeignAddressesAreFaultsAndInTheJournal)
{
    EXPECT_EQ(run_ioctl(board, board0, 3, 0, 7, memory).error, EFAULT);
    EXPECT_EQ(run_ioctl(board, board0, 3, 12, 7, memory).error, EFAULT);
    block.in = AddrDes{{}, 4};
    EXPECT_EQ(run().error, EFAULT);
    block.in = at(in_at);
    block.out = AddrDes{{}, 4};
    EXPECT_EQ(run().error, EFAULT);
    block.out = at(memory.bytes.size() - 8);
    EXPECT_EQ(run().error, EFAULT);
    EXPECT_EQ(board.journal().size(), 5u);
    EXPECT_EQ(board.journal().at(0).error, EFAULT);
}

TEST_F(Marshal, NobodyHasToWantTheStatus)
{
    block.status = AddrDes{};
    EXPECT_EQ(run().result, 0);
    block.status = AddrDes{{}, 4};
    EXPECT_EQ(run().result, 0);
}

TEST_F(Marshal, LengthsAreBounded)
{
    block.in_length = 64 * 1024 + 1;
    EXPECT_EQ(run().error, EINVAL);
    block.in_length = 0xffffffff;
    EXPECT_EQ(run().error, EINVAL);
    block.in_length = 64;
    block.out_length = 64 * 1024 + 1;
    EXPECT_EQ(run().error, EINVAL);
}

TEST_F(Marshal, FillsNoMoreThanTheOutputBuffer)
{
    std::fill(memory.bytes.begin() + out_at, memory.bytes.begin() + out_at + 64, std::uint8_t{0xee});
    block.out_length = 21;
    EXPECT_EQ(run().result, 0);
    EXPECT_NE(memory.bytes[out_at + 20], 0xee);
    EXPECT_EQ(memory.bytes[out_at + 21], 0xee);
}

TEST_F(Marshal, TouchesNothingForARequestThatTheDeviceDoesNotKnow)
{
    EXPECT_EQ(run_ioctl(board, board0, 0x4501, 0, 7, memory).error, ENOTTY);
    EXPECT_EQ(run_ioctl(board, envinfo0, 3, 0, 7, memory).error, ENOTTY);
    EXPECT_EQ(run_ioctl(board, "/dev/ttyS0", 3, 0, 7, memory).error, ENOTTY);
}

TEST_F(Marshal, ReadsWritesAndDeletesVariables)
{
    name("BOOTMEDIA");
    EXPECT_EQ(run_env(0x4501).result, 0);
    EXPECT_EQ(value(), "NAND");
    std::memcpy(memory.bytes.data() + value_at, "SFC", 4);
    EXPECT_EQ(run_env(0x4502).result, 0);
    EXPECT_EQ(board.boot_env("BOOTMEDIA"), "SFC");
    EXPECT_EQ(run_env(0x4505).result, 0);
    EXPECT_EQ(board.boot_env("BOOTMEDIA"), std::nullopt);
    EXPECT_EQ(run_env(0x4501).error, ENOENT);
    EXPECT_EQ(word(memory.bytes, 20), 256u) << "the driver leaves the size as it is";
}

TEST_F(Marshal, SaveNeedsNoBuffers)
{
    env_block.name = env_block.value = 0;
    EXPECT_EQ(run_env(0x4503).result, 0);
    EXPECT_EQ(run_env(0x4501).error, EFAULT);
}

TEST_F(Marshal, PutsARewrittenValueSizeIntoTheCallersBlock)
{
    vboard::Fault fault;
    fault.value_size = 77;
    board.add_fault(fault);
    name("BOOTMEDIA");
    EXPECT_EQ(run_env(0x4501).result, 0);
    EXPECT_EQ(word(memory.bytes, 20), 77u);
    EXPECT_EQ(word(memory.bytes, 16), 256u);
}

TEST_F(Marshal, EnvironmentLengthsAreBounded)
{
    name("BOOTMEDIA");
    env_block.value_size = 64 * 1024 + 1;
    EXPECT_EQ(run_env(0x4501).error, EINVAL);
    env_block = {CallersMemory::base + name_at, CallersMemory::base + value_at, 0xffffffff, 256};
    EXPECT_EQ(run_env(0x4501).error, EINVAL);
}

} // namespace
