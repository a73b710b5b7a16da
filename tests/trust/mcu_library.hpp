// SPDX-License-Identifier: Apache-2.0
// Board-support libraries that answer what a test wants, in place of the stand-ins.
#pragma once

#include "support/front_library.hpp"

#include <cstdint>
#include <functional>
#include <string>

// What the libraries call in the test program.
extern "C" {
std::uint32_t test_mcu_status(std::uint32_t board, std::uint32_t subboard, std::uint32_t *status);
std::uint32_t test_mcu_die_id(std::uint8_t *id, std::uint32_t size, std::uint32_t *length);
}

namespace test
{

constexpr const char *basic = "libdrv_basic.so";
constexpr const char *secure = "libdrv_secure.so";

// The answers; each is asked with the arguments that the library under test passed on.
extern std::function<std::uint32_t(std::uint32_t board, std::uint32_t subboard, std::uint32_t *status)>
    on_mcu_status;
extern std::function<std::uint32_t(std::uint8_t *id, std::uint32_t size, std::uint32_t *length)>
    on_mcu_die_id;

// Puts a library in front of the stand-in of this name: one that has the status function alone, one that has
// the die id function alone, or a file that is no library.
enum class Kind { status, die_id, no_library };
void put_in_front(const std::string &name, Kind kind);
// The stand-ins again.
void remove_from_front();

} // namespace test
