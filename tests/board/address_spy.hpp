// SPDX-License-Identifier: Apache-2.0
// Sees the buffers behind a driver request: the addresses that the library has written into its request
// block.
#pragma once

#include <cstdint>
#include <vector>

namespace test
{

// What was handed to Iof_SetAddrToAddrDes() since forget_addresses(), in order.
struct Described {
    void *buffer;
    void *descriptor;
};
const std::vector<Described> &described_addresses();
void forget_addresses();

} // namespace test
