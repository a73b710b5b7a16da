// SPDX-License-Identifier: Apache-2.0
#include "cuse/arrival.hpp"

#include "model/items.hpp"
#include "model/request_kind.hpp"
#include "model/tlv.hpp"

#include <algorithm>
#include <iterator>
#include <stdexcept>

namespace vboard
{

namespace
{

constexpr struct {
    const char *name;
    Cause cause;
} causes[] = {{"auto", Cause::automatic}, {"none", Cause::nothing},      {"soft", Cause::soft},
              {"cold", Cause::cold},      {"watchdog", Cause::watchdog}, {"power-cut", Cause::power_cut}};

bool watchdog_on(const DriverState &state)
{
    const auto items = state.items.find(std::string(board_device));
    if (items == state.items.end())
        return false;
    const auto enable = items->second.find(item_code::watchdog_enable);
    return enable != items->second.end() && word_of(enable->second) != 0;
}

} // namespace

Cause cause_by_name(const std::string &name)
{
    const auto *found = std::ranges::find_if(causes, [&](const auto &one) { return name == one.name; });
    if (found == std::end(causes))
        throw std::runtime_error("\"" + name +
                                 "\" takes no board down; there are auto, none, soft, cold, watchdog and "
                                 "power-cut");
    return found->cause;
}

std::optional<Reset> reset_since(const KeptDriver &kept, const std::string &boot, Reset reboot, Cause cause)
{
    switch (cause) {
    case Cause::nothing:
        return std::nullopt;
    case Cause::soft:
        return Reset::soft;
    case Cause::cold:
        return Reset::cold;
    case Cause::watchdog:
        return Reset::watchdog;
    case Cause::power_cut:
        return Reset::power_cut;
    case Cause::automatic:
        break;
    }
    if (!boot.empty() && kept.boot == boot)
        return std::nullopt;
    if (kept.ended || !kept.state.notice.empty())
        return reboot;
    return watchdog_on(kept.state) ? Reset::watchdog : Reset::power_cut;
}

void arrive(Board &board, const State &state, Cause cause)
{
    state.restore_items(board);
    board.set_crl(state.crl());
    const std::optional<KeptDriver> kept = kept_driver(state.directory());
    if (!kept)
        return;
    board.set_driver_state(kept->state);
    const std::optional<Reset> reset = reset_since(*kept, boot_id(), board.reboot_kind(), cause);
    if (!reset)
        return;
    board.reset(*reset);
    if (*reset == Reset::power_cut)
        state.restore_items(board); // what was set from outside is the board's make
}

} // namespace vboard
