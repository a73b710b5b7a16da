// SPDX-License-Identifier: Apache-2.0
// The driver's items and what people call them.
#pragma once

#include "platform/mcu.hpp"
#include "platform/tpm.hpp"

#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

namespace vboard
{

namespace item_code
{
constexpr std::uint32_t hard_type = 0x8000001;
constexpr std::uint32_t slot = 0x10002800;
constexpr std::uint32_t address = 0x1000280f; // six bytes
constexpr std::uint32_t present = 0x10002202;
constexpr std::uint32_t logic_id = 0x10002636;
constexpr std::uint32_t watchdog_enable = 0x10002808;
constexpr std::uint32_t watchdog_clear = 0x1000280a;
constexpr std::uint32_t soft_reset_supported = 0x1100aaaa;
constexpr std::uint32_t mcu_status = platform::item_mcu_status;
constexpr std::uint32_t mcu_die_id = platform::item_mcu_die_id; // as many bytes as the id has
} // namespace item_code

struct ItemName {
    std::string_view device; // "/dev/slot" stands for every slot's device
    std::uint32_t code;
    std::string_view name;
};

std::span<const ItemName> item_names();

// The name of an item of a device ("/dev/slot7"); empty when it has none.
std::string_view item_name(std::string_view device, std::uint32_t code);
std::optional<std::uint32_t> item_by_name(std::string_view device, std::string_view name);

} // namespace vboard
