// SPDX-License-Identifier: Apache-2.0
// The machine is put together: the kernel's image, and the archive of all that it finds when it starts.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace vboard::machine
{

struct Built {
    std::uintmax_t size = 0;          // of the archive
    std::vector<std::string> lacking; // what could not be put in, in words
};

// Throws std::runtime_error when there can be no machine.
Built build();

} // namespace vboard::machine
