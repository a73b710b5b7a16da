// SPDX-License-Identifier: Apache-2.0
// The library's calls of libc and of the platform, numbered, and one of them failed. Some never get through,
// whatever is planned: nothing here may take the machine down, set its clock or wait.
#pragma once

#include "sweep/faults.hpp"

#include <csetjmp>
#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace sweep
{

// Which call fails, counted from 1, and how; `for_ever`: and all later ones of the same function.
struct Plan {
    std::size_t number = 0;
    const char *function = "";
    Fault fault = {};
    bool for_ever = false;
};

// What a run of the library did.
struct Record {
    std::vector<const char *> functions; // of each call, in order
    bool never_returns = false;          // it replaced the program, or went to sleep for ever
    int libraries = 0;                   // opened and not closed
    std::size_t blocks = 0;              // allocated and not freed
};

// Puts the watch in place, once in a process.
void watch();
// The names of functions that the library imports and that are neither watched nor known not to fail.
std::vector<std::string> unknown_imports();

// Runs `call` under the plan.
Record run(const Plan &plan, const std::function<void()> &call);

} // namespace sweep
