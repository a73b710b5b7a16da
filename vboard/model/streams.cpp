// SPDX-License-Identifier: Apache-2.0
// Reading and writing: text for the console, commands for the kernel's watchdog service. No other device of
// the board can be written, and none but the console can be read.
#include "model/request_kind.hpp"
#include "model/state.hpp"

#include <algorithm>
#include <cerrno>

namespace vboard
{

namespace
{

constexpr std::size_t kept_console = 0x10000;

} // namespace

void Board::State::print(const std::string &text)
{
    console += text;
    if (console.size() > kept_console)
        console.erase(0, console.size() - kept_console);
}

IoResult Board::read(const std::string &device, std::size_t /*count*/, int pid)
{
    const std::string no_variable;
    const auto fault = state_->begin({Op::read, device, std::nullopt, {}, no_variable});
    Event event = start_event(Op::read, device, pid);
    event.faulted = fault.has_value();
    std::unique_lock lock(state_->mutex);
    IoResult result;
    // Nobody types at the console.
    if (const int error = fault && fault->error != 0 ? fault->error
                          : device == console_device ? 0
                                                     : EINVAL;
        error != 0)
        result = {-1, error, {}};
    event.result = result.result;
    event.error = result.error;
    state_->journal.record(std::move(event), std::move(lock));
    return result;
}

IoResult Board::write(const std::string &device, const Bytes &data, int pid)
{
    const std::string no_variable;
    const auto fault = state_->begin({Op::write, device, std::nullopt, {}, no_variable});
    Event event = start_event(Op::write, device, pid);
    event.faulted = fault.has_value();
    const std::size_t taken =
        std::min(data.size(), fault && fault->cut ? std::size_t{*fault->cut} : data.size());
    const auto command = device == watchdog_device ? decode_wdt(data) : std::nullopt;
    if (device == watchdog_device)
        event.what = command ? wdt_command_name(command->command) : "unknown";
    if (command)
        event.sent = command->value;

    std::unique_lock lock(state_->mutex);
    int error = fault ? fault->error : 0;
    if (error == 0 && device == console_device) {
        event.value.assign(data.begin(), data.begin() + static_cast<std::ptrdiff_t>(taken));
        state_->print(event.value);
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
