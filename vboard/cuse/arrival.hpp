// SPDX-License-Identifier: Apache-2.0
// A board comes up in a directory: as a new one, or as the one that went down there.
#pragma once

#include "cuse/driver_keeper.hpp"
#include "daemon/state.hpp"

#include <string>

namespace vboard
{

// What took the board down, when whoever starts it knows. `automatic`: it is told from what is there.
enum class Cause { automatic, nothing, soft, cold, watchdog, power_cut };

// By its name ("auto", "none", "soft", "cold", "watchdog", "power-cut"). Throws std::runtime_error.
Cause cause_by_name(const std::string &name);

// The reset that lies between what was kept and now; nothing when the board only lost its process. `boot` is
// what boot_id() tells, `reboot` the kind of reset that a reboot of this board is.
//
// A board that was switched off or has given notice was rebooted. One that went without a word was bitten by
// its watchdog when that was on, and lost its power otherwise.
std::optional<Reset> reset_since(const KeptDriver &kept, const std::string &boot, Reset reboot, Cause cause);

// Fills the board with what its directory has, and resets it as it takes.
void arrive(Board &board, const State &state, Cause cause);

} // namespace vboard
