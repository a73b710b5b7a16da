// SPDX-License-Identifier: Apache-2.0
// What a board finds in its file tree when it comes up: the stores of the platform, the start-up footprint,
// the shims.
#pragma once

#include "model/board.hpp"

#include <filesystem>
#include <string>
#include <vector>

namespace vboard
{

// The preload shims, one for each kind of program, and how the dynamic linker of that kind calls its library
// folder: with "$LIB" in the name one LD_PRELOAD serves them all.
struct Shim {
    std::string folder;
    std::filesystem::path file;
};
constexpr const char *shim_preload = "/dev/vboard/$LIB/libvboard-preload.so";

// Fills the tree that is the root directory now. Throws std::runtime_error.
void seed_tree(const Profile &profile, const std::vector<Shim> &shims);

} // namespace vboard
