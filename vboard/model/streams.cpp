// SPDX-License-Identifier: Apache-2.0
// Reading and writing: text for the console, commands for the kernel's watchdog service, revocation lists for
// their module, times for the clock. No other device of the board can be written, and none but the console
// and the module can be read.
#include "model/request_kind.hpp"
#include "model/state.hpp"

#include <algorithm>
#include <cerrno>

namespace vboard
{

namespace
{

constexpr std::size_t kept_console = 0x10000;
constexpr std::size_t longest_crl = 0x100000; // of a longer list only the beginning is taken

} // namespace

void Board::State::print(const std::string &text)
{
    console += text;
    if (console.size() > kept_console)
        console.erase(0, console.size() - kept_console);
}

IoResult Board::read(const std::string &device, std::size_t count, int pid, std::int64_t *position)
{
    const std::string no_variable;
    Event event = start_event(Op::read, device, pid);
    const auto fault = state_->begin({Op::read, device, std::nullopt, {}, no_variable});
    event.faulted = fault.has_value();
    std::unique_lock lock(state_->mutex);
    IoResult result;
    if (fault && fault->error != 0) {
        result = {-1, fault->error, {}};
    } else if (state_->is_crl(device)) {
        const std::size_t most = fault && fault->cut ? std::min<std::size_t>(count, *fault->cut) : count;
        result.data = state_->part_of_crl(position ? *position : 0, most);
        result.result = static_cast<std::int64_t>(result.data.size());
        if (position)
            *position += result.result;
    } else if (device != console_device) { // nobody types at the console
        result = {-1, EINVAL, {}};
    }
    event.result = result.result;
    event.error = result.error;
    state_->journal.record(std::move(event), std::move(lock));
    return result;
}

IoResult Board::write(const std::string &device, const Bytes &data, int pid, std::int64_t *position)
{
    const std::string no_variable;
    Event event = start_event(Op::write, device, pid);
    const auto fault = state_->begin({Op::write, device, std::nullopt, {}, no_variable});
    event.faulted = fault.has_value();
    const bool crl = state_->is_crl(device);
    const std::size_t most = crl ? std::min(data.size(), longest_crl) : data.size();
    const std::size_t taken = fault && fault->cut ? std::min<std::size_t>(most, *fault->cut) : most;
    const auto end_of_taken = data.begin() + static_cast<std::ptrdiff_t>(taken);
    const auto command = device == watchdog_device ? decode_wdt(data) : std::nullopt;
    if (device == watchdog_device)
        event.what = command ? wdt_command_name(command->command) : "unknown";
    if (command)
        event.sent = command->value;

    std::unique_lock lock(state_->mutex);
    int error = fault ? fault->error : 0;
    if (error == 0 && (device == console_device || device == clock_device)) {
        event.value.assign(data.begin(), end_of_taken);
        if (device == console_device)
            state_->print(event.value);
    } else if (error == 0 && crl) {
        error = state_->replace_crl({data.begin(), end_of_taken});
        if (error == 0 && position)
            *position = static_cast<std::int64_t>(taken); // the end of what is there now
    } else if (error == 0 && command) {
        // Half a command is none.
        error = taken == data.size() ? state_->wdt_command(*command) : 0;
    } else if (error == 0) {
        error = EINVAL;
    }
    IoResult result{error == 0 ? static_cast<std::int64_t>(taken) : -1, error, {}};
    event.result = result.result;
    event.error = error;
    state_->journal.record(std::move(event), std::move(lock));
    return result;
}

} // namespace vboard
