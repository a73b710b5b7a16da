// SPDX-License-Identifier: Apache-2.0
// Board-support libraries with one function each, whose answers are a test's.
#pragma once

#include <cstdint>
#include <functional>
#include <string>

// What the libraries call in the test program.
extern "C" {
std::uint32_t test_tpm_status(const char *function, std::uint32_t board, std::uint32_t *status);
int test_secure_boot();
}

namespace test
{

constexpr const char *drv_basic = "libdrv_basic.so";
constexpr const char *active_function = "drv_board_get_tpm_active_status";
constexpr const char *online_function = "drv_board_get_tpm_online_status";

extern std::function<std::uint32_t(const std::string &function, std::uint32_t board, std::uint32_t *status)>
    on_tpm_status;
extern std::function<int()> on_secure_boot;

// The file of the library that has this function alone.
const char *library_with(const std::string &function);
const char *secure_boot_library();

} // namespace test
