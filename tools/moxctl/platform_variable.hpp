// SPDX-License-Identifier: Apache-2.0
// Variables of the platform's two environments. They tell only that they failed: a variable that is not set
// and one that cannot be read look the same.
#pragma once

#include "facts.hpp"

#include <optional>
#include <string>

namespace moxctl
{

std::optional<std::string> platform_variable(const char *name);
std::optional<std::string> memory_variable(const char *name); // of the memory environment

// Its text, or null.
Answer variable_answer(const std::optional<std::string> &value);

} // namespace moxctl
