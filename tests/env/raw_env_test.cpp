// SPDX-License-Identifier: Apache-2.0
// An environment request as the kernel sees it: the 24-byte block and its two buffers of 256 bytes.
#include "channel/raw_calls.hpp"

#include <moxboot/env.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstring>
#include <fcntl.h>

namespace
{

using test::raw_kernel;
using testing::ElementsAre;
using Bytes = std::vector<std::uint8_t>;

// A buffer of the store: a text, zero to its end.
Bytes buffer(const std::string &text)
{
    Bytes bytes(256, 0);
    memcpy(bytes.data(), text.data(), text.size());
    return bytes;
}

class RawEnv : public testing::Test
{
  protected:
    void SetUp() override
    {
        test::reset_raw_kernel();
        raw_kernel().on_ioctl = [this](unsigned long, void *argument) {
            Bytes block = test::bytes_at(argument, 24);
            std::uint64_t name_at = 0, value_at = 0;
            memcpy(&name_at, &block[0], 8);
            memcpy(&value_at, &block[8], 8);
            memcpy(&name_size, &block[16], 4);
            memcpy(&value_size, &block[20], 4);
            high_halves = sizeof(void *) == 4 ? (name_at | value_at) >> 32 : 0;
            name = test::bytes_at(test::to_pointer(name_at), 256);
            value = test::bytes_at(test::to_pointer(value_at), 256);
            if (!answer.empty())
                memcpy(test::to_pointer(value_at), answer.data(), answer.size());
            memcpy(static_cast<char *>(argument) + 20, &answer_size, 4);
            return result;
        };
    }

    void TearDown() override
    {
        for (const test::RawOpen &opened : raw_kernel().opened)
            EXPECT_TRUE(test::closed(opened));
    }

    void expect_request(unsigned long number, const std::string &wanted_name, const std::string &wanted_value)
    {
        ASSERT_THAT(raw_kernel().requests, ElementsAre(number));
        EXPECT_EQ(name, buffer(wanted_name));
        EXPECT_EQ(value, buffer(wanted_value));
        EXPECT_EQ(name_size, 256u);
        EXPECT_EQ(value_size, 256u);
        EXPECT_EQ(high_halves, 0u) << "a 32-bit address has a high half of zero";
        ASSERT_EQ(raw_kernel().opened.size(), 1u);
        EXPECT_EQ(raw_kernel().opened[0].path, "/dev/envinfo0");
        EXPECT_EQ(raw_kernel().opened[0].flags, O_RDWR);
    }

    std::uint32_t name_size = 0, value_size = 0, answer_size = 256;
    std::uint64_t high_halves = 1;
    Bytes name, value, answer;
    int result = 0;
};

TEST_F(RawEnv, ReadSendsTheNameAndAnEmptyValue)
{
    answer = buffer("stored");
    char out[256] = {};
    EXPECT_EQ(drv_getenv("bootdelay", out), 0u);
    expect_request(0x4501, "bootdelay", "");
    EXPECT_STREQ(out, "stored");
}

TEST_F(RawEnv, BoundedReadSendsTheSame)
{
    answer = buffer("stored");
    char out[7];
    memset(out, '#', sizeof out);
    EXPECT_EQ(drv_getenv_s("bootdelay", out, 5), 0u);
    expect_request(0x4501, "bootdelay", "");
    EXPECT_EQ(std::string(out, 7), std::string("stor\0##", 7)) << "nothing behind the terminator is written";
}

TEST_F(RawEnv, WriteSendsNameAndValue)
{
    EXPECT_EQ(drv_setenv("bootdelay", "3"), 0u);
    expect_request(0x4502, "bootdelay", "3");
}

TEST_F(RawEnv, BoundedWriteSendsTheSame)
{
    EXPECT_EQ(drv_setenv_s("bootdelay", "3", 2), 0u);
    expect_request(0x4502, "bootdelay", "3");
}

TEST_F(RawEnv, LongestNameAndValueFillTheirBuffersUpToTheTerminator)
{
    std::string longest(255, 'n'), text(255, 'v');
    EXPECT_EQ(drv_setenv(longest.c_str(), text.c_str()), 0u);
    expect_request(0x4502, longest, text);
}

TEST_F(RawEnv, DeleteSendsTheNameAndAnEmptyValue)
{
    EXPECT_EQ(drv_clrenv("bootdelay"), 0u);
    expect_request(0x4505, "bootdelay", "");
}

TEST_F(RawEnv, SaveSendsTwoEmptyBuffers)
{
    EXPECT_EQ(drv_saveenv(), 0u);
    expect_request(0x4503, "", "");
}

TEST_F(RawEnv, ResultOfEveryRequestIsHandedOn)
{
    char out[256] = "before";
    for (int given : {-1, 1, 7, -5}) {
        result = given;
        auto wanted = static_cast<std::uint32_t>(given);
        EXPECT_EQ(drv_getenv("name", out), wanted);
        EXPECT_EQ(drv_getenv_s("name", out, 256), wanted);
        EXPECT_EQ(drv_setenv("name", "value"), wanted);
        EXPECT_EQ(drv_setenv_s("name", "value", 6), wanted);
        EXPECT_EQ(drv_clrenv("name"), wanted);
        EXPECT_EQ(drv_saveenv(), wanted);
    }
    EXPECT_STREQ(out, "before");
}

// A driver that writes as many bytes as a buffer has, without a terminator, cannot make the library read on.
TEST_F(RawEnv, ValueThatFillsItsBufferIsReadAs255Characters)
{
    answer = Bytes(256, 'x');
    for (std::uint32_t size : {256u, 257u, 300u, 0xFFFFFFFFu}) {
        answer_size = size;
        char out[256] = {};
        EXPECT_EQ(drv_getenv("name", out), 0u) << size;
        EXPECT_EQ(std::string(out), std::string(255, 'x')) << size;
        char wide[400] = {};
        EXPECT_EQ(drv_getenv_s("name", wide, sizeof wide), 0u) << size;
        EXPECT_EQ(std::string(wide), std::string(255, 'x')) << size;
    }
}

TEST_F(RawEnv, SizeThatTheDriverGivesLimitsTheCopy)
{
    answer = buffer("stored"); // needs 7
    for (std::uint32_t size : {0u, 1u, 4u, 6u}) {
        answer_size = size;
        char out[256] = {};
        EXPECT_EQ(drv_getenv("name", out), 1u) << size;
        EXPECT_EQ(drv_getenv_s("name", out, 256), 1u) << size;
        EXPECT_STREQ(out, "") << size;
    }
    for (std::uint32_t size : {7u, 255u, 256u}) {
        answer_size = size;
        char out[256] = {};
        EXPECT_EQ(drv_getenv("name", out), 0u) << size;
        EXPECT_STREQ(out, "stored") << size;
    }
    answer_size = 4; // enough for what the caller has room for
    char out[4] = {};
    EXPECT_EQ(drv_getenv_s("name", out, 4), 0u);
    EXPECT_STREQ(out, "sto");
}

} // namespace
