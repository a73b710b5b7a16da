// SPDX-License-Identifier: Apache-2.0
// A board that costs next to nothing: its driver answers at once, out of this process, and so does what the
// platform would read from its files. It tells which system calls the library makes.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <vector>

namespace bench
{

struct Attributes {
    std::uint32_t hard_type = 0;
    std::string flash; // "NOR", "NAND", "SFC"
    std::uint32_t service_type = 0;
    std::uint32_t logic_id = 0;
    std::uint32_t pack_type = 0;
    bool ptn = false;
};

// From now on this process is on such a board.
void be(const Attributes &attributes);
const Attributes &board();

// One call of the library: a system call but for those of its log lines and its memory, or a function of the
// platform.
struct Call {
    std::string function; // its plain name; "log": a line that goes to the log, the console and the trace
    std::string path;     // of a file or device; of "log" the line
    std::string other;    // symlink: what it points to; GetEnv and the like: value
    std::vector<std::uint32_t> request; // ioctl: the words that are sent, but for an environment request
    std::string variable;               // ioctl: name in an environment request; GetEnv and the like
    std::uint32_t number = 0;           // open: flags; ioctl: request; CCPKG_...: id
};
std::vector<Call> calls_during(const std::function<void()> &action);

// How many of each, log lines left out.
using Counts = std::map<std::string, unsigned>;
Counts counted(const std::vector<Call> &calls);

} // namespace bench
