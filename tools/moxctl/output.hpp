// SPDX-License-Identifier: Apache-2.0
// The two ways to print facts.
#pragma once

#include "facts.hpp"

#include <string>

namespace moxctl
{

// For people: name, value and meaning in columns; facts that are tables themselves follow below.
std::string as_text(const Outcome &outcome);

// For programs: one object, a member for each fact, null where there is no value; "errors" tells by the
// fact's key the code and the words of what could not be read, and is left out when all could be.
std::string as_json(const Outcome &outcome);
// The same on one line, for objects that follow one another.
std::string as_json_line(const Outcome &outcome);

} // namespace moxctl
