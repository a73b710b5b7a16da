// SPDX-License-Identifier: Apache-2.0
// Which devices a board has, and where programs find them.
#pragma once

#include "model/board.hpp"

#include <filesystem>
#include <set>
#include <string>

namespace vboard
{

// Where the node of a device lies: what the board has in "/proc" cannot be put there, the shim looks
// elsewhere.
std::filesystem::path node_path(const std::string &device);

// The driver's own devices; a board may have more, by its items.
std::set<std::string> driver_devices(const Board &board);

} // namespace vboard
