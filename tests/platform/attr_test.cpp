// SPDX-License-Identifier: Apache-2.0
// The attribute query against a driver of the test's own, and the address descriptors.
#include "platform/calls.hpp"
#include "platform/scratch.hpp"

#include <moxboot/platform.h>

#include <array>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace
{

using testing::ElementsAre;
using Words = std::array<uint32_t, 16>;

constexpr uint32_t item = 0x10002401;

uintptr_t address(const AddrDes &descriptor)
{
    uintptr_t value = 0;
    for (size_t i = descriptor.count; i-- > 0;)
        value = value << 8 | descriptor.addr[i];
    return value;
}

// A reply as the driver gives it: return TLV with code 0, then the item with a 4-byte value.
Words good_reply()
{
    return {0x1000000, 24, 0x100, 4, 0, item, 4, 0xCAFE1234};
}

struct Driver {
    Words reply = good_reply();
    long open_result = 40;
    long ioctl_result = 0;

    std::vector<std::string> calls;
    std::string path;
    int flags = 0;
    unsigned long request = 0;
    Words asked{};
    DrvbootIoctlBlock block{};
    uint32_t status = 1;
    Words reply_before{};

    test::Watch watch{[this](const test::Call &call) { return answer(call); }};

    std::optional<long> answer(const test::Call &call)
    {
        const std::string function = call.function;
        calls.push_back(function);
        if (function == "open") {
            path = call.path;
            flags = call.flags;
            errno = ENODEV;
            return open_result;
        }
        if (function != "ioctl")
            return 0;
        request = call.request;
        memcpy(&block, call.argument, sizeof block);
        memcpy(asked.data(), reinterpret_cast<void *>(address(block.in)), sizeof asked);
        memcpy(&status, reinterpret_cast<void *>(address(block.status)), sizeof status);
        memcpy(reply_before.data(), reinterpret_cast<void *>(address(block.out)), sizeof reply_before);
        memcpy(reinterpret_cast<void *>(address(block.out)), reply.data(), sizeof reply);
        return ioctl_result;
    }
};

uint32_t ask(uint32_t *value, uint32_t size = 4)
{
    return iof_get_attr_value("/dev/chassis0", 0x1000000, item, 0, value, size);
}

TEST(Attribute, AsksTheDeviceWithOneOpenOneIoctlAndOneClose)
{
    uint32_t value = 0;
    uint32_t result = 1;
    Driver driver;
    result = ask(&value);
    EXPECT_EQ(result, 0u);
    EXPECT_EQ(value, 0xCAFE1234u);
    EXPECT_THAT(driver.calls, ElementsAre("open", "ioctl", "close"));
    EXPECT_EQ(driver.path, "/dev/chassis0");
    EXPECT_EQ(driver.flags & ~O_LARGEFILE & ~0100000 & ~0400000, O_RDONLY | O_NONBLOCK);
}

TEST(Attribute, SendsTheRequestInTheDriversLayout)
{
    uint32_t value = 0;
    Driver driver;
    EXPECT_EQ(ask(&value), 0u);
    EXPECT_EQ(driver.request, 3u);
    EXPECT_EQ(driver.block.in_length, 64u);
    EXPECT_EQ(driver.block.out_length, 64u);
    for (const AddrDes *descriptor : {&driver.block.in, &driver.block.out, &driver.block.status})
        EXPECT_EQ(descriptor->count, sizeof(void *));
    EXPECT_EQ(driver.asked, (Words{0x1000000, 8, item, 0}));
    EXPECT_EQ(driver.status, 0u);
    EXPECT_EQ(driver.reply_before, Words{});
}

TEST(Attribute, TheOuterTypeIsTheCallersAndComesBack)
{
    uint32_t value = 7;
    Driver driver;
    driver.reply[0] = 0x2000000;
    EXPECT_EQ(iof_get_attr_value("/dev/chassis0", 0x2000000, item, 0, &value, 4), 0u);
    EXPECT_EQ(driver.asked[0], 0x2000000u);
    EXPECT_EQ(value, 0xCAFE1234u);
}

TEST(Attribute, LengthsThatTheDriverLeavesOpenAreNotChecked)
{
    uint32_t value = 7;
    Driver driver;
    driver.reply[1] = 0;
    driver.reply[6] = 0;
    EXPECT_EQ(ask(&value), 0u);
    EXPECT_EQ(value, 0xCAFE1234u);
}

TEST(Attribute, ReadsAsManyBytesAsAReplyHolds)
{
    std::array<uint32_t, 10> value;
    value.fill(7);
    Driver driver;
    for (uint32_t i = 0; i < 9; ++i)
        driver.reply[7 + i] = 100 + i;
    EXPECT_EQ(ask(value.data(), 36), 0u);
    EXPECT_THAT(value, ElementsAre(100, 101, 102, 103, 104, 105, 106, 107, 108, 7));
}

class WrongReply : public testing::TestWithParam<std::pair<size_t, uint32_t>>
{
};

TEST_P(WrongReply, IsRefusedAndLeavesTheValueUntouched)
{
    const auto [word, wrong] = GetParam();
    uint32_t value = 7;
    Driver driver;
    driver.reply[word] = wrong;
    EXPECT_NE(ask(&value), 0u);
    EXPECT_EQ(value, 7u);
    EXPECT_THAT(driver.calls, ElementsAre("open", "ioctl", "close"));
}

INSTANTIATE_TEST_SUITE_P(Rows, WrongReply,
                         testing::Values(std::pair(0, 0x1000001u),               // outer type
                                         std::pair(0, 0u), std::pair(2, 0x101u), // return TLV type
                                         std::pair(3, 8u),                       // its length
                                         std::pair(4, 1u),                       // the driver's return code
                                         std::pair(4, 0xFFFFFFFFu), std::pair(5, item + 1))); // another item

TEST(Attribute, ARefusedIoctlLeavesTheValueUntouched)
{
    for (const long refusal : {-1L, 1L}) {
        uint32_t value = 7;
        Driver driver;
        driver.ioctl_result = refusal;
        EXPECT_NE(ask(&value), 0u);
        EXPECT_EQ(value, 7u);
        EXPECT_THAT(driver.calls, ElementsAre("open", "ioctl", "close"));
    }
}

TEST(Attribute, ADeviceThatCannotBeOpenedIsNotAsked)
{
    uint32_t value = 7;
    Driver driver;
    driver.open_result = -1;
    EXPECT_NE(ask(&value), 0u);
    EXPECT_EQ(value, 7u);
    EXPECT_THAT(driver.calls, ElementsAre("open"));
}

TEST(Attribute, RefusesBadArgumentsWithoutOpening)
{
    uint32_t value = 7;
    Driver driver;
    EXPECT_NE(iof_get_attr_value(nullptr, 0x1000000, item, 0, &value, 4), 0u);
    EXPECT_NE(iof_get_attr_value("/dev/chassis0", 0x1000000, item, 0, nullptr, 4), 0u);
    EXPECT_NE(iof_get_attr_value("/dev/chassis0", 0x1000000, item, 1, &value, 4), 0u);
    EXPECT_NE(ask(&value, 0), 0u);
    EXPECT_NE(ask(&value, 37), 0u);
    EXPECT_NE(ask(&value, 0xFFFFFFFF), 0u);
    EXPECT_EQ(value, 7u);
    EXPECT_TRUE(driver.calls.empty());
}

TEST(Attribute, ARealFileThatIsNoDeviceIsRefusedAndClosed)
{
    const test::Scratch scratch;
    test::write_file(scratch.path("file"), "text");
    const auto before = test::open_descriptors();
    uint32_t value = 7;
    EXPECT_NE(iof_get_attr_value(scratch.path("file").c_str(), 0x1000000, item, 0, &value, 4), 0u);
    EXPECT_NE(iof_get_attr_value(scratch.path("none").c_str(), 0x1000000, item, 0, &value, 4), 0u);
    EXPECT_EQ(value, 7u);
    EXPECT_EQ(test::open_descriptors(), before);
}

TEST(AddressDescriptor, HoldsTheAddressLeastSignificantByteFirst)
{
    AddrDes descriptor;
    memset(&descriptor, 0xEE, sizeof descriptor);
    Iof_SetAddrToAddrDes(reinterpret_cast<void *>(uintptr_t{0x12345678}), &descriptor);
    EXPECT_THAT(descriptor.addr, ElementsAre(0x78, 0x56, 0x34, 0x12, 0, 0, 0, 0));
    EXPECT_EQ(descriptor.count, sizeof(void *));
}

TEST(AddressDescriptor, HoldsEveryByteOfAPointer)
{
    AddrDes descriptor;
    memset(&descriptor, 0xEE, sizeof descriptor);
    Iof_SetAddrToAddrDes(reinterpret_cast<void *>(UINTPTR_MAX - 1), &descriptor);
    EXPECT_EQ(address(descriptor), UINTPTR_MAX - 1);
    for (size_t i = sizeof(void *); i < 8; ++i)
        EXPECT_EQ(descriptor.addr[i], 0) << "byte " << i;
    EXPECT_EQ(descriptor.addr[0], 0xFE);
}

TEST(AddressDescriptor, ANullAddressIsAnAddressToo)
{
    AddrDes descriptor;
    memset(&descriptor, 0xEE, sizeof descriptor);
    Iof_SetAddrToAddrDes(nullptr, &descriptor);
    EXPECT_THAT(descriptor.addr, testing::Each(0));
    EXPECT_EQ(descriptor.count, sizeof(void *));
    Iof_SetAddrToAddrDes(&descriptor, nullptr); // nothing to write to
}

} // namespace
