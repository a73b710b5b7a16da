// SPDX-License-Identifier: Apache-2.0
// The module that keeps the board's certificate revocation list: a write hands it a whole list, a read gives
// a part of it from the file position on. The list is no part of what the driver holds while it runs, so it
// survives every reset.
#include "model/request_kind.hpp"
#include "model/state.hpp"

#include <algorithm>
#include <cerrno>
#include <limits>
#include <unistd.h>

namespace vboard
{

namespace
{

// Positions fit the offsets of every program.
constexpr std::int64_t last_position = std::numeric_limits<std::int32_t>::max();

std::string text_of(std::int64_t offset, int whence)
{
    const std::string number = std::to_string(offset);
    switch (whence) {
    case SEEK_SET:
        return "to " + number;
    case SEEK_CUR:
        return "by " + number;
    case SEEK_END:
        return "to end " + (offset < 0 ? number : "+" + number);
    default:
        return "in no known way";
    }
}

} // namespace

bool Board::State::is_crl(const std::string &device) const
{
    return profile.crl_module && device == crl_device;
}

Bytes Board::State::part_of_crl(std::int64_t from, std::size_t count) const
{
    const auto start = std::min(crl.size(), static_cast<std::size_t>(from));
    const auto at = crl.begin() + static_cast<std::ptrdiff_t>(start);
    return {at, at + static_cast<std::ptrdiff_t>(std::min(count, crl.size() - start))};
}

int Board::State::replace_crl(Bytes list)
{
    if (list.empty())
        return 0; // nothing was handed over
    if (keep_crl && !keep_crl(list))
        return EIO;
    crl = std::move(list);
    return 0;
}

// The new position, or a negative errno.
std::int64_t Board::State::sought(std::int64_t offset, int whence, std::int64_t position) const
{
    std::int64_t base = 0;
    if (whence == SEEK_CUR)
        base = position;
    else if (whence == SEEK_END)
        base = static_cast<std::int64_t>(crl.size());
    else if (whence != SEEK_SET)
        return -EINVAL;
    // A position is never negative, so neither of these overflows.
    return offset < -base || offset > last_position - base ? -EINVAL : base + offset;
}

IoResult Board::seek(const std::string &device, std::int64_t offset, int whence, int pid,
                     std::int64_t *position)
{
    // Of the other devices none has a position, and none is asked.
    if (!state_->is_crl(device))
        return {-1, ESPIPE, {}};
    const std::string no_variable;
    Event event = start_event(Op::lseek, device, pid);
    const auto fault = state_->begin({Op::lseek, device, std::nullopt, {}, no_variable});
    event.faulted = fault.has_value();
    event.value = text_of(offset, whence);
    std::unique_lock lock(state_->mutex);
    const std::int64_t place =
        fault && fault->error != 0 ? -fault->error : state_->sought(offset, whence, *position);
    const bool moved = place >= 0;
    if (moved)
        *position = place;
    event.result = moved ? place : -1;
    event.error = moved ? 0 : static_cast<int>(-place);
    IoResult result{event.result, event.error, {}};
    state_->journal.record(std::move(event), std::move(lock));
    return result;
}

Bytes Board::crl() const
{
    const std::lock_guard lock(state_->mutex);
    return state_->crl;
}

void Board::set_crl(Bytes list)
{
    const std::lock_guard lock(state_->mutex);
    state_->crl = std::move(list);
}

void Board::keep_crl(std::function<bool(const Bytes &)> keep)
{
    const std::lock_guard lock(state_->mutex);
    state_->keep_crl = std::move(keep);
}

} // namespace vboard
