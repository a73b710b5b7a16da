// SPDX-License-Identifier: Apache-2.0
// A board's process that stays when the command that started it ends.
#pragma once

#include <filesystem>
#include <functional>

namespace vboard
{

// Runs `board` in a process of its own, with nothing left of the terminal: what it says goes to the file.
// Returns when it has called `ready`; throws std::runtime_error with its own words when it threw some before,
// or ended. The result of `board` is the process's exit status.
void stay_in_background(const std::filesystem::path &log,
                        const std::function<int(const std::function<void()> &ready)> &board);

} // namespace vboard
