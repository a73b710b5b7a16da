// SPDX-License-Identifier: Apache-2.0
// The 65 measurements of a refill, and the walk that each of them makes.
#include "trust/entropy_fixture.hpp"

#include <csignal>
#include <sys/mman.h>
#include <unistd.h>

namespace test
{
namespace
{

constexpr int size = 128;

class EntropyHarvestTest : public EntropyTest
{
  protected:
    EntropyState state = {};
    std::uint8_t buffer[size] = {};
};

// ---- entropy_harvest -------------------------------------------------------------------------------------

TEST_F(EntropyHarvestTest, ARefillIsAWarmUpAndSixtyFourMeasurements)
{
    start(1, jittery_clock(1000));
    entropy_watch.noting = true;
    EntropyModel model(jittery_clock(1000), 1);
    state = {{0x9abcdef0, 0x12345678}, 0, 0};
    model.pool = 0x123456789abcdef0;
    for (int round = 0; round < 5; ++round) {
        entropy_watch.steps.clear();
        model.refill();
        EXPECT_EQ(entropy_harvest(&state, buffer, size), static_cast<std::uint32_t>(model.pool));
        EXPECT_EQ(state.pool[0], static_cast<std::uint32_t>(model.pool));
        EXPECT_EQ(state.pool[1], static_cast<std::uint32_t>(model.pool >> 32));
        EXPECT_EQ(state.last_time, model.time);
        EXPECT_EQ(state.last_delta, model.delta);
    }
    EXPECT_EQ(entropy_watch.readings, model.readings);
    EXPECT_GE(entropy_watch.readings, 5 * 65u);
}

TEST_F(EntropyHarvestTest, TheWarmUpsBitIsThrownAway)
{
    // 65 times that get longer and longer: 65 bits of 0. Only what the warm-up starts from differs.
    const Clock clock = [](std::size_t index) {
        const auto i = static_cast<std::uint32_t>(index);
        return Reading{10000 + i * 100 + i * (i + 1) / 2};
    };
    const std::uint64_t pool = 0x5566778811223344;
    for (std::uint32_t delta : {0u, 99u, 99999u}) { // the warm-up gives 0, 0 and 1
        start(1, clock);
        state = {{0x11223344, 0x55667788}, 9900, delta};
        entropy_watch.noting = true;
        EXPECT_EQ(entropy_harvest(&state, buffer, size), static_cast<std::uint32_t>(model_mix(pool)));
        EXPECT_EQ(state.pool[1], static_cast<std::uint32_t>(model_mix(pool) >> 32));
        EXPECT_EQ(entropy_watch.readings, 65u);
        EXPECT_EQ(entropy_watch.steps.size(), 130u);
    }
}

TEST_F(EntropyHarvestTest, EachBitEntersLowAndIsTurnedOn)
{
    // One shorter time among ever longer ones: one bit of 1, at each place in turn.
    for (std::uint32_t place = 1; place <= 64; ++place) {
        start(1, [=](std::size_t index) {
            static std::uint32_t now, delta;
            if (index == 0)
                now = 10000, delta = 1000;
            delta = index == place ? delta - 500 : delta + 1;
            return Reading{now += delta};
        });
        state = {{0, 0}, 10000, 0};
        entropy_harvest(&state, buffer, size);
        const std::uint64_t pool = std::uint64_t{1} << (65 - place) % 64;
        EXPECT_EQ(state.pool[0], static_cast<std::uint32_t>(model_mix(pool))) << place;
        EXPECT_EQ(state.pool[1], static_cast<std::uint32_t>(model_mix(pool) >> 32)) << place;
    }
}

// ---- the walk is really made -----------------------------------------------------------------------------

std::uint8_t *watched = nullptr;
std::size_t watched_size = 0;
volatile sig_atomic_t pages_touched = 0;

void on_touch(int, siginfo_t *info, void *)
{
    const auto page = static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
    const auto at = reinterpret_cast<std::uintptr_t>(info->si_addr);
    const auto begin = reinterpret_cast<std::uintptr_t>(watched);
    if (at < begin || at >= begin + watched_size)
        _exit(99);
    pages_touched = pages_touched + 1;
    mprotect(watched + (at - begin) / page * page, page, PROT_READ);
}

TEST_F(EntropyHarvestTest, AllPagesAreTouchedBeforeEachReading)
{
    watched_size = 4 * static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
    watched = static_cast<std::uint8_t *>(
        mmap(nullptr, watched_size, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0));
    ASSERT_NE(static_cast<void *>(watched), MAP_FAILED);
    struct sigaction before = {}, action = {};
    action.sa_sigaction = on_touch;
    action.sa_flags = SA_SIGINFO;
    ASSERT_EQ(sigaction(SIGSEGV, &action, &before), 0);
    std::vector<int> touched;
    start(1, [&](std::size_t index) {
        touched.push_back(static_cast<int>(pages_touched));
        pages_touched = 0;
        mprotect(watched, watched_size, PROT_NONE);
        return Reading{static_cast<std::uint32_t>(1000 + 100 * index)};
    });
    pages_touched = 0;
    state = {{}, 900, 100};
    entropy_jitter_measure(&state, watched, static_cast<std::int32_t>(watched_size));
    sigaction(SIGSEGV, &before, nullptr);
    munmap(watched, watched_size);
    EXPECT_EQ(touched, std::vector<int>(99, 4));
}

} // namespace
} // namespace test
