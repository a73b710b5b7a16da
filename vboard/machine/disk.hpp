// SPDX-License-Identifier: Apache-2.0
// The machine's disk: what of the board outlasts a power cut.
#pragma once

#include <filesystem>

namespace vboard::machine
{

// Makes an empty one (ext4, in a sparse file), unless there is one. Needs no rights. Throws
// std::runtime_error.
void make_disk(const std::filesystem::path &path);

} // namespace vboard::machine
