// SPDX-License-Identifier: Apache-2.0
// The bytes that come out, for clocks that are known.
#include "trust/entropy_read.hpp"

namespace test
{
namespace
{

class EntropyBytesTest : public EntropyReadTest
{
  protected:
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

// ---- known bytes -----------------------------------------------------------------------------------------

const Bytes standing_bytes = {0xe7, 0x9f, 0x1a, 0xde, 0xa6, 0x34, 0x87, 0x52, 0x9d, 0x13, 0x96, 0x73,
                              0x8d, 0x41, 0xab, 0x18, 0x99, 0xca, 0x63, 0xb4, 0xef, 0xee, 0xcf};
const Bytes zero_bytes = {0x82, 0x29, 0xc7, 0x3d, 0x4d, 0x4b, 0x37, 0x9f, 0x39, 0xb8, 0x71, 0x5f,
                          0x06, 0x5a, 0x05, 0xd2, 0x0f, 0x8f, 0xdb, 0x78, 0x8e, 0x77, 0xdb, 0xd9};

TEST_F(EntropyBytesTest, KnownTimesGiveKnownBytes)
{
    start(1, jittery_clock(1000));
    EXPECT_EQ(take(24), jittery_bytes);
    EXPECT_EQ(entropy_watch.readings, 260u); // four refills
    EXPECT_EQ(entropy_watch.walks, 260u);
}

TEST_F(EntropyBytesTest, TheEndOfASecondDoesNotShowInTheBytes)
{
    start(1, jittery_clock(999990000));
    EXPECT_EQ(take(24), jittery_bytes);
}

TEST_F(EntropyBytesTest, EveryCountGivesTheBeginningOfTheSameBytes)
{
    for (std::size_t count = 1; count <= jittery_bytes.size(); ++count) {
        start(1, jittery_clock(1000));
        EXPECT_EQ(take(count),
                  Bytes(jittery_bytes.begin(), jittery_bytes.begin() + static_cast<long>(count)));
        EXPECT_EQ(entropy_watch.readings, 65 + (count + 7) / 8 * 65) << count;
    }
}

TEST_F(EntropyBytesTest, AStandingClockGivesAFixedSequence)
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

TEST_F(EntropyBytesTest, AClockThatStandsAtZeroGivesAnotherOne)
{
    start(1, [](std::size_t) { return Reading{0}; });
    entropy_watch.walking = false;
    answer_libc("syslog", 0, 0, 1000000);
    EXPECT_EQ(take(zero_bytes.size()), zero_bytes); // not one bit of 1
    EXPECT_EQ(entropy_watch.walks, 4u * 65 * 99);
}

TEST_F(EntropyBytesTest, AStandingClocksLinesGoToTheSystemLogAtInfo)
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

TEST_F(EntropyBytesTest, JitteryClocksGiveWhatTheModelGives)
{
    for (std::uint32_t seed : {1u, 2u, 3u})
        for (std::size_t count : {1, 2, 7, 8, 9, 16, 33, 100, 1000})
            expect_as_modelled(jittery_clock(999000000, seed), count);
}

TEST_F(EntropyBytesTest, RegularClocksGiveWhatTheModelGives)
{
    for (std::uint32_t step : {1u, 250u, 333333337u})
        expect_as_modelled(regular_clock(5000, step), 40);
}

TEST_F(EntropyBytesTest, ClocksThatRepeatThemselvesGiveWhatTheModelGives)
{
    for (unsigned times : {2u, 3u, 4u})
        expect_as_modelled(jittery_clock(999999000, 7, times), 4);
}

TEST_F(EntropyBytesTest, ClocksThatGoWildGiveWhatTheModelGives)
{
    expect_as_modelled(wild_clock(11), 200);
}

TEST_F(EntropyBytesTest, ClocksThatFailNowAndThenGiveWhatTheModelGives)
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

TEST_F(EntropyBytesTest, AClockThatAlwaysFailsIsUsedAllTheSame)
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

TEST_F(EntropyBytesTest, AMebibyteHasNoEqualNeighbours)
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

TEST_F(EntropyBytesTest, AByteThatRepeatsTheFirstPoolsLastOneIsDropped)
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

TEST_F(EntropyBytesTest, OneCallDoesNotGoOnWhereTheOtherEnded)
{
    start(1, jittery_clock(1000));
    EXPECT_EQ(take(3), Bytes(jittery_bytes.begin(), jittery_bytes.begin() + 3));
    start(1, jittery_clock(1000));
    EXPECT_EQ(take(3), Bytes(jittery_bytes.begin(), jittery_bytes.begin() + 3));
}

} // namespace
} // namespace test
