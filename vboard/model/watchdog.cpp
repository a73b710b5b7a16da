// SPDX-License-Identifier: Apache-2.0
// The watchdog: a counter of the periods in which nobody fed it. At first the kernel feeds it in each period.
// Who feeds it otherwise takes that over, and must go on with it.
#include "model/items.hpp"
#include "model/request_kind.hpp"
#include "model/state.hpp"
#include "model/tlv.hpp"

#include <moxboot/driver.h>

#include <cerrno>
#include <utility>

namespace vboard
{

void Board::State::start_watchdog()
{
    std::map<std::uint32_t, Bytes> &board = items[std::string(board_device)];
    // The switch is the driver's, not a thing that it keeps: a reset sets it as on a new board.
    if (const auto enable = board.find(item_code::watchdog_enable); enable != board.end()) {
        const auto device = profile.items.find(std::string(board_device));
        if (device != profile.items.end() && device->second.contains(item_code::watchdog_enable))
            enable->second = bytes_of(device->second.at(item_code::watchdog_enable));
    }
    watchdog = {};
    watchdog.threshold = profile.watchdog_threshold;
    if (const auto enable = board.find(item_code::watchdog_enable); enable != board.end())
        watchdog.enabled = word_of(enable->second) != 0;
}

void Board::State::item_was_set(const std::string &device, std::uint32_t code)
{
    if (device != board_device)
        return;
    if (code == item_code::watchdog_enable) {
        const bool enabled = word_of(items[device][code]) != 0;
        // Switched on again it goes on counting: switching is not feeding.
        if (enabled && !watchdog.enabled)
            watchdog.counter = 0;
        watchdog.enabled = enabled;
    }
    if (code == item_code::watchdog_clear) {
        watchdog.counter = 0;
        watchdog.kernel_feeder = false;
    }
}

std::optional<DrvbootWdtCommand> decode_wdt(const Bytes &data)
{
    if (data.size() != sizeof(DrvbootWdtCommand))
        return std::nullopt;
    Reader reader(data);
    DrvbootWdtCommand command = {};
    command.command = reader.word();
    command.value = reader.word();
    return command;
}

const char *wdt_command_name(std::uint32_t command)
{
    switch (command) {
    case DRVBOOT_WDT_CLEAR:
        return "wdt clear";
    case DRVBOOT_WDT_STOP_KERNEL_FEEDER:
        return "wdt stop kernel feeder";
    case DRVBOOT_WDT_SET_THRESHOLD:
        return "wdt set threshold";
    default:
        return "unknown";
    }
}

int Board::State::wdt_command(const DrvbootWdtCommand &command)
{
    switch (command.command) {
    case DRVBOOT_WDT_CLEAR:
        watchdog.counter = 0;
        return 0;
    case DRVBOOT_WDT_STOP_KERNEL_FEEDER:
        // There is nothing to stop a second time.
        return std::exchange(watchdog.kernel_feeder, false) ? 0 : EINVAL;
    case DRVBOOT_WDT_SET_THRESHOLD:
        if (command.value == 0)
            return EINVAL;
        watchdog.threshold = command.value;
        return 0;
    default:
        return EINVAL;
    }
}

bool Board::watchdog_tick()
{
    const std::lock_guard lock(state_->mutex);
    Watchdog &watchdog = state_->watchdog;
    if (!watchdog.enabled)
        return false;
    if (watchdog.kernel_feeder) {
        watchdog.counter = 0;
        return false;
    }
    return ++watchdog.counter >= watchdog.threshold;
}

Watchdog Board::watchdog() const
{
    const std::lock_guard lock(state_->mutex);
    return state_->watchdog;
}

} // namespace vboard
