// SPDX-License-Identifier: Apache-2.0
// Result codes in words.
#pragma once

#include "facts.hpp"

namespace moxctl
{

constexpr std::uint32_t internal_failure = 0xFFFFFFFF;

// What a result of the driver channel stands for.
Failure channel_failure(std::uint32_t result);

// "code 10000: the driver refused ...".
std::string describe(const Failure &failure);

} // namespace moxctl
