// SPDX-License-Identifier: Apache-2.0
// The board goes down and comes up again, and the driver tells afterwards why. The reset mode record, which
// callers hand on as it is, is the model's own:
//
//   byte 0     what took the board down: 0 power on, 1 soft reset, 2 cold reset, 3 watchdog
//   bytes 1-4  resets since power on, least significant byte first
//   bytes 5-7  zero
#include "model/items.hpp"
#include "model/request_kind.hpp"
#include "model/state.hpp"
#include "model/tlv.hpp"

#include <moxboot/driver.h>

#include <algorithm>
#include <utility>

namespace vboard
{

namespace
{

struct ResetKind {
    const char *name;
    Reset reset;
    std::uint8_t mode; // byte 0 of the mode record
};

constexpr ResetKind kinds[] = {
    {"soft reset", Reset::soft, 1},
    {"cold reset", Reset::cold, 2},
    {"watchdog reset", Reset::watchdog, 3},
    {"power cut", Reset::power_cut, 0},
};

const ResetKind &kind_of(Reset reset)
{
    const auto kind = std::ranges::find(kinds, reset, &ResetKind::reset);
    return *kind;
}

constexpr std::size_t mode_record_size = 8;
constexpr std::size_t count_at = 1;

std::uint32_t resets_in(Bytes record)
{
    record.resize(mode_record_size);
    std::uint32_t count = 0;
    for (std::size_t i = sizeof count; i-- > 0;)
        count = (count << 8) | record[count_at + i];
    return count;
}

Bytes mode_record(std::uint8_t mode, std::uint32_t resets)
{
    Bytes record(mode_record_size);
    record[0] = mode;
    for (std::size_t i = 0; i < sizeof resets; ++i)
        record[count_at + i] = static_cast<std::uint8_t>(resets >> (8 * i));
    return record;
}

} // namespace

void Board::State::power_on()
{
    items.clear();
    for (const auto &[device, values] : profile.items)
        for (const auto &[code, value] : values)
            items[device][code] = bytes_of(value);
    std::map<std::uint32_t, Bytes> &board = items[std::string(board_device)];
    board[item_code::address] = Bytes(profile.address.begin(), profile.address.end());
    if (!profile.mcu_die_id.empty())
        board[item_code::mcu_die_id] = profile.mcu_die_id;
    board[DRVBOOT_ITEM_RESET_REASON_RECORD] = reason_record(0, {});
    board[DRVBOOT_ITEM_RESET_MODE_RECORD] = mode_record(kind_of(Reset::power_cut).mode, 0);
}

void Board::reset(Reset kind)
{
    const ResetKind &how = kind_of(kind);
    std::unique_lock lock(state_->mutex);
    Event event;
    event.op = Op::reset;
    event.what = how.name;
    const std::optional<ResetNotice> notice = std::exchange(state_->notice, std::nullopt);
    if (notice)
        event.sent = notice->reason;

    if (kind == Reset::power_cut) {
        state_->power_on();
    } else {
        // A board whose driver keeps no such record does not get one by going down.
        std::map<std::uint32_t, Bytes> &board = state_->items[std::string(board_device)];
        if (const auto record = board.find(DRVBOOT_ITEM_RESET_REASON_RECORD); record != board.end())
            record->second = notice ? reason_record(notice->reason, notice->date) : reason_record(0, {});
        if (const auto record = board.find(DRVBOOT_ITEM_RESET_MODE_RECORD); record != board.end())
            record->second = mode_record(how.mode, resets_in(record->second) + 1);
    }
    state_->load_env();
    state_->start_watchdog();
    state_->journal.record(std::move(event), std::move(lock));
}

DriverState Board::driver_state() const
{
    const std::lock_guard lock(state_->mutex);
    DriverState kept{state_->items, {}};
    if (state_->notice)
        kept.notice = reason_record(state_->notice->reason, state_->notice->date);
    return kept;
}

void Board::set_driver_state(const DriverState &kept)
{
    const std::lock_guard lock(state_->mutex);
    state_->items = kept.items;
    state_->notice = notice_in(kept.notice);
    // A watchdog that was on is on; whoever feeds it starts anew.
    if (state_->items[std::string(board_device)].contains(item_code::watchdog_enable))
        state_->item_was_set(std::string(board_device), item_code::watchdog_enable);
}

Reset Board::reboot_kind() const
{
    const auto supported = item(std::string(board_device), item_code::soft_reset_supported);
    return supported.value_or(0) != 0 ? Reset::soft : Reset::cold;
}

Bytes Board::reset_record(std::uint32_t item) const
{
    const std::lock_guard lock(state_->mutex);
    const auto board = state_->items.find(std::string(board_device));
    if (board == state_->items.end())
        return {};
    const auto record = board->second.find(item);
    return record == board->second.end() ? Bytes() : record->second;
}

void Board::set_reset_record(std::uint32_t item, Bytes record)
{
    const std::lock_guard lock(state_->mutex);
    state_->items[std::string(board_device)][item] = std::move(record);
}

} // namespace vboard
