// SPDX-License-Identifier: Apache-2.0
// One measurement.
#include "trust/entropy_fixture.hpp"

namespace test
{
namespace
{

constexpr std::uint32_t second = 1000000000;
constexpr int size = 128;

class EntropyMeasureTest : public EntropyTest
{
  protected:
    EntropyState state = {{0x11223344, 0x55667788}, 0, 0};
    std::uint8_t buffer[size] = {};

    void begin(std::uint32_t time, std::uint32_t delta, std::vector<std::uint32_t> times)
    {
        start(times.at(0) + 77777,
              [=](std::size_t index) { return Reading{index < times.size() ? times[index] : 424242}; });
        entropy_watch.noting = true;
        state.last_time = time;
        state.last_delta = delta;
    }
    std::uint32_t measure()
    {
        return entropy_jitter_measure(&state, buffer, size);
    }
    void expect_state(std::uint32_t time, std::uint32_t delta, std::size_t measured)
    {
        EXPECT_EQ(state.last_time, time);
        EXPECT_EQ(state.last_delta, delta);
        std::string steps;
        for (std::size_t i = 0; i < measured; ++i)
            steps += "wc";
        EXPECT_EQ(entropy_watch.steps, steps);
        EXPECT_EQ(state.pool[0], 0x11223344u);
        EXPECT_EQ(state.pool[1], 0x55667788u);
    }
};

TEST_F(EntropyMeasureTest, ALongerTimeIsZeroAShorterOne)
{
    begin(1000, 100, {1101});
    EXPECT_EQ(measure(), 0u);
    expect_state(1101, 101, 1);
    begin(1000, 100, {1099});
    EXPECT_EQ(measure(), 1u);
    expect_state(1099, 99, 1);
}

TEST_F(EntropyMeasureTest, TheBitIsOneWordNotTheDifference)
{
    begin(0, 0, {500});
    EXPECT_EQ(measure(), 0u);
    begin(500, 0xffffffff, {501});
    EXPECT_EQ(measure(), 0u); // 2 by wrapping
    expect_state(501, 1, 1);
    begin(500, 0x80000001, {501});
    EXPECT_EQ(measure(), 1u); // exactly half way round
    begin(500, 0x80000002, {501});
    EXPECT_EQ(measure(), 0u);
}

TEST_F(EntropyMeasureTest, AnEqualTimeIsMeasuredAgain)
{
    begin(1000, 100, {1100, 1200, 1300, 1399});
    EXPECT_EQ(measure(), 1u);
    expect_state(1399, 99, 4);
}

TEST_F(EntropyMeasureTest, NinetyNineEqualTimesAreZero)
{
    std::vector<std::uint32_t> times;
    for (std::uint32_t i = 1; i <= 99; ++i)
        times.push_back(1000 + 100 * i);
    times.push_back(10901); // never looked at
    begin(1000, 100, times);
    EXPECT_EQ(measure(), 0u);
    expect_state(10900, 100, 99);
}

TEST_F(EntropyMeasureTest, TheNinetyNinthMayStillDiffer)
{
    std::vector<std::uint32_t> times;
    for (std::uint32_t i = 1; i <= 98; ++i)
        times.push_back(1000 + 100 * i);
    times.push_back(10899);
    begin(1000, 100, times);
    EXPECT_EQ(measure(), 1u);
    expect_state(10899, 99, 99);
}

TEST_F(EntropyMeasureTest, TheEndOfASecondDoesNotShow)
{
    begin(second - 60, 100, {40, 141});
    EXPECT_EQ(measure(), 0u); // 100 again, then 101
    expect_state(141, 101, 2);
    begin(second - 1, 2, {0});
    EXPECT_EQ(measure(), 1u);
    expect_state(0, 1, 1);
}

TEST_F(EntropyMeasureTest, StandingStillIsNoEndOfASecond)
{
    begin(500, 300, {500});
    EXPECT_EQ(measure(), 1u);
    expect_state(500, 0, 1);
}

TEST_F(EntropyMeasureTest, StrangeTimesWrapIn32Bits)
{
    begin(0xfffffff0, 5, {3});
    EXPECT_EQ(measure(), 0u);
    expect_state(3, 19 + second, 1);
    begin(0, 7, {0xffffffff});
    EXPECT_EQ(measure(), 1u); // 0xfffffff8 more
    expect_state(0xffffffff, 0xffffffff, 1);
}

TEST_F(EntropyMeasureTest, AFreshStateMeasuresFromZero)
{
    begin(0, 0, {1});
    EXPECT_EQ(measure(), 0u);
    expect_state(1, 1, 1);
}

TEST_F(EntropyMeasureTest, OnAStandingClockEveryReadingIsTold)
{
    start(4711, [](std::size_t) { return Reading{4711, 0, 3}; });
    const Said line = stalled(0, 3, 4711, 4711);
    std::vector<std::string> lines(297, line.syslog.at(0).substr(direct_mark.size()));
    const Said three = line + line + line;
    state = {};
    EXPECT_EQ(heard([&] { EXPECT_EQ(measure(), 0u); }), three); // 4711 ns are more than none
    EXPECT_EQ(heard([&] { EXPECT_EQ(measure(), 1u); }), three); // none are fewer
    EXPECT_EQ(entropy_watch.readings, 6u);
    EXPECT_EQ(heard([&] { EXPECT_EQ(measure(), 0u); }), logged(lines));
    EXPECT_EQ(entropy_watch.readings, 6u + 297u);
    EXPECT_EQ(entropy_watch.walks, 2u + 99u);
    EXPECT_EQ(state.last_time, 4711u);
    EXPECT_EQ(state.last_delta, 0u);
}

TEST_F(EntropyMeasureTest, AnyClockIsMeasuredAsTheModelSays)
{
    for (const Clock &clock : {jittery_clock(second - 3000), jittery_clock(5, 99, 2), jittery_clock(5, 99, 4),
                               regular_clock(123, 250), regular_clock(7, 333333337), wild_clock(3)}) {
        start(2222, clock);
        EntropyModel model(clock, 2222);
        state = {};
        const Said said = heard([&] {
            for (int i = 0; i < 40; ++i) {
                EXPECT_EQ(measure(), model.measurement()) << i;
                EXPECT_EQ(state.last_time, model.time) << i;
                EXPECT_EQ(state.last_delta, model.delta) << i;
            }
        });
        EXPECT_EQ(said, logged(model.lines));
        EXPECT_EQ(entropy_watch.readings, model.readings);
        EXPECT_EQ(entropy_watch.walks, model.walks);
    }
}

TEST_F(EntropyMeasureTest, TheBufferAndItsLengthAreHandedToTheWalk)
{
    begin(0, 0, {1, 2, 3});
    unsigned walks = 0;
    entropy_watch.on_walk = [&](const std::uint8_t *walked, std::int32_t length) {
        ++walks;
        EXPECT_EQ(walked, buffer);
        EXPECT_EQ(length, walks == 1 ? size : -5);
    };
    measure();
    entropy_jitter_measure(&state, buffer, -5);
    EXPECT_GE(walks, 2u);
}

TEST_F(EntropyMeasureTest, ANullStateMeasuresNothing)
{
    begin(0, 0, {1});
    EXPECT_EQ(entropy_jitter_measure(nullptr, buffer, size), 0u);
    EXPECT_EQ(entropy_harvest(nullptr, buffer, size), 0u);
    EXPECT_EQ(entropy_watch.steps, "");
}

} // namespace
} // namespace test
