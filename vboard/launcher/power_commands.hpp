// SPDX-License-Identifier: Apache-2.0
// The commands that take a machine down, in the board's tree: they take the board down, or nothing, and never
// the machine that the board runs on.
#pragma once

#include "launcher/mounts.hpp"

#include <filesystem>

namespace vboard
{

// Puts `program` in the place of "/sbin/reboot", whether or not the machine has one, and of the machine's
// other commands of the kind.
void place_power_commands(const Mounts &mounts, const std::filesystem::path &program);

} // namespace vboard
