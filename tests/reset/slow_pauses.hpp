// SPDX-License-Identifier: Apache-2.0
#pragma once

namespace test
{

// How often this process paused for 50 ms; 0 when it ever asked for another length.
unsigned pauses_of_50_ms();

} // namespace test
