// SPDX-License-Identifier: Apache-2.0
// Talking to a running board from outside: one JSON object with the field "do" on a line, one JSON object
// back. An answer with the field "error" tells in words what went wrong.
#pragma once

#include "daemon/connection_server.hpp"

#include <nlohmann/json.hpp>

#include <functional>
#include <sys/types.h>

namespace vboard
{

class ControlServer : public ConnectionServer
{
  public:
    using Handler = std::function<nlohmann::json(const nlohmann::json &)>;

    // The handler runs on a thread of the caller's connection; what it throws becomes the answer's "error".
    ControlServer(const std::filesystem::path &path, const Handler &handler);
};

// Sends a request to the board that runs in `directory`. Throws std::runtime_error when none does or it
// refuses.
nlohmann::json ask_board(const std::filesystem::path &directory, const nlohmann::json &request);

// The process that the board in `directory` runs in. Returns when the board is ready for programs: one that
// is being reset is waited for. Throws std::runtime_error when there is none.
pid_t board_process(const std::filesystem::path &directory);

} // namespace vboard
