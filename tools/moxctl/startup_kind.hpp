// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <string>

namespace moxctl
{

// What a start-up file of that type is, in a word.
std::string startup_kind(std::uint32_t type);

} // namespace moxctl
