// SPDX-License-Identifier: Apache-2.0
// The bytes that come out, for clocks that are known.
#include "support/from_library.hpp"
#include "trust/entropy_fixture.hpp"

#include <cstring>
#include <malloc.h>

namespace test
{
namespace
{

using Bytes = std::vector<std::uint8_t>;
using testing::Each;

constexpr std::uint8_t untouched = 0xa5;
constexpr std::size_t guard = 16;

class EntropyReadTest : public EntropyTest
{
  protected:
    // What entropy_read() writes, which is no more than it was asked for.
    static Bytes take(std::size_t count)
    {
        Bytes output(count + guard, untouched);
        EXPECT_EQ(entropy_read(output.data(), static_cast<std::uint32_t>(count)), 0u);
        EXPECT_THAT(Bytes(output.end() - guard, output.end()), Each(untouched));
        output.resize(count);
        return output;
    }
    void expect_as_modelled(const Clock &clock, std::size_t count)
    {
        start(1, clock);
        entropy_watch.walking = false;
        EntropyModel model(clock, 1);
        const Bytes expected = model.bytes(count);
        Bytes got;
        EXPECT_EQ(heard([&] { got = take(count); }), logged(model.lines));
        EXPECT_EQ(got, expected);
        EXPECT_EQ(entropy_watch.readings, model.readings);
        EXPECT_EQ(entropy_watch.walks, model.walks);
    }
};

// ---- known bytes: computed once by a program in another language, with that language's SHA-256 -----------

const Bytes jittery_bytes = {0x77, 0xc7, 0x7c, 0x68, 0x0f, 0x2f, 0x92, 0xf8, 0x57, 0xf3, 0xa2, 0x2d,
                             0x39, 0x08, 0x00, 0x09, 0x94, 0x16, 0xd2, 0x4f, 0xe5, 0xf5, 0x60, 0x42};
const Bytes standing_bytes = {0xe7, 0x9f, 0x1a, 0xde, 0xa6, 0x34, 0x87, 0x52, 0x9d, 0x13, 0x96, 0x73,
                              0x8d, 0x41, 0xab, 0x18, 0x99, 0xca, 0x63, 0xb4, 0xef, 0xee, 0xcf};
const Bytes zero_bytes = {0x82, 0x29, 0xc7, 0x3d, 0x4d, 0x4b, 0x37, 0x9f, 0x39, 0xb8, 0x71, 0x5f,
                          0x06, 0x5a, 0x05, 0xd2, 0x0f, 0x8f, 0xdb, 0x78, 0x8e, 0x77, 0xdb, 0xd9};

TEST_F(EntropyReadTest, KnownTimesGiveKnownBytes)
{
    start(1, jittery_clock(1000));
    EXPECT_EQ(take(24), jittery_bytes);
    EXPECT_EQ(entropy_watch.readings, 260u); // four refills
    EXPECT_EQ(entropy_watch.walks, 260u);
}

TEST_F(EntropyReadTest, TheEndOfASecondDoesNotShowInTheBytes)
{
    start(1, jittery_clock(999990000));
    EXPECT_EQ(take(24), jittery_bytes);
}

TEST_F(EntropyReadTest, EveryCountGivesTheBeginningOfTheSameBytes)
{
    for (std::size_t count = 1; count <= jittery_bytes.size(); ++count) {
        start(1, jittery_clock(1000));
        EXPECT_EQ(take(count),
                  Bytes(jittery_bytes.begin(), jittery_bytes.begin() + static_cast<long>(count)));
        EXPECT_EQ(entropy_watch.readings, 65 + (count + 7) / 8 * 65) << count;
    }
}

TEST_F(EntropyReadTest, AStandingClockGivesAFixedSequence)
{
    // One bit of 1, in the first refill's first place, whatever the clock stands at.
    for (std::uint32_t value : {5u, 123456789u, 999999999u}) {
        start(1, [=](std::size_t) { return Reading{value}; });
        entropy_watch.walking = false;
        answer_libc("syslog", 0, 0, 1000000);
        EXPECT_EQ(take(standing_bytes.size()), standing_bytes);
        forget_plans();
        // Two measurements are made once; all others 99 times.
        const std::size_t readings = 1 + 3 + 258 * 99 * 3;
        EXPECT_EQ(entropy_watch.readings, readings);
        EXPECT_EQ(calls("syslog").size(), readings - 1);
    }
}

TEST_F(EntropyReadTest, AClockThatStandsAtZeroGivesAnotherOne)
{
    start(1, [](std::size_t) { return Reading{0}; });
    entropy_watch.walking = false;
    answer_libc("syslog", 0, 0, 1000000);
    EXPECT_EQ(take(zero_bytes.size()), zero_bytes); // not one bit of 1
    EXPECT_EQ(entropy_watch.walks, 4u * 65 * 99);
}

TEST_F(EntropyReadTest, AStandingClocksLinesGoToTheSystemLogAtInfo)
{
    start(5, [](std::size_t) { return Reading{5}; });
    entropy_watch.walking = false;
    answer_libc("syslog", 0, 0, 1000000);
    EXPECT_EQ(heard([] { take(0); }), nothing());
    const auto logged = calls("syslog");
    ASSERT_EQ(logged.size(), (2u + 63 * 99) * 3);
    for (const Call &call : logged) {
        EXPECT_EQ(call.size, 6u);
        EXPECT_EQ(call.path,
                  "get clock time unsuccessfully. ret(0x%x) error(%d) last_time(%d) now_time(%d)\r\n");
    }
}

// ---- against the model -----------------------------------------------------------------------------------

TEST_F(EntropyReadTest, JitteryClocksGiveWhatTheModelGives)
{
    for (std::uint32_t seed : {1u, 2u, 3u})
        for (std::size_t count : {1, 2, 7, 8, 9, 16, 33, 100, 1000})
            expect_as_modelled(jittery_clock(999000000, seed), count);
}

TEST_F(EntropyReadTest, RegularClocksGiveWhatTheModelGives)
{
    for (std::uint32_t step : {1u, 250u, 333333337u})
        expect_as_modelled(regular_clock(5000, step), 40);
}

TEST_F(EntropyReadTest, ClocksThatRepeatThemselvesGiveWhatTheModelGives)
{
    for (unsigned times : {2u, 3u, 4u})
        expect_as_modelled(jittery_clock(999999000, 7, times), 4);
}

TEST_F(EntropyReadTest, ClocksThatGoWildGiveWhatTheModelGives)
{
    expect_as_modelled(wild_clock(11), 200);
}

TEST_F(EntropyReadTest, ClocksThatFailNowAndThenGiveWhatTheModelGives)
{
    expect_as_modelled(
        [jittery = jittery_clock(5000)](std::size_t index) mutable {
            Reading reading = jittery(index);
            if (index % 5 == 2) {
                reading.result = -1;
                reading.error = EINVAL;
            }
            return reading;
        },
        64);
}

TEST_F(EntropyReadTest, AClockThatAlwaysFailsIsUsedAllTheSame)
{
    const Clock failing = [jittery = jittery_clock(5000)](std::size_t index) mutable {
        Reading reading = jittery(index);
        reading.result = -1;
        return reading;
    };
    start(1, failing);
    entropy_watch.walking = false;
    answer_libc("syslog", 0, 0, 1000000);
    EntropyModel model(failing, 1);
    EXPECT_EQ(take(24), model.bytes(24));
    EXPECT_EQ(entropy_watch.readings, model.readings);
    EXPECT_EQ(calls("syslog").size(), model.readings); // each of them
}

TEST_F(EntropyReadTest, AMebibyteHasNoEqualNeighbours)
{
    constexpr std::size_t count = 1 << 20;
    start(1, jittery_clock(1000));
    entropy_watch.walking = false;
    EntropyModel model(jittery_clock(1000), 1);
    const Bytes expected = model.bytes(count);
    ASSERT_GT(model.skipped_within, 1000u); // repetitions there were, of both kinds
    ASSERT_GT(model.skipped_across, 100u);
    const Bytes got = take(count);
    EXPECT_TRUE(got == expected);
    EXPECT_EQ(entropy_watch.readings, model.readings);
    std::size_t equal = 0;
    std::vector<std::size_t> found(256);
    for (std::size_t i = 0; i < count; ++i) {
        equal += i > 0 && got[i] == got[i - 1] ? 1 : 0;
        ++found[got[i]];
    }
    EXPECT_EQ(equal, 0u);
    for (std::size_t times : found) // 4096 of each on average
        EXPECT_TRUE(times > 3700 && times < 4500) << times;
}

TEST_F(EntropyReadTest, AByteThatRepeatsTheFirstPoolsLastOneIsDropped)
{
    for (std::uint32_t seed = 1; seed < 20000; ++seed) {
        EntropyModel model(jittery_clock(1000, seed), 1);
        const Bytes expected = model.bytes(1);
        if (model.skipped_first == 0)
            continue;
        start(1, jittery_clock(1000, seed));
        EXPECT_EQ(take(1), expected);
        return;
    }
    FAIL() << "no such clock";
}

TEST_F(EntropyReadTest, OneCallDoesNotGoOnWhereTheOtherEnded)
{
    start(1, jittery_clock(1000));
    EXPECT_EQ(take(3), Bytes(jittery_bytes.begin(), jittery_bytes.begin() + 3));
    start(1, jittery_clock(1000));
    EXPECT_EQ(take(3), Bytes(jittery_bytes.begin(), jittery_bytes.begin() + 3));
}

// ---- counts ----------------------------------------------------------------------------------------------

TEST_F(EntropyReadTest, WithACountOfZeroTheSourceIsSetUpAllTheSame)
{
    start(1, jittery_clock(1000));
    EXPECT_EQ(heard([] { EXPECT_TRUE(take(0).empty()); }), nothing());
    EXPECT_EQ(entropy_watch.walks, 65u);
    EXPECT_EQ(calls("malloc").size(), 1u);
    start(1, jittery_clock(1000));
    EXPECT_EQ(entropy_read(nullptr, 0), 0u);
    EXPECT_EQ(entropy_watch.walks, 65u);
}

TEST_F(EntropyReadTest, ACountOfOneTakesTwoRefills)
{
    start(1, jittery_clock(1000));
    EXPECT_EQ(take(1), Bytes{0x77});
    EXPECT_EQ(entropy_watch.walks, 130u);
}

TEST_F(EntropyReadTest, NullGetsNothing)
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

TEST_F(EntropyReadTest, TheBufferIsClearedWalkedOverAndFreed)
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

TEST_F(EntropyReadTest, ABufferThatCannotBeClearedIsWalkedOverAllTheSame)
{
    start(1, jittery_clock(1000));
    answer_platform("memset_s", EINVAL);
    EXPECT_EQ(heard([] { EXPECT_EQ(take(24), jittery_bytes); }), nothing());
}

TEST_F(EntropyReadTest, WithoutMemoryNothingIsWritten)
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

TEST_F(EntropyReadTest, TheHandlerPassesItsLastTwoArgumentsOn)
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
