// SPDX-License-Identifier: Apache-2.0
// What one call does besides its bytes: how much, in which buffer, and without memory.
#include "support/from_library.hpp"
#include "trust/entropy_read.hpp"

#include <cstring>
#include <malloc.h>

namespace test
{
namespace
{

using testing::Each;
using EntropyCallTest = EntropyReadTest;

// ---- counts ----------------------------------------------------------------------------------------------

TEST_F(EntropyCallTest, WithACountOfZeroTheSourceIsSetUpAllTheSame)
{
    start(1, jittery_clock(1000));
    EXPECT_EQ(heard([] { EXPECT_TRUE(take(0).empty()); }), nothing());
    EXPECT_EQ(entropy_watch.walks, 65u);
    EXPECT_EQ(calls("malloc").size(), 1u);
    start(1, jittery_clock(1000));
    EXPECT_EQ(entropy_read(nullptr, 0), 0u);
    EXPECT_EQ(entropy_watch.walks, 65u);
}

TEST_F(EntropyCallTest, ACountOfOneTakesTwoRefills)
{
    start(1, jittery_clock(1000));
    EXPECT_EQ(take(1), Bytes{0x77});
    EXPECT_EQ(entropy_watch.walks, 130u);
}

TEST_F(EntropyCallTest, NullGetsNothing)
{
    start(1, jittery_clock(1000));
    EXPECT_EQ(heard([] {
                  EXPECT_EQ(entropy_read(nullptr, 1), 1u);
                  EXPECT_EQ(entropy_read(nullptr, 0xffffffff), 1u);
                  EXPECT_EQ(entropy_read_wrapper(0, 0, nullptr, 5), 1u);
              }),
              nothing());
    EXPECT_EQ(entropy_watch.readings, 0u);
}

// ---- the buffer ------------------------------------------------------------------------------------------

// What a block of the heap may hold when the library gets it.
void dirty(void *block, const void *caller)
{
    if (from_library(caller) && malloc_usable_size(block) >= 0x20000)
        std::memset(block, untouched, 0x20000);
    on_any_block(block, caller);
}

TEST_F(EntropyCallTest, TheBufferIsClearedWalkedOverAndFreed)
{
    vboard::set_block_hook(dirty);
    for (std::size_t count : {0, 1, 5, 8, 20}) {
        start(1, jittery_clock(1000));
        const std::uint8_t *buffer = nullptr;
        entropy_watch.on_walk = [&](const std::uint8_t *walked, std::int32_t length) {
            ASSERT_EQ(length, 0x20000);
            if (buffer == nullptr) {
                buffer = walked;
                EXPECT_TRUE(
                    std::all_of(walked, walked + length, [](std::uint8_t byte) { return byte == 0; }));
            }
            EXPECT_EQ(walked, buffer);
        };
        take(count);
        const auto made = calls("malloc");
        ASSERT_EQ(made.size(), 1u);
        EXPECT_EQ(made[0].size, 0x20000u);
        EXPECT_EQ(calls("free").size(), 1u);
        EXPECT_EQ(blocks_held(), 0u);
    }
    vboard::set_block_hook(on_any_block);
}

TEST_F(EntropyCallTest, ABufferThatCannotBeClearedIsWalkedOverAllTheSame)
{
    start(1, jittery_clock(1000));
    answer_platform("memset_s", EINVAL);
    EXPECT_EQ(heard([] { EXPECT_EQ(take(24), jittery_bytes); }), nothing());
}

TEST_F(EntropyCallTest, WithoutMemoryNothingIsWritten)
{
    for (std::uint32_t count : {0u, 1u, 16u}) {
        start(1, jittery_clock(1000));
        fail_libc("malloc", ENOMEM);
        Bytes output(32, untouched);
        EXPECT_EQ(heard([&] { EXPECT_EQ(entropy_read(output.data(), count), 1u); }),
                  failure("[drvboot] GetRandom by RAM, malloc unsuccessfully.\n\n"));
        EXPECT_THAT(output, Each(untouched));
        EXPECT_EQ(entropy_watch.readings, 0u);
        EXPECT_EQ(entropy_watch.walks, 0u);
    }
}

// ---- entropy_read_wrapper --------------------------------------------------------------------------------

TEST_F(EntropyCallTest, TheHandlerPassesItsLastTwoArgumentsOn)
{
    for (std::uint32_t ignored : {0u, 1u, 24u, 0xffffffffu}) {
        start(1, jittery_clock(1000));
        Bytes output(12, untouched);
        EXPECT_EQ(entropy_read_wrapper(ignored, ~ignored, output.data(), 9), 0u);
        EXPECT_EQ(Bytes(output.begin(), output.begin() + 9),
                  Bytes(jittery_bytes.begin(), jittery_bytes.begin() + 9));
        EXPECT_THAT(Bytes(output.begin() + 9, output.end()), Each(untouched));
    }
    Bytes output(4, untouched);
    EXPECT_EQ(entropy_read_wrapper(0, 0, output.data(), 0), 0u);
    fail_libc("malloc", ENOMEM);
    EXPECT_EQ(heard([&] { EXPECT_EQ(entropy_read_wrapper(0, 0, output.data(), 4), 1u); }),
              failure("[drvboot] GetRandom by RAM, malloc unsuccessfully.\n\n"));
    EXPECT_THAT(output, Each(untouched));
}

} // namespace
} // namespace test
