// SPDX-License-Identifier: Apache-2.0
#include "platform/calls.hpp"

#include <moxboot/platform.h>

#include <cstdint>
#include <cstring>
#include <ctime>
#include <gtest/gtest.h>

namespace
{

uint64_t ticks()
{
    uint32_t low = 0;
    uint32_t high = 0;
    EXPECT_EQ(iof_timer_get_base_64bit(&low, &high), 0u);
    return uint64_t{high} << 32 | low;
}

bool is_clock(const test::Call &call)
{
    return strcmp(call.function, "clock_gettime") == 0;
}

test::Watch broken_clock()
{
    return test::Watch(
        [](const test::Call &call) { return is_clock(call) ? std::optional<long>(-1) : std::nullopt; });
}

TEST(Timer, CountsNanosecondsOfTheMonotonicClock)
{
    timespec before{};
    timespec after{};
    ASSERT_EQ(clock_gettime(CLOCK_MONOTONIC, &before), 0);
    const uint64_t now = ticks();
    ASSERT_EQ(clock_gettime(CLOCK_MONOTONIC, &after), 0);
    const auto count = [](const timespec &time) {
        return static_cast<uint64_t>(time.tv_sec) * 1'000'000'000u + static_cast<uint64_t>(time.tv_nsec);
    };
    EXPECT_GE(now, count(before));
    EXPECT_LE(now, count(after));
    EXPECT_EQ(iof_timer_get_freq(), 1'000'000'000u);
}

TEST(Timer, SplitsTheCountIntoItsHalves)
{
    // Both ABIs: the 64-bit record has 64-bit fields everywhere.
    test::Watch watch([](const test::Call &call) -> std::optional<long> {
        if (!is_clock(call))
            return std::nullopt;
        const int64_t seconds = 4'000'000'000;
        const int64_t nanoseconds = 123'456'789;
        memcpy(call.argument, &seconds, sizeof seconds);
        memcpy(static_cast<char *>(call.argument) + sizeof seconds, &nanoseconds, sizeof nanoseconds);
        return 0;
    });
    EXPECT_EQ(ticks(), 4'000'000'000'123'456'789u);
}

TEST(Timer, NeverRunsBackwards)
{
    uint64_t last = ticks();
    for (int i = 0; i < 1000; ++i) {
        const uint64_t now = ticks();
        ASSERT_GE(now, last);
        last = now;
    }
}

TEST(Timer, AnUnusableClockLeavesTheHalvesUntouched)
{
    const auto broken = broken_clock();
    uint32_t low = 5;
    uint32_t high = 6;
    EXPECT_NE(iof_timer_get_base_64bit(&low, &high), 0u);
    EXPECT_EQ(low, 5u);
    EXPECT_EQ(high, 6u);
    EXPECT_EQ(iof_timer_get_freq(), 0u);
}

TEST(Timer, RefusesNull)
{
    uint32_t half = 5;
    EXPECT_NE(iof_timer_get_base_64bit(nullptr, &half), 0u);
    EXPECT_NE(iof_timer_get_base_64bit(&half, nullptr), 0u);
    EXPECT_EQ(half, 5u);
}

} // namespace
