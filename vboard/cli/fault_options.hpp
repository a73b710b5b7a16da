// SPDX-License-Identifier: Apache-2.0
// A planned fault as the command line gives it: "ioctl /dev/board0 --item 0x10002987 --errno EIO".
#pragma once

#include "cli/arguments.hpp"
#include "model/board.hpp"

#include <string>
#include <vector>

namespace vboard::cli
{

struct FaultOptions {
    std::string operation, device;
    std::string item, request, variable, skip, times;
    std::string error, code, result, cut, value_size, value, delay;
    std::vector<std::string> reply;
};

// Adds the words of a fault to a command line.
void add_fault_options(Arguments line, FaultOptions &options);

// Throws UsageError.
Fault to_fault(const FaultOptions &options);

// The same from one text. Throws UsageError.
Fault parse_fault(const std::string &text);

} // namespace vboard::cli
