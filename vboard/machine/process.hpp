// SPDX-License-Identifier: Apache-2.0
// Other programs, run by the machine's builder and for its tests.
#pragma once

#include <filesystem>
#include <string>
#include <sys/types.h>
#include <vector>

namespace vboard::machine
{

using Words = std::vector<std::string>;

struct Ran {
    int status = 0;     // exit status, or 128 + the signal that ended it
    std::string output; // what it said, on either stream
};
// Runs a command, found through PATH, and waits for it. Throws std::runtime_error when it cannot be started.
Ran run(const Words &command);
// The same for a command that must succeed; what it says is in the exception otherwise.
std::string must(const Words &command);

// Starts a command. What it says goes to `log`, unless that is empty: then it has this process's terminal.
pid_t start(const Words &command, const std::filesystem::path &log);

// Runs a command that has this process's terminal, and waits for it: its exit status.
int run_at_terminal(const Words &command);

bool in_path(const std::string &program);

} // namespace vboard::machine
