// SPDX-License-Identifier: Apache-2.0
// The profile of the board in a state directory.
#pragma once

#include "daemon/state.hpp"

namespace vboard
{

// Puts the profile into the directory, which stays with the board that it was made for, and loads it. Without
// a file the board must have one already. Throws std::runtime_error, in words.
Profile settle_profile(const State &state, const std::filesystem::path &file);

} // namespace vboard
