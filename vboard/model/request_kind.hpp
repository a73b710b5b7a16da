// SPDX-License-Identifier: Apache-2.0
// Which requests which device knows. The front ends ask before they touch the caller's memory, as a driver
// does that looks at the request number first.
#pragma once

#include <cstdint>
#include <string_view>

namespace vboard
{

enum class RequestKind { unknown, items, environment, self_reset };

RequestKind request_kind(std::string_view device, std::uint32_t request);

constexpr std::string_view environment_device = "/dev/envinfo0";
constexpr std::string_view console_device = "/dev/ttyS0";
constexpr std::string_view watchdog_device = "/proc/wdt";
constexpr std::string_view crl_device = "/dev/module_crl";
constexpr std::string_view clock_device =
    "/dev/vboard/clock"; // no driver has it: what the board's clock is set to
constexpr std::string_view board_device = "/dev/board0";
constexpr unsigned slot_count = 32;

// "/dev/slot1" to "/dev/slot32": the slot's number; 0 for any other path.
unsigned slot_number(std::string_view device);

} // namespace vboard
