// SPDX-License-Identifier: Apache-2.0
// Results that more than one family gives.
#pragma once

#include <cstdint>

namespace moxboot
{

constexpr uint32_t ok = 0;
constexpr uint32_t refused = 1; // the common failure code of the MOX_ interface
constexpr uint32_t not_supported = 2;
constexpr uint32_t failed = 0xFFFFFFFF; // an internal failure, or an argument that is refused

} // namespace moxboot
