// SPDX-License-Identifier: Apache-2.0
// The board items that the MCU stand-ins ask for. The codes are the stand-ins' own: the platform's libraries
// reach the MCU by ways of theirs, and no code of the driver is known to mean it.
#pragma once

#include <cstdint>

namespace platform
{

constexpr uint32_t item_mcu_status = 0x7f000001; // one word, 0: online
constexpr uint32_t item_mcu_die_id = 0x7f000002; // as many bytes as the id has
constexpr uint32_t most_die_id_bytes = 32;

} // namespace platform
