// SPDX-License-Identifier: Apache-2.0
// Planned faults as JSON: they cross a socket to a running board, and lie in files.
#pragma once

#include "model/board.hpp"

#include <nlohmann/json.hpp>

namespace vboard
{

// Fields that say nothing are left out. The error goes by its name, reply words by their offset in decimal.
nlohmann::json to_json(const Fault &fault);

// Takes an error by name or number, offsets in decimal or hexadecimal, the value as text or as a list of
// bytes. Throws std::invalid_argument, in words, for anything that is no fault.
Fault fault_from_json(const nlohmann::json &object);

} // namespace vboard
