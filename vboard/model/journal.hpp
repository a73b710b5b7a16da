// SPDX-License-Identifier: Apache-2.0
// Events of the journal for programs (JSON) and for people (one line).
#pragma once

#include "model/board.hpp"

#include <nlohmann/json.hpp>

namespace vboard
{

std::string_view op_name(Op op);
std::optional<Op> op_by_name(std::string_view name);

nlohmann::json to_json(const Event &event);
// Throws std::invalid_argument, in words, when the object is no event.
Event event_from_json(const nlohmann::json &object);

// "#13 get /dev/board0 0x10002987 board role -> 3". No line end; control characters are shown as \xNN.
std::string readable(const Event &event);

} // namespace vboard
