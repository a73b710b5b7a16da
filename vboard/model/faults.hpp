// SPDX-License-Identifier: Apache-2.0
// Which planned fault bites, and what it does to an answer.
#pragma once

#include "model/board.hpp"

namespace vboard
{

// Takes the first fault that matches the event and is due; counts down the ones that only let it pass.
std::optional<Fault> take_fault(std::vector<Fault> &faults, const Event &event);

// Changes an answer as the fault says: errno, result, words, length, environment value.
void spoil(IoctlReply &reply, const IoctlCall &call, const Fault &fault);

} // namespace vboard
