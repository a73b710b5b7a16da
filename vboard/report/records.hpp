// SPDX-License-Identifier: Apache-2.0
// What a board's directory tells of its past.
#pragma once

#include "model/board.hpp"

#include <nlohmann/json.hpp>

#include <filesystem>
#include <string>
#include <vector>

namespace vboard::report
{

// One line of the start-up step trace.
struct TraceLine {
    double time = 0;
    int process = 0;
    std::uint32_t level = 0;
    std::string text; // without line ends around it
};

// One line of the record of the board's life: when it was switched on and off, which faults were planned.
struct LifeLine {
    double time = 0;
    std::string what;
    nlohmann::json more;
};

// All in order of time, also where the records are not.
struct Records {
    std::vector<Event> events;
    std::vector<TraceLine> trace;
    std::vector<LifeLine> life;
    std::size_t odd_lines = 0; // that could not be read: a power cut leaves half a line behind

    double first() const; // time of the first thing and of the last one; 0 when there is nothing
    double last() const;
};

// A record that is missing is empty.
Records read_records(const std::filesystem::path &state);

} // namespace vboard::report
