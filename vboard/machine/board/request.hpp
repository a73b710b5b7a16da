// SPDX-License-Identifier: Apache-2.0
// What the measurements and the many callers ask of the driver.
#pragma once

#include <cstdint>

namespace board
{

constexpr const char *device = "/dev/board0";
constexpr std::uint32_t hard_type_item = 0x8000001;

// The bare calls that one item query cannot do without: open, ioctl, close. 0 on success.
int bare_query(const char *path, std::uint32_t item, std::uint32_t *value);

} // namespace board
