// SPDX-License-Identifier: Apache-2.0
// The entropy source against its parts timed alone: as many walks over memory, clock readings and digests as
// a reading of it takes.
#include "ratio.hpp"

#include <moxboot/entropy.h>
#include <moxboot/platform.h>

#include <benchmark/benchmark.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <dlfcn.h>
#include <mbedtls/sha256.h>
#include <unistd.h>
#include <utility>
#include <vector>

namespace
{

constexpr std::size_t bytes_read = 64;
constexpr std::size_t measurements_per_pool = 65;
constexpr int cache_line = 64;

unsigned long clock_readings = 0;

int read_clock(timespec *time)
{
    static const auto next =
        reinterpret_cast<int (*)(clockid_t, timespec *)>(dlsym(RTLD_NEXT, "clock_gettime"));
    return next(CLOCK_REALTIME, time);
}

} // namespace

// Stands in front of libc's, for the library and for the floor.
extern "C" int clock_gettime(clockid_t clock, timespec *time) noexcept
{
    static const auto next =
        reinterpret_cast<int (*)(clockid_t, timespec *)>(dlsym(RTLD_NEXT, "clock_gettime"));
    ++clock_readings;
    return next(clock, time);
}

namespace
{

// Clock readings that one call takes on average; they differ, since equal times are measured again.
unsigned long readings_per_call()
{
    constexpr unsigned long calls = 50;
    std::array<std::uint8_t, bytes_read> bytes{};
    clock_readings = 0;
    for (unsigned long i = 0; i < calls; ++i)
        entropy_read(bytes.data(), bytes.size());
    return clock_readings / calls;
}

void library(benchmark::State &state)
{
    std::array<std::uint8_t, bytes_read> bytes{};
    for (auto _ : state)
        if (entropy_read(bytes.data(), bytes.size()) != 0)
            state.SkipWithError("no memory");
}

[[gnu::noinline]] std::uint32_t walk(const std::uint8_t *buffer, std::int32_t length)
{
    std::uint32_t all = 0;
    for (std::int32_t at = 0; at < length; at += cache_line)
        all ^= buffer[at];
    return all;
}

#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wdeprecated-declarations"
void digest(const std::array<std::uint8_t, 8> &pool, std::array<std::uint8_t, 32> &result)
{
    static_cast<void>(mbedtls_sha256(pool.data(), pool.size(), result.data(), 0));
}
#pragma GCC diagnostic pop

void floor(benchmark::State &state)
{
    static const unsigned long readings = readings_per_call();
    for (auto _ : state) {
        auto *buffer = static_cast<std::uint8_t *>(std::malloc(ENTROPY_BUFFER_SIZE));
        memset_s(buffer, ENTROPY_BUFFER_SIZE, 0, ENTROPY_BUFFER_SIZE);
        for (unsigned long i = 0; i < readings; ++i) {
            benchmark::DoNotOptimize(walk(buffer, ENTROPY_BUFFER_SIZE));
            timespec now{};
            benchmark::DoNotOptimize(clock_gettime(CLOCK_REALTIME, &now));
        }
        std::array<std::uint8_t, 8> pool{};
        std::array<std::uint8_t, 32> result{};
        for (unsigned long i = 0; i < readings / measurements_per_pool; ++i) {
            digest(pool, result);
            benchmark::DoNotOptimize(result);
        }
        std::free(buffer);
    }
}

// The parts one by one, for whoever wants to know where the time goes.
void print_parts()
{
    timespec resolution{};
    clock_getres(CLOCK_REALTIME, &resolution);
    constexpr int rounds = 2000;
    const std::vector<std::uint8_t> buffer(ENTROPY_BUFFER_SIZE);
    const auto nanoseconds = [](auto part) {
        timespec begin{};
        timespec end{};
        read_clock(&begin);
        for (int i = 0; i < rounds; ++i)
            part();
        read_clock(&end);
        return (static_cast<double>(end.tv_sec - begin.tv_sec) * 1e9 +
                static_cast<double>(end.tv_nsec - begin.tv_nsec)) /
               rounds;
    };
    std::array<std::uint8_t, 8> pool{};
    std::array<std::uint8_t, 32> result{};
    timespec now{};
    const double walk_time =
        nanoseconds([&] { benchmark::DoNotOptimize(walk(buffer.data(), ENTROPY_BUFFER_SIZE)); });
    const double clock_time = nanoseconds([&] { clock_gettime(CLOCK_REALTIME, &now); });
    const double digest_time = nanoseconds([&] { digest(pool, result); });
    std::printf(
        "clock resolution %ld ns as installed; one walk %.0f ns, one reading %.0f ns, one digest %.0f ns\n",
        resolution.tv_nsec, walk_time, clock_time, digest_time);
    std::array<std::uint8_t, 4096> bytes{};
    timespec begin{};
    timespec end{};
    read_clock(&begin);
    entropy_read(bytes.data(), bytes.size());
    read_clock(&end);
    const double seconds = static_cast<double>(end.tv_sec - begin.tv_sec) +
                           static_cast<double>(end.tv_nsec - begin.tv_nsec) / 1e9;
    std::printf("%.0f bytes per second\n", static_cast<double>(bytes.size()) / seconds);
}

} // namespace

int main(int argc, char **argv)
{
    constexpr bench::Goal goals[] = {{"entropy", 1 / 0.95}};
    // Repeated readings are logged; nobody listens, and every line would be another attempt to reach someone.
    const int table = dup(STDOUT_FILENO);
    for (const auto &[name, run] :
         {std::pair{"entropy/library", &library}, std::pair{"entropy/floor", &floor}})
        benchmark::RegisterBenchmark(name, run)->Repetitions(11)->MinTime(0.05)->UseRealTime();
    print_parts();
    std::fflush(stdout);
    return bench::run_pairs(argc, argv, goals, 1, table);
}
