// SPDX-License-Identifier: Apache-2.0
// A wall clock and an uptime of the test's own, in front of libc's. 64 bits wide on every machine, so that a
// 32-bit program too can be taken beyond 2038.
#pragma once

#include <cstdint>
#include <optional>

namespace test
{

struct OwnClock {
    std::optional<std::int64_t> now;     // seconds since the epoch
    std::optional<std::uint32_t> uptime; // seconds
};
extern OwnClock own_clock;

} // namespace test
