// SPDX-License-Identifier: Apache-2.0
// Where things lie: beside this binary, in a build folder as well as installed.
#pragma once

#include "launcher/tree.hpp"

#include <filesystem>
#include <string>
#include <vector>

namespace vboard::cli
{

// The state directory when none is named: $VBOARD_STATE, or one in the user's home directory.
std::filesystem::path default_state();

// The directory of the board profiles. Throws std::runtime_error when there is none.
std::filesystem::path boards_directory();

// What programs on a board find by name: the preload shim and the platform's run-time loaded libraries. The
// native shim is always there (throws without it); what is for 32-bit ARM programs, and the libraries, where
// they have been built. $VBOARD_ARM_SHIM names that shim explicitly; the libraries lie beside a shim or one
// folder up.
std::vector<Library> libraries();
constexpr const char *shim_name = "libvboard-preload.so";

// What stands at "/sbin/reboot" on a board. Throws when it is missing.
std::filesystem::path reboot_program();

// What serves the devices of "vboard up --cuse". Throws when it is missing.
std::filesystem::path devices_program();

// Library folders of the unpacked ARM packages, joined by colons; empty when there are none.
// $VBOARD_ARM_SYSROOT names the sysroot explicitly.
std::string arm_library_path();

// A path that must stay reachable in the board's tree: this binary, so that it can be called there once more.
std::filesystem::path own_binary();

} // namespace vboard::cli
