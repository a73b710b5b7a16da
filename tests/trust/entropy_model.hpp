// SPDX-License-Identifier: Apache-2.0
// What the source must give for a clock, told without the library: in wide signed numbers and bit by bit.
#pragma once

#include "trust/entropy_clock.hpp"

#include <cstdint>
#include <string>
#include <vector>

namespace test
{

std::uint64_t model_mix(std::uint64_t value);

class EntropyModel
{
  public:
    // `last` is the library's last reading.
    EntropyModel(Clock clock, std::uint32_t last) : clock_(std::move(clock)), last_(last) {}

    // One reading of the clock, one measurement, one refill, one call that reads `count` bytes.
    std::uint32_t reading();
    unsigned measurement();
    void refill();
    std::vector<std::uint8_t> bytes(std::size_t count);

    std::uint64_t pool = 0;
    std::int64_t time = 0, delta = 0; // of the last measurement

    std::vector<std::string> lines; // that go to the system log
    std::size_t stalled = 0;        // how many these are; the lines themselves are kept while `telling`
    bool telling = true;
    std::size_t readings = 0, walks = 0;
    std::size_t skipped_first = 0, skipped_within = 0, skipped_across = 0; // bytes that repeated

  private:
    Clock clock_;
    std::uint32_t last_;
};

// ---- clocks ----------------------------------------------------------------------------------------------

// The same step each time; `start` is its first reading.
Clock regular_clock(std::uint32_t start, std::uint32_t step);
// Steps of 100 to 355 ns without an order, over the end of a second and on; each reading comes `times` times.
Clock jittery_clock(std::uint32_t start, std::uint32_t seed = 12345, unsigned times = 1);
// Numbers of all 32 bits, as no sane clock gives them.
Clock wild_clock(std::uint32_t seed);

} // namespace test
