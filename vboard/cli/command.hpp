// SPDX-License-Identifier: Apache-2.0
// A command as it is started on a board.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace vboard::cli
{

// Whether the file is a program for 32-bit ARM.
bool is_arm_program(const std::filesystem::path &file);

// The command, behind an emulator when its program is for 32-bit ARM.
std::vector<std::string> runnable(const std::vector<std::string> &command);

// Puts into this process's environment where programs find the platform's run-time loaded libraries.
void set_library_path();

// The same, and all that programs need to find the board.
void set_board_environment(const std::filesystem::path &state);

// The whole environment ("NAME=value") of what the board itself starts for programs.
std::vector<std::string> service_environment(const std::filesystem::path &state);

} // namespace vboard::cli
