// SPDX-License-Identifier: Apache-2.0
// A secure driver of the test's own, in place of the stand-in.
#pragma once

#include <cstdint>
#include <functional>

// What the driver calls in the test program.
extern "C" std::uint32_t test_crl_patch_write(const void *list, std::uint32_t length);

namespace test
{

constexpr const char *secure_driver = "libdrv_secure.so";
extern std::function<std::uint32_t(const void *list, std::uint32_t length)> on_patch_write;

} // namespace test
