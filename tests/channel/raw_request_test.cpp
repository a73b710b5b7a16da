// SPDX-License-Identifier: Apache-2.0
// A driver request as the kernel sees it: the 44-byte block, the two buffers of 64 bytes, the open flags.
#include "channel/raw_calls.hpp"

#include <moxboot/channel.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <utility>

namespace
{

using test::raw_kernel;
using testing::ElementsAre;
using Bytes = std::vector<std::uint8_t>;

std::uint32_t word_at(const Bytes &bytes, std::size_t offset)
{
    std::uint32_t word = 0;
    memcpy(&word, bytes.data() + offset, sizeof word);
    return word;
}

// The buffer address that lies at `offset` of the block, put together byte by byte.
void *address_at(const Bytes &block, std::size_t offset)
{
    std::uint64_t address = 0;
    for (std::size_t i = 8; i-- > 0;)
        address = address << 8 | block[offset + i];
    return test::to_pointer(address);
}

Bytes words(const std::vector<std::uint32_t> &values)
{
    Bytes bytes(64, 0);
    memcpy(bytes.data(), values.data(), values.size() * sizeof(std::uint32_t));
    return bytes;
}

class RawRequest : public testing::Test
{
  protected:
    void SetUp() override
    {
        test::reset_raw_kernel();
        raw_kernel().on_ioctl = [this](unsigned long, void *argument) {
            block = test::bytes_at(argument, 44);
            in = test::bytes_at(address_at(block, 0), 64);
            out_before = test::bytes_at(address_at(block, 16), 64);
            status = word_at(test::bytes_at(address_at(block, 32), 4), 0);
            memcpy(address_at(block, 16), reply.data(), reply.size());
            return result;
        };
    }

    void TearDown() override
    {
        for (const test::RawOpen &opened : raw_kernel().opened)
            EXPECT_TRUE(test::closed(opened)) << opened.path;
    }

    // A good reply: 28 bytes of headers, then the value.
    void reply_with(std::uint32_t item, std::uint32_t value)
    {
        reply = words({0x1000000, 24, 0x100, 4, 0, item, 4, value});
    }

    Bytes block, in, out_before;
    std::uint32_t status = 1;
    Bytes reply = Bytes(64, 0);
    int result = 0;
};

TEST_F(RawRequest, BlockHoldsThreeDescriptorsAndTwoLengthsOf64)
{
    reply_with(0x10002901, 7);
    std::uint32_t value = 0;
    ASSERT_EQ(drvboot_get_value_by_tlv("/dev/board0", 0x10002901, &value), 0u);
    for (std::size_t offset : {0u, 16u, 32u}) {
        EXPECT_EQ(word_at(block, offset + 8), sizeof(void *)) << "address bytes at " << offset;
        for (std::size_t i = sizeof(void *); i < 8; ++i)
            EXPECT_EQ(block[offset + i], 0) << "byte above the address at " << offset;
    }
    EXPECT_EQ(word_at(block, 12), 64u);
    EXPECT_EQ(word_at(block, 28), 64u);
    EXPECT_NE(address_at(block, 0), address_at(block, 16));
    EXPECT_EQ(status, 0u);
}

TEST_F(RawRequest, GetSendsItsItemAndNothingElse)
{
    reply_with(0x10002901, 0xcafe);
    std::uint32_t value = 0;
    ASSERT_EQ(drvboot_get_value_by_tlv("/dev/board0", 0x10002901, &value), 0u);
    EXPECT_EQ(value, 0xcafeu);
    EXPECT_THAT(raw_kernel().requests, ElementsAre(3ul));
    EXPECT_EQ(in, words({0x1000000, 8, 0x10002901, 0}));
    EXPECT_EQ(out_before, Bytes(64, 0));
}

TEST_F(RawRequest, SetSendsItsItemWithFourBytesOfValue)
{
    reply_with(0x1000299f, 0);
    ASSERT_EQ(drvboot_set_value_by_tlv("/dev/board0", 0x1000299f, 0x01020304), 0u);
    EXPECT_THAT(raw_kernel().requests, ElementsAre(200ul));
    EXPECT_EQ(in, words({0x1000000, 12, 0x1000299f, 4, 0x01020304}));
    EXPECT_EQ(out_before, Bytes(64, 0));
}

TEST_F(RawRequest, SetCarriesUpTo48BytesOfData)
{
    for (std::uint32_t length : {0u, 1u, 47u, 48u}) {
        std::array<std::uint8_t, 48> data;
        data.fill(0xa5);
        std::uint32_t value = 0;
        DrvbootCmdRequest request = {};
        strcpy(request.device, "/dev/chassis0");
        request.cmd = 200;
        request.l1type = 0x1000000;
        request.l2type = 0x10002907;
        request.data = data.data();
        request.data_length = length;
        request.result = &value;
        reply_with(0x10002907, 9);
        EXPECT_EQ(drvboot_ioctrl(&request), 0u) << length;
        EXPECT_EQ(value, 9u);
        Bytes expected = words({0x1000000, 8 + length, 0x10002907, length});
        std::fill_n(expected.begin() + 16, length, std::uint8_t{0xa5});
        EXPECT_EQ(in, expected) << length;
    }
}

TEST_F(RawRequest, CallersOwnOuterTypeIsNotSent)
{
    std::uint32_t value = 0;
    DrvbootCmdRequest request = {};
    strcpy(request.device, "/dev/board0");
    request.cmd = 3;
    request.l1type = 0x77777777;
    request.l2type = 5;
    request.result = &value;
    reply_with(5, 1);
    EXPECT_EQ(drvboot_ioctrl(&request), 0u);
    EXPECT_EQ(word_at(in, 0), 0x1000000u);
    EXPECT_EQ(request.l1type, 0x77777777u) << "the caller's record stays as it is";
}

TEST_F(RawRequest, GetIgnoresDataInTheRequest)
{
    std::uint32_t data = 0xdddddddd;
    std::uint32_t value = 0;
    DrvbootCmdRequest request = {};
    strcpy(request.device, "/dev/board0");
    request.cmd = 3;
    request.l2type = 5;
    request.data = &data;
    request.data_length = sizeof data;
    request.result = &value;
    reply_with(5, 1);
    EXPECT_EQ(drvboot_ioctrl(&request), 0u);
    EXPECT_EQ(in, words({0x1000000, 8, 5, 0}));
}

TEST_F(RawRequest, LengthsInTheReplyAreNotChecked)
{
    reply = words({0x1000000, 0xffffffff, 0x100, 4, 0, 0x10002901, 0xffffffff, 0x12345678});
    std::uint32_t value = 0;
    EXPECT_EQ(drvboot_get_value_by_tlv("/dev/board0", 0x10002901, &value), 0u);
    EXPECT_EQ(value, 0x12345678u);
}

TEST_F(RawRequest, DeviceIsOpenedReadOnlyAndNonBlocking)
{
    reply_with(5, 1);
    std::uint32_t value = 0;
    ASSERT_EQ(drvboot_get_value_by_tlv("/dev/slot7", 5, &value), 0u);
    ASSERT_EQ(raw_kernel().opened.size(), 1u);
    EXPECT_EQ(raw_kernel().opened[0].path, "/dev/slot7");
    EXPECT_EQ(raw_kernel().opened[0].flags, O_RDONLY | O_NONBLOCK);
}

TEST_F(RawRequest, DeviceIsClosedWhenTheDriverFails)
{
    for (int answer : {-1, 1, 5}) {
        reply_with(5, 1);
        result = answer;
        std::uint32_t value = 42;
        EXPECT_EQ(drvboot_get_value_by_tlv("/dev/board0", 5, &value), 10000u) << answer;
        EXPECT_EQ(value, 42u);
        EXPECT_TRUE(test::closed(raw_kernel().opened.back()));
    }
}

TEST_F(RawRequest, PathOf19CharactersReachesTheKernelWhole)
{
    const std::string path = "/dev/board0123456ab";
    ASSERT_EQ(path.size(), 19u);
    reply_with(5, 6);
    std::uint32_t value = 0;
    EXPECT_EQ(drvboot_get_value_by_tlv(path.c_str(), 5, &value), 0u);
    EXPECT_EQ(value, 6u);
    EXPECT_EQ(drvboot_set_value_by_tlv(path.c_str(), 5, 6), 0u);
    ASSERT_EQ(raw_kernel().opened.size(), 2u);
    EXPECT_EQ(raw_kernel().opened[0].path, path);
    EXPECT_EQ(raw_kernel().opened[1].path, path);
}

TEST_F(RawRequest, DevicePathWithoutTerminatorIsRefusedBeforeItIsOpened)
{
    std::uint32_t value = 42;
    DrvbootCmdRequest request = {};
    memcpy(request.device, "/dev/board0123456abc", 20);
    request.cmd = 3;
    request.l2type = 5;
    request.result = &value;
    EXPECT_EQ(drvboot_ioctrl(&request), 0xFFFFFFFFu);
    EXPECT_TRUE(raw_kernel().opened.empty());
    EXPECT_TRUE(raw_kernel().requests.empty());
    EXPECT_EQ(value, 42u);
}

TEST_F(RawRequest, BoardDescriptorIsReadOnlyAndNonBlockingAndTheCallersToClose)
{
    int fd = MOX_GetBoardFd();
    ASSERT_EQ(raw_kernel().opened.size(), 1u);
    EXPECT_EQ(raw_kernel().opened[0].path, "/dev/board0");
    EXPECT_EQ(raw_kernel().opened[0].flags, O_RDONLY | O_NONBLOCK);
    EXPECT_EQ(fd, raw_kernel().opened[0].fd);
    EXPECT_FALSE(test::closed(raw_kernel().opened[0]));
    close(fd);
}

TEST_F(RawRequest, ConsoleIsOpenedForBothWaysWithoutBecomingTheTerminal)
{
    char text[] = "x";
    EXPECT_EQ(MOX_ConsolePrint(text, 1), 0);
    ASSERT_EQ(raw_kernel().opened.size(), 1u);
    EXPECT_EQ(raw_kernel().opened[0].path, "/dev/ttyS0");
    EXPECT_EQ(raw_kernel().opened[0].flags, O_RDWR | O_NOCTTY);
}

// ---- the delay -------------------------------------------------------------------------------------------

using Timeouts = std::vector<std::pair<std::int64_t, std::int64_t>>;

TEST_F(RawRequest, DelayWaitsOnNoDescriptorForSecondsAndMicroseconds)
{
    for (auto [ms, timeout] : std::vector<std::pair<std::uint32_t, std::pair<std::int64_t, std::int64_t>>>{
             {0, {0, 0}},
             {1, {0, 1000}},
             {999, {0, 999000}},
             {1000, {1, 0}},
             {1500, {1, 500000}},
             {0xFFFFFFFF, {4294967, 295000}}}) {
        Timeouts timeouts;
        raw_kernel().on_select = [&](int count, bool any_set, std::int64_t &seconds,
                                     std::int64_t &microseconds) {
            EXPECT_EQ(count, 1);
            EXPECT_FALSE(any_set);
            timeouts.emplace_back(seconds, microseconds);
            return 0;
        };
        drvboot_taskdelay(ms);
        EXPECT_EQ(timeouts, Timeouts{timeout}) << ms;
    }
}

TEST_F(RawRequest, InterruptedDelayGoesOnWithTheTimeThatTheKernelLeft)
{
    Timeouts timeouts;
    raw_kernel().on_select = [&](int, bool, std::int64_t &seconds, std::int64_t &microseconds) {
        timeouts.emplace_back(seconds, microseconds);
        if (timeouts.size() == 3)
            return 0;
        seconds = 0;
        microseconds /= 10;
        errno = EINTR;
        return -1;
    };
    EXPECT_EQ(drvboot_taskdelay(1500), 0);
    EXPECT_EQ(timeouts, (Timeouts{{1, 500000}, {0, 50000}, {0, 5000}}));
}

TEST_F(RawRequest, DelayEndsAtAnyOtherError)
{
    unsigned count = 0;
    raw_kernel().on_select = [&](int, bool, std::int64_t &, std::int64_t &) {
        ++count;
        errno = EINVAL;
        return -1;
    };
    drvboot_taskdelay(1500);
    EXPECT_EQ(count, 1u);
}

} // namespace
