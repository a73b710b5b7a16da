// SPDX-License-Identifier: Apache-2.0
// Where things lie: beside this binary, in a build folder as well as installed.
#pragma once

#include "daemon/seed.hpp"

#include <filesystem>
#include <string>
#include <vector>

namespace vboard::cli
{

// The state directory when none is named: $VBOARD_STATE, or one in the user's home directory.
std::filesystem::path default_state();

// The directory of the board profiles. Throws std::runtime_error when there is none.
std::filesystem::path boards_directory();

// The preload shims that there are: the native one always (throws without it), the one for 32-bit ARM
// programs where it has been built. $VBOARD_ARM_SHIM names that one explicitly.
std::vector<Shim> shims();

// Library folders of the unpacked ARM packages, joined by colons; empty when there are none.
// $VBOARD_ARM_SYSROOT names the sysroot explicitly.
std::string arm_library_path();

// A path that must stay reachable in the board's tree: this binary, so that it can be called there once more.
std::filesystem::path own_binary();

} // namespace vboard::cli
