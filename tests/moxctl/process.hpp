// SPDX-License-Identifier: Apache-2.0
// Runs a program and takes down what it printed.
#pragma once

#include <ostream>
#include <string>
#include <vector>

namespace test
{

struct Ended {
    int status = -1; // exit status; 128 and more: ended by a signal
    std::string out;
    std::string err;
};
void PrintTo(const Ended &ended, std::ostream *out);

// Where standard output goes.
enum class Output { taken, full_device, closed, pipe_without_reader };

Ended run(const std::vector<std::string> &words, Output output = Output::taken);

} // namespace test
