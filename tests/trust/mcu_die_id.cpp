// SPDX-License-Identifier: Apache-2.0
#include "trust/mcu_library.hpp"

extern "C" std::uint32_t drv_sec_mcu_get_mcu_die_id(std::uint8_t *id, std::uint32_t size,
                                                    std::uint32_t *length);

std::uint32_t drv_sec_mcu_get_mcu_die_id(std::uint8_t *id, std::uint32_t size, std::uint32_t *length)
{
    return test_mcu_die_id(id, size, length);
}
