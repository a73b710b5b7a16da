// SPDX-License-Identifier: Apache-2.0
// What the driver sees of a reset notice and of the questions for the reset records, byte for byte.
#include "reset/raw_reset.hpp"

#include <fcntl.h>

namespace test
{
namespace
{

TEST_F(RawReset, ANoticeIsSixtyFourBytes)
{
    reply = words({0x1000003, 0, 256, 4}, 64);
    const MoxResetDate date = {0x07e8, 0x03, 0x01, 0x08, 0x3b, 0x05};
    ASSERT_EQ(MOX_SelfReset(0x10100d9, &date), 0u);
    const Bytes expected = {
        0x03, 0x00, 0x00, 0x01, // the notice
        0x28, 0x00, 0x00, 0x00, // 40 bytes follow
        0x04, 0x00, 0x00, 0x08, // an item without a value
        0x00, 0x00, 0x00, 0x00, //
        0x06, 0x22, 0x00, 0x10, // reason
        0x04, 0x00, 0x00, 0x00, //
        0xd9, 0x00, 0x01, 0x01, //
        0x07, 0x22, 0x00, 0x10, // date
        0x0c, 0x00, 0x00, 0x00, //
        0xe8, 0x07, 0x03, 0x01, 0x08, 0x3b, 0x05, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00,
        0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00,
    };
    ASSERT_EQ(expected.size(), 64u);
    EXPECT_EQ(in, expected);
    EXPECT_EQ(request, 1u);
    EXPECT_EQ(in_length, 64u);
    EXPECT_EQ(out_before, Bytes(64, 0));
    ASSERT_EQ(raw_kernel().opened.size(), 1u);
    EXPECT_EQ(raw_kernel().opened[0].path, "/dev/board0");
    EXPECT_EQ(raw_kernel().opened[0].flags, O_RDONLY | O_NONBLOCK);
}

// The date record may be longer than what is sent of it.
TEST_F(RawReset, ANoticeTakesSevenBytesOfTheDate)
{
    reply = words({0x1000003, 0, 256, 4}, 64);
    MoxResetDate date;
    memset(&date, 0xff, sizeof date);
    ASSERT_EQ(MOX_SelfReset(0xffffffffu, &date), 0u);
    for (std::size_t at = 36; at < 64; ++at)
        EXPECT_EQ(in[at], at < 43 ? 0xff : 0) << at;
}

TEST_F(RawReset, TheReasonIsAskedWithRoomForTheCallersText)
{
    in_shown = 20;
    reply = words({0, 0, 0, 4, 1}, 100); // a status that keeps the cache empty
    char text[300];
    std::uint32_t code = 0;
    for (std::uint32_t length : {72u, 0u, 12u, 300u}) {
        EXPECT_EQ(MOX_ReadResetReason(text, length, &code), 0xffffffffu);
        EXPECT_EQ(request, 3u);
        EXPECT_EQ(in, words({0x1000000, 8, 0x10002209, 0, 0}, 20));
        EXPECT_EQ(in_length, 16u);
        EXPECT_EQ(out_before, Bytes(length + 28, 0));
        EXPECT_EQ(raw_kernel().opened.back().flags, O_RDONLY | O_NONBLOCK);
    }
}

TEST_F(RawReset, TheModeIsAskedWithRoomForEightBytes)
{
    in_shown = 20;
    reply = words({0, 0, 0, 4, 0, 0, 8, 0x04030201, 0x08070605}, 36);
    std::uint8_t mode[8] = {};
    EXPECT_EQ(MOX_ReadResetReasonMode(mode), 0u);
    EXPECT_EQ(Bytes(mode, mode + 8), (Bytes{1, 2, 3, 4, 5, 6, 7, 8}));
    EXPECT_EQ(request, 3u);
    EXPECT_EQ(in, words({0x1000000, 8, 0x10002208, 0, 0}, 20));
    EXPECT_EQ(in_length, 16u);
    EXPECT_EQ(out_before, Bytes(36, 0));
    EXPECT_EQ(raw_kernel().opened.at(0).path, "/dev/board0");
    EXPECT_EQ(raw_kernel().opened.at(0).flags, O_RDONLY | O_NONBLOCK);
}

// Neither header nor type of the reply is looked at, only its status and where the record stands.
TEST_F(RawReset, TheReasonStandsWhereTheReplySays)
{
    in_shown = 20;
    reply = words({7, 7, 7, 4, 0, 7, 12, 0x010100d9, 0x010307e8, 0xff050008}, 100);
    char text[72];
    std::uint32_t code = 0;
    EXPECT_EQ(MOX_ReadResetReason(text, sizeof text, &code), 0u);
    EXPECT_EQ(code, 0x10100d9u);
    EXPECT_STREQ(text, "2024/03/01 08:00:05,0x010100d9,");
}

TEST_F(RawReset, TheDisableFlagIsFourBytesOfOne)
{
    reply = words({0x1000000, 24, 256, 4, 0, 0x1000299f, 4, 0}, 64);
    EXPECT_EQ(MOX_SetSoftActDisableFlag(), 0u);
    EXPECT_EQ(request, 200u);
    EXPECT_EQ(in, words({0x1000000, 12, 0x1000299f, 4, 1}, 64));
    EXPECT_EQ(in_length, 64u);
    EXPECT_EQ(raw_kernel().opened.at(0).path, "/dev/board0");
}

} // namespace
} // namespace test
