// SPDX-License-Identifier: Apache-2.0
// Starting the program that a board is made for, and handing on how it ended.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace vboard
{

// Exit statuses of the launcher itself, as shells and env(1) use them.
constexpr int exit_launch_failed = 125;
constexpr int exit_not_executable = 126;
constexpr int exit_not_found = 127;

// The file that a command name stands for, found through PATH like a shell does; empty when there is none.
std::filesystem::path find_program(const std::string &name);

// Replaces this process by the command. Returns the exit status to use, with a line on standard error, only
// when that fails.
int exec_program(const std::vector<std::string> &command);

// The exit status that stands for a wait status: the program's own, or 128 + the signal that ended it.
int exit_status(int wait_status);

} // namespace vboard
