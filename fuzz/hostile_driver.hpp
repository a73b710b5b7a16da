// SPDX-License-Identifier: Apache-2.0
// A board driver that answers what the input says.
#pragma once

#include "fuzz/frame.hpp"

namespace fuzz
{

// From now on devices open, and every request, read and write on one is answered out of this input. Each
// answer takes a byte first: whether the call fails, whether the reply begins as a good one does, and how
// many of its words are then changed. Without input left, replies are good.
void drive(Input *input);
// Descriptors that the library has opened and not closed.
int open_devices();

} // namespace fuzz
