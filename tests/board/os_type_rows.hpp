// SPDX-License-Identifier: Apache-2.0
// The OS type of each board as the tests know it, in the order of the table.
#pragma once

#include <cstdint>
#include <utility>
#include <vector>

namespace test
{

inline const std::vector<std::pair<std::uint32_t, std::uint32_t>> os_type_rows = {
    {0x90000869, 0}, {0x9000087c, 1}, {0x9000087a, 1}, {0x9000059d, 1}, {0x9000054a, 1}, {0x900005e6, 1},
    {0x900005d1, 1}, {0x900005e7, 1}, {0x90020759, 5}, {0x900005d3, 1}, {0x900005d2, 1}, {0x900005db, 1},
    {0x90000706, 3}, {0x9000054b, 3}, {0x90000713, 3}, {0x900005f8, 4}, {0x90000758, 4}, {0x900005f2, 4},
    {0x900005f3, 3}, {0x900005f4, 3}, {0x900005f5, 3}, {0x900005fd, 3}, {0x90020709, 6}, {0x90020708, 6},
    {0x90322022, 1}, {0x90422022, 6}, {0x90422024, 6}, {0x90422023, 6}, {0x90422025, 6}, {0x90322023, 1},
    {0x900005da, 1}, {0x900005d9, 1}, {0x900005e2, 1}, {0x900005e3, 1}, {0x90020757, 1}, {0x9002077b, 1},
    {0x9002071f, 6}, {0x90020752, 6}, {0x9002071c, 6}, {0x90020751, 6}, {0x90020720, 1}, {0x9002202a, 1},
    {0x90b2077d, 7}, {0x90020784, 7}, {0x90020786, 7}, {0x90020787, 7},
};

} // namespace test
