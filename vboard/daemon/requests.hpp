// SPDX-License-Identifier: Apache-2.0
// What a running board does for the vboard command.
#pragma once

#include "daemon/resets.hpp"
#include "daemon/state.hpp"
#include "model/board.hpp"

#include <nlohmann/json.hpp>

#include <functional>
#include <shared_mutex>

namespace vboard
{

struct RequestContext {
    Board &board;
    State &state;
    std::vector<std::string> devices;
    std::function<void()> stop; // takes the board down once the answer is on its way
    Resets &resets;
    std::function<Reset()> reboot_kind; // what the board's own reboot command leads to now
    std::shared_mutex &gate;            // held alone while the board is reset
    // "tree": programs are started in the board's file tree; "cuse": the devices are the machine's own, and
    // so are the programs.
    std::string front;
    std::function<void()> changed; // told when a request has changed what the driver holds; may be empty
};

// Throws std::exception, in words, for a request that cannot be fulfilled.
nlohmann::json fulfil(const RequestContext &context, const nlohmann::json &request);

} // namespace vboard
