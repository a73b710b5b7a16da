// SPDX-License-Identifier: Apache-2.0
// The parts that have no clock: walk, rotation, whitening, state.
#include "trust/entropy_fixture.hpp"
#include "trust/entropy_sha256.hpp"

#include <cstring>

namespace test
{
namespace
{

std::string hex(const std::array<std::uint8_t, 32> &digest)
{
    std::string all;
    for (std::uint8_t byte : digest)
        all += text("%02x", byte);
    return all;
}

TEST(EntropyOwnSha256, GivesTheStandardsExamples)
{
    EXPECT_EQ(hex(own_sha256("abc")), "ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad");
    EXPECT_EQ(hex(own_sha256("")), "e3b0c44298fc1c149afbf4c8996fb92427ae41e4649b934ca495991b7852b855");
}

// ---- entropy_time_consumer -------------------------------------------------------------------------------

TEST(EntropyWalk, ReadsOneByteInEach64AndNoOther)
{
    std::vector<std::uint8_t> buffer(1024);
    for (std::size_t at = 0; at < buffer.size(); ++at) {
        buffer[at] = 0xa5;
        EXPECT_EQ(entropy_time_consumer(buffer.data(), 1024), at % 64 == 0 ? 0xa5u : 0u) << at;
        buffer[at] = 0;
    }
}

TEST(EntropyWalk, GivesTheExclusiveOrOfWhatItReads)
{
    std::vector<std::uint8_t> buffer(ENTROPY_BUFFER_SIZE, 0xff);
    EXPECT_EQ(entropy_time_consumer(buffer.data(), ENTROPY_BUFFER_SIZE), 0u); // 2048 of them
    unsigned all = 0;
    for (std::size_t at = 0; at < buffer.size(); ++at)
        buffer[at] = static_cast<std::uint8_t>(at / 64 * 7 + at % 64);
    for (unsigned line = 0; line < 2048; ++line)
        all ^= line * 7 % 256;
    EXPECT_EQ(entropy_time_consumer(buffer.data(), ENTROPY_BUFFER_SIZE), all);
    buffer[ENTROPY_BUFFER_SIZE - 64] ^= 0x80; // the last line counts
    EXPECT_EQ(entropy_time_consumer(buffer.data(), ENTROPY_BUFFER_SIZE), all ^ 0x80);
}

TEST(EntropyWalk, ReadsFromOffsetZeroWhileBelowTheLength)
{
    // No byte more than the length lies in memory, so that a sanitizer sees one that is read too much.
    const std::map<std::int32_t, std::uint32_t> results = {{1, 1},      {63, 1},      {64, 1},
                                                           {65, 1 ^ 2}, {128, 1 ^ 2}, {129, 1 ^ 2 ^ 4}};
    for (auto [length, result] : results) {
        std::vector<std::uint8_t> buffer(static_cast<std::size_t>(length), 0xee);
        for (std::size_t at = 0; at < buffer.size(); at += 64)
            buffer[at] = static_cast<std::uint8_t>(1 << at / 64);
        EXPECT_EQ(entropy_time_consumer(buffer.data(), length), result) << length;
    }
}

TEST(EntropyWalk, ReadsNothingWithoutALength)
{
    const std::uint8_t byte = 0xff;
    for (std::int32_t length : {0, -1, -64, INT32_MIN}) {
        EXPECT_EQ(entropy_time_consumer(&byte, length), 0u) << length;
        EXPECT_EQ(entropy_time_consumer(nullptr, length), 0u) << length;
    }
    EXPECT_EQ(entropy_time_consumer(nullptr, 64), 0u);
}

// ---- rol64 -----------------------------------------------------------------------------------------------

std::uint64_t moved_bit_by_bit(std::uint64_t value, unsigned count)
{
    std::uint64_t moved = 0;
    for (unsigned bit = 0; bit < 64; ++bit)
        if (value >> bit & 1)
            moved |= std::uint64_t{1} << (bit + count % 64) % 64;
    return moved;
}

TEST(EntropyRotation, TurnsByAnyCountModulo64)
{
    for (std::uint64_t value : {std::uint64_t{0}, std::uint64_t{1}, ~std::uint64_t{0}, std::uint64_t{1} << 63,
                                std::uint64_t{0x0123456789abcdef}, std::uint64_t{0x80000001ffff0000}}) {
        for (std::uint32_t count = 0; count <= 192; ++count)
            EXPECT_EQ(rol64(value, count), moved_bit_by_bit(value, count)) << value << " " << count;
        for (std::uint32_t count : {0x80000000u, 0xffffffc0u, 0xffffffc1u, 0xffffffffu})
            EXPECT_EQ(rol64(value, count), moved_bit_by_bit(value, count)) << value << " " << count;
    }
}

TEST(EntropyRotation, TakesTheTopBitRoundToTheLowest)
{
    EXPECT_EQ(rol64(0x8000000000000000, 1), 1u);
    EXPECT_EQ(rol64(0x0000000080000000, 1), 0x0000000100000000u);
    EXPECT_EQ(rol64(0x0123456789abcdef, 4), 0x123456789abcdef0u);
    EXPECT_EQ(rol64(0x0123456789abcdef, 32), 0x89abcdef01234567u);
}

// ---- entropy_bitmixer ------------------------------------------------------------------------------------

TEST(EntropyMixer, FoldsTheDigestOfTheBytesLowestFirst)
{
    const std::map<std::uint64_t, std::uint64_t> known = {
        {0, 0xc44d9a3c71f39eb0},
        {1, 0x6c8f5bb7988f83c4},
        {0x8000000000000000, 0xf2980aaca18d3ac3},
        {0x0123456789abcdef, 0x58442a32f5813f2f},
        {0xffffffffffffffff, 0xc4560eca82e30947},
    };
    for (auto [value, mixed] : known) {
        EXPECT_EQ(entropy_bitmixer(value), mixed) << value;
        EXPECT_EQ(model_mix(value), mixed) << value;
    }
}

TEST(EntropyMixer, IsAsTheModelSays)
{
    std::uint64_t value = 1;
    for (int i = 0; i < 500; ++i, value = value * 6364136223846793005u + 1442695040888963407u)
        EXPECT_EQ(entropy_bitmixer(value), model_mix(value)) << value;
}

// ---- entropy_init ----------------------------------------------------------------------------------------

TEST(EntropyState, BeginsAsFourZeroWords)
{
    EntropyState states[3];
    std::memset(states, 0xa5, sizeof states);
    entropy_init(&states[1]);
    const std::uint32_t *words = states[1].pool;
    EXPECT_EQ(words[0], 0u);
    EXPECT_EQ(words[1], 0u);
    EXPECT_EQ(states[1].last_time, 0u);
    EXPECT_EQ(states[1].last_delta, 0u);
    for (const EntropyState &other : {states[0], states[2]}) {
        EXPECT_EQ(other.last_delta, 0xa5a5a5a5u);
        EXPECT_EQ(other.pool[0], 0xa5a5a5a5u);
    }
    entropy_init(nullptr);
}

TEST(EntropyState, IsFourWordsWithThePoolFirst)
{
    EXPECT_EQ(sizeof(EntropyState), 16u);
    EXPECT_EQ(offsetof(EntropyState, pool), 0u);
    EXPECT_EQ(offsetof(EntropyState, last_time), 8u);
    EXPECT_EQ(offsetof(EntropyState, last_delta), 12u);
}

} // namespace
} // namespace test
