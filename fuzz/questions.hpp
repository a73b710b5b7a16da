// SPDX-License-Identifier: Apache-2.0
// The library's questions to its driver and to the platform, each with room of exactly the size that its
// header asks for, and held against the results that the header names.
#pragma once

#include "fuzz/frame.hpp"

#include <span>

namespace fuzz
{

using Question = void (*)(Input &input);

// Of the board: items, hard information, reset records, the watchdog, families.
std::span<const Question> board_questions();
// Of boot variables and of the environments.
std::span<const Question> variable_questions();

} // namespace fuzz
