// SPDX-License-Identifier: Apache-2.0
// Stands in front of the system calls of this process, counts those that change the board's storage, keeps a
// record of them, and kills the process at one of them.
#pragma once

#include <cstddef>
#include <limits>
#include <string>

namespace cut
{

constexpr std::size_t never = std::numeric_limits<std::size_t>::max();

struct Plan {
    std::size_t at = never; // the process dies instead of making this change, counted from 0
    bool half = false;      // a write is done by half before that
    std::string record;     // where changes are recorded; nowhere
};

// From here on, for the life of the process.
void arm(const Plan &plan);

// A plan for a program that this process turns into: it goes by the environment, and the rig is preloaded.
void put_in_environment(const Plan &plan);
Plan plan_of_environment();

} // namespace cut
