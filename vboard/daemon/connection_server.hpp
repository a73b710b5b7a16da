// SPDX-License-Identifier: Apache-2.0
// A stream socket in the file tree, each connection served on a thread of its own.
#pragma once

#include "daemon/descriptor.hpp"

#include <atomic>
#include <functional>
#include <memory>
#include <string>

namespace vboard
{

class ConnectionServer
{
  public:
    using Serve = std::function<void(int connection)>;

    ConnectionServer(std::filesystem::path path, unsigned mode, Serve serve);

    int listener() const
    {
        return socket_.get();
    }
    void accept_waiting();
    // Makes the socket anew: somebody may have removed it. Connections that there are go on.
    void listen_again();
    // Waits, for a second at most, until what has been asked is answered.
    void settle() const;

  private:
    // Outlives the server for as long as a thread needs it.
    struct Shared {
        Serve serve;
        std::atomic<int> busy = 0;
    };
    std::filesystem::path path_;
    unsigned mode_;
    Descriptor socket_;
    std::shared_ptr<Shared> shared_;
};

// A line without its end; empty when the other side closed early or went on for longer than `longest`.
std::string read_line(int fd, std::size_t longest);
// False when the other side is gone.
bool send_all(int fd, const void *data, std::size_t size);
// False when the other side closed before.
bool receive_all(int fd, void *data, std::size_t size);

} // namespace vboard
