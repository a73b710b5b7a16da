// SPDX-License-Identifier: Apache-2.0
// Raw measurements of the entropy source: the times between clock readings, as the library takes them, before
// a bit is made of each.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace bench
{

// In nanoseconds, by the library's own walk and clock. Repeated deltas are among them: what the source does
// about those comes after.
std::vector<std::uint32_t> record_deltas(std::size_t count);

// The same from a new process, as it starts. Throws std::runtime_error when none can be had.
std::vector<std::uint32_t> record_restart(std::size_t count);

} // namespace bench
