// SPDX-License-Identifier: Apache-2.0
// A secure driver of a version that takes no lists.
#include <cstdint>

extern "C" std::uint32_t drv_sec_mcu_get_mcu_die_id(std::uint8_t *id, std::uint32_t size,
                                                    std::uint32_t *length);

std::uint32_t drv_sec_mcu_get_mcu_die_id(std::uint8_t *, std::uint32_t, std::uint32_t *)
{
    return 1;
}
