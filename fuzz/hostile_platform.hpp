// SPDX-License-Identifier: Apache-2.0
// A platform whose two environments hold what the input says, and whose attributes are the input's.
#pragma once

#include "fuzz/frame.hpp"

#include <functional>
#include <optional>
#include <string>

namespace fuzz
{

// Answers for a variable; nothing: there is none. The text is cut to the caller's room, as the platform
// promises.
using Variables = std::function<std::optional<std::string>(const std::string &name)>;
void set_variables(Variables variables);
// One out of this input for each question.
Variables variables_of(Input *input);

} // namespace fuzz
