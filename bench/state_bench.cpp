// SPDX-License-Identifier: Apache-2.0
// Black boxes against bare pwrite() and pread(), and the pass over a reserved memory file against the bare
// copies and flush. Runs in a file tree of its own, where the box directory and the RAM disk are.
#include "ratio.hpp"

#include <moxboot/moxboot.h>

#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <iterator>
#include <sys/mman.h>
#include <unistd.h>
#include <vector>

namespace
{

constexpr std::uint32_t box_size = MOX_BLACKBOX_MAX_SIZE;
constexpr std::uint32_t memory_size = 64u << 20;
constexpr std::size_t block_size = 512;

std::int32_t box = -1;
std::vector<std::uint8_t> record(box_size, 'r');
std::uint8_t *memory = nullptr;

template <typename Transfer>
void transfer_loop(benchmark::State &state, Transfer transfer)
{
    for (auto _ : state)
        if (transfer() != static_cast<long>(box_size))
            state.SkipWithError("incomplete");
}

void write_library(benchmark::State &state)
{
    transfer_loop(state, [] { return MOX_WriteBlackbox(box, 0, box_size, record.data()); });
}

void write_floor(benchmark::State &state)
{
    transfer_loop(state, [] { return pwrite(box, record.data(), box_size, 0); });
}

void read_library(benchmark::State &state)
{
    transfer_loop(state, [] { return MOX_ReadBlackbox(box, 0, box_size, record.data()); });
}

void read_floor(benchmark::State &state)
{
    transfer_loop(state, [] { return pread(box, record.data(), box_size, 0); });
}

void pass_library(benchmark::State &state)
{
    for (auto _ : state)
        if (drvboot_force_load_virtual_page(memory, memory_size) != 0)
            state.SkipWithError("pass");
}

void pass_floor(benchmark::State &state)
{
    for (auto _ : state) {
        std::uint8_t block[block_size];
        for (std::uint8_t *at = memory; at != memory + memory_size; at += block_size) {
            std::memcpy(block, at, block_size);
            benchmark::DoNotOptimize(block); // or both copies would go
            std::memcpy(at, block, block_size);
        }
        if (msync(memory, memory_size, MS_SYNC) != 0)
            state.SkipWithError("flush");
    }
}

// A file of the RAM disk.
std::uint8_t *map_memory()
{
    void *mapped = nullptr;
    if (MOX_GetRsvMemMmapAddr("bench", memory_size, &mapped) != 0) {
        std::fprintf(stderr, "bench: no RAM disk (start this program with `vboard tree --`)\n");
        std::exit(1);
    }
    return static_cast<std::uint8_t *>(mapped);
}

} // namespace

int main(int argc, char **argv)
{
    box = MOX_GetBlackbox("bench", box_size);
    memory = map_memory();

    auto pair = [](const char *name, void (*run)(benchmark::State &)) {
        benchmark::RegisterBenchmark(name, run)->Repetitions(11)->MinTime(0.05)->UseRealTime();
    };
    pair("black box write/library", write_library);
    pair("black box write/floor", write_floor);
    pair("black box read/library", read_library);
    pair("black box read/floor", read_floor);
    pair("reserved memory pass/library", pass_library);
    pair("reserved memory pass/floor", pass_floor);
    constexpr double goal = 1 / 0.95;
    static const bench::Goal goals[] = {
        {"black box write", goal}, {"black box read", goal}, {"reserved memory pass", goal}};
    return bench::run_pairs(argc, argv, goals, std::size(goals), STDOUT_FILENO);
}
