// SPDX-License-Identifier: Apache-2.0
#include "trust/mcu_library.hpp"

extern "C" std::uint32_t drv_subboard_get_online_status(std::uint32_t board, std::uint32_t subboard,
                                                        std::uint32_t *status);

std::uint32_t drv_subboard_get_online_status(std::uint32_t board, std::uint32_t subboard,
                                             std::uint32_t *status)
{
    return test_mcu_status(board, subboard, status);
}
