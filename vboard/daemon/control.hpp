// SPDX-License-Identifier: Apache-2.0
// Talking to a running board from outside: one JSON object with the field "do" on a line, one JSON object
// back. An answer with the field "error" tells in words what went wrong.
#pragma once

#include "daemon/descriptor.hpp"

#include <nlohmann/json.hpp>

#include <atomic>
#include <functional>
#include <sys/types.h>

namespace vboard
{

class ControlServer
{
  public:
    using Handler = std::function<nlohmann::json(const nlohmann::json &)>;

    // The handler runs on a thread of the caller's connection; what it throws becomes the answer's "error".
    ControlServer(const std::filesystem::path &path, Handler handler);

    int listener() const
    {
        return socket_.get();
    }
    void accept_waiting();
    // Waits, for a second at most, until what has been asked is answered.
    void settle() const;

  private:
    void serve(const Descriptor &connection) const;
    Descriptor socket_;
    Handler handler_;
    std::atomic<int> busy_ = 0;
};

// Sends a request to the board that runs in `directory`. Throws std::runtime_error when none does or it
// refuses.
nlohmann::json ask_board(const std::filesystem::path &directory, const nlohmann::json &request);

// The process that the board in `directory` runs in. Throws std::runtime_error when there is none.
pid_t board_process(const std::filesystem::path &directory);

} // namespace vboard
