// SPDX-License-Identifier: Apache-2.0
// How a verb speaks before it has ended: one that waits, or one that does not come back.
#pragma once

#include "facts.hpp"

#include <functional>

namespace moxctl
{

struct Talk {
    // Prints at once, in JSON one object a line. False: nobody could read it, which was told.
    std::function<bool(const Outcome &)> tell;
    // Where a program that the verb starts may print; -1 where the descriptor is closed.
    int out = -1;
    int err = -1;
};

} // namespace moxctl
