// SPDX-License-Identifier: Apache-2.0
// Fails each call that an exported function makes, one after the other, in each way in which that call can
// fail.
#pragma once

#include "sweep/row.hpp"

#include <cstddef>
#include <map>
#include <string>
#include <vector>

namespace sweep
{

struct Tally {
    std::size_t functions = 0;
    std::size_t calls = 0;  // that the functions make when nothing fails
    std::size_t faults = 0; // tried
    std::vector<std::string> violations;

    Tally &operator+=(const Tally &more);
};

// One function: without a fault, and with each fault of each call.
Tally sweep(const Row &row);
// Without faults: every function is called once.
Tally call_once(const Row &row);
// Which calls that makes, and how many of each.
std::map<std::string, std::size_t> calls_of(const Row &row);

} // namespace sweep
