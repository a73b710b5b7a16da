// SPDX-License-Identifier: Apache-2.0
#include "model/items.hpp"

#include "model/request_kind.hpp"

#include <iterator>

namespace vboard
{

namespace
{

constexpr std::string_view board = "/dev/board0";
constexpr std::string_view chassis = "/dev/chassis0";
constexpr std::string_view slot = "/dev/slot";

constexpr ItemName names[] = {
    {board, 0x8000001, "hard type"},
    {board, 0x8000004, "self reset"},
    {board, 0x10002200, "hard info word 2200"},
    {board, 0x10002205, "logic ha status"},
    {board, 0x10002206, "reset reason"},
    {board, 0x10002207, "reset date"},
    {board, 0x10002208, "reset mode record"},
    {board, 0x10002209, "reset reason record"},
    {board, 0x1000221e, "all ha status"},
    {board, 0x10002800, "slot number"},
    {board, 0x10002801, "cpu id"},
    {board, 0x10002808, "watchdog enable"},
    {board, 0x1000280a, "watchdog clear"},
    {board, 0x1000280e, "driver version"},
    {board, 0x1000280f, "hardware address"},
    {board, 0x10002858, "role of board"},
    {board, 0x10002980, "mmb state"},
    {board, 0x10002982, "active state"},
    {board, 0x10002987, "board role"},
    {board, 0x1000299d, "m2s process id"},
    {board, 0x1000299f, "soft activation disabled"},
    {board, 0x100029b4, "hard info word 29b4"},
    {board, 0x10003044, "slave board registered"},
    {board, 0x100030a9, "package sync flag"},
    {board, 0x100030ad, "hard bad status"},
    {board, 0x10004723, "reset mode"},
    {board, 0x10004725, "pre-reset mode"},
    {board, 0x10004726, "peer xcs slave"},
    {board, 0x1000474b, "backup state"},
    {board, 0x1100aaaa, "soft reset supported"},
    {board, 0x1100aaab, "pre-reset reason"},
    {board, item_code::mcu_status, "mcu status"},
    {board, item_code::mcu_die_id, "mcu die id"},
    {board, platform::item_tpm_active, "tpm active"},
    {board, platform::item_tpm_online, "tpm online"},
    {board, platform::item_secure_boot, "secure boot"},
    {chassis, 0x8000001, "hard type"},
    {chassis, 0x8000003, "chassis id"},
    {chassis, 0x10002400, "pcb version"},
    {chassis, 0x10002401, "chassis value"},
    {slot, item_code::present, "board present"},
    {slot, item_code::logic_id, "logic id"},
};

std::string_view kind_of(std::string_view device)
{
    return slot_number(device) != 0 ? slot : device;
}

} // namespace

std::span<const ItemName> item_names()
{
    return names;
}

std::string_view item_name(std::string_view device, std::uint32_t code)
{
    const std::string_view kind = kind_of(device);
    for (const ItemName &item : names)
        if (item.code == code && item.device == kind)
            return item.name;
    return {};
}

std::optional<std::uint32_t> item_by_name(std::string_view device, std::string_view name)
{
    const std::string_view kind = kind_of(device);
    for (const ItemName &item : names)
        if (item.name == name && item.device == kind)
            return item.code;
    return std::nullopt;
}

} // namespace vboard
