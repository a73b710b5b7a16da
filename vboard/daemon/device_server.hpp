// SPDX-License-Identifier: Apache-2.0
// The board's device nodes: sockets in the board's "/dev", served with one thread a connection, so that a
// request that is told to take its time (a planned delay) holds up nobody else.
#pragma once

#include "daemon/channel.hpp"
#include "model/board.hpp"

#include <functional>
#include <list>
#include <memory>
#include <mutex>
#include <poll.h>
#include <string>
#include <vector>

namespace vboard
{

class DeviceServer
{
  public:
    // Gets what a device took from a write.
    using WriteSink = std::function<void(const std::string &device, const Bytes &data)>;

    DeviceServer(Board &board, WriteSink sink);
    ~DeviceServer();
    DeviceServer(const DeviceServer &) = delete;
    DeviceServer &operator=(const DeviceServer &) = delete;

    // Makes the nodes of all devices that the board serves, anew when they were there before. To be called in
    // the board's file tree.
    void make_nodes();
    std::vector<std::string> devices() const;

    // For the caller's poll loop: the listening sockets, and taking new connections from them.
    std::vector<pollfd> listeners() const;
    void accept_waiting(const std::vector<pollfd> &listening);

    // Waits, for a second at most, until all that programs have sent so far is done.
    void settle();

    // Ends all connections: no program has a device open any more. Waits, for two seconds at most, for
    // requests that are told to take their time; false when some still do.
    bool hang_up();

  private:
    struct Node {
        std::string device;
        Descriptor socket;
    };
    struct Connection;

    void serve(const std::shared_ptr<Connection> &connection);
    bool handle(Connection &connection, Packet packet);
    bool handle_request(Connection &connection, Packet packet, const wire::Request &request);
    IoResult write(Connection &connection, const Bytes &data, int pid);
    bool idle();

    Board &board_;
    WriteSink sink_;
    std::vector<Node> nodes_;
    std::mutex mutex_; // guards connections_
    std::list<std::shared_ptr<Connection>> connections_;
};

} // namespace vboard
