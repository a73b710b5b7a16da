// SPDX-License-Identifier: Apache-2.0
// Reads the TOML of a profile over one that is there already. Private to the model.
#pragma once

#include "model/board.hpp"

namespace vboard
{

// Throws ProfileError with origin and line.
void read_profile(const std::string &text, const std::string &origin, Profile &profile);

} // namespace vboard
