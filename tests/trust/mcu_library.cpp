// SPDX-License-Identifier: Apache-2.0
#include "trust/mcu_library.hpp"

std::uint32_t test_mcu_status(std::uint32_t board, std::uint32_t subboard, std::uint32_t *status)
{
    return test::on_mcu_status(board, subboard, status);
}

std::uint32_t test_mcu_die_id(std::uint8_t *id, std::uint32_t size, std::uint32_t *length)
{
    return test::on_mcu_die_id(id, size, length);
}

namespace test
{

std::function<std::uint32_t(std::uint32_t, std::uint32_t, std::uint32_t *)> on_mcu_status;
std::function<std::uint32_t(std::uint8_t *, std::uint32_t, std::uint32_t *)> on_mcu_die_id;

void put_in_front(const std::string &name, Kind kind)
{
    if (kind == Kind::no_library)
        spoil_front(name);
    else
        copy_to_front(name, kind == Kind::status ? MCU_STATUS_LIBRARY : MCU_DIE_ID_LIBRARY);
}

void remove_from_front()
{
    for (const char *name : {basic, secure})
        remove_from_front(name);
}

} // namespace test
