// SPDX-License-Identifier: Apache-2.0
// The step trace and a virtual board's journal as a timeline in the trace event format, which common viewers
// open.
#pragma once

#include "json.hpp"

#include <cstdint>
#include <string>
#include <vector>

namespace moxctl
{

// What a program asked the board's driver, or a reset of the board.
struct DriverRequest {
    double time = 0;     // of the answer, in seconds since the epoch
    double duration = 0; // in seconds; 0: not known
    int process = 0;
    std::uint64_t number = 0; // counts from 1 each time that the board is switched on
    bool reset = false;
    bool failed = false;
    std::string device;
    std::string name; // "get board role"
    Json args;
};

struct TraceLine {
    double time = 0; // in seconds since the epoch
    int process = 0;
    std::uint32_t code = 0, level = 0;
    std::string text; // without line ends around it
};

// Both throw std::runtime_error, with file and line, for a line that is none.
std::vector<DriverRequest> read_journal(const std::string &file);
std::vector<TraceLine> read_trace(const std::string &file);

struct Timeline {
    Json json;
    std::size_t processes = 0;
    double length = 0; // in seconds
};

// Neither needs to be in order.
Timeline make_timeline(std::vector<DriverRequest> requests, std::vector<TraceLine> lines);

} // namespace moxctl
