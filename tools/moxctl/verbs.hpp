// SPDX-License-Identifier: Apache-2.0
// The verbs. Each asks the library and hands back what it found; none prints.
#pragma once

#include "facts.hpp"

#include <cstdint>
#include <string>

namespace moxctl
{

Outcome board_information();

Outcome get_variable(const std::string &name);
Outcome set_variable(const std::string &name, const std::string &value);
Outcome clear_variable(const std::string &name);
Outcome save_variables();

Outcome times(unsigned footprint_steps);

Outcome get_item(const std::string &device, std::uint32_t code);
Outcome set_item(const std::string &device, std::uint32_t code, std::uint32_t value);

} // namespace moxctl
