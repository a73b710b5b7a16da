// SPDX-License-Identifier: Apache-2.0
// A wall clock of the test's own for the library under test, and a look at what it does between readings.
// Everybody else in the process keeps the machine's clock.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>

namespace test
{

// One answer of the clock.
struct Reading {
    std::uint32_t nanoseconds = 0;
    int result = 0;
    int error = 0;      // errno after the call
    bool filled = true; // false: the caller's fields stay as they are
};
using Clock = std::function<Reading(std::size_t index)>;

struct EntropyWatch {
    Clock clock; // none: the machine's own
    std::size_t readings = 0;
    std::size_t other_clocks = 0; // readings of a clock that is not the wall clock
    std::function<void(const std::uint8_t *buffer, std::int32_t length)> on_walk;
    bool walking = true; // false: a walk is counted, and not made
    std::size_t walks = 0;
    std::string steps;   // "w" for a walk, "c" for a reading, while noting
    bool noting = false; // long runs are not
};
extern EntropyWatch entropy_watch;

// Whether the library has read any clock in this process.
extern bool clock_was_read;

// From now on the clock is this one, from its first reading on, and everything is counted anew.
void replay(Clock clock);

} // namespace test
