// SPDX-License-Identifier: Apache-2.0
#include "daemon/device_server.hpp"

#include "daemon/device_nodes.hpp"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <fcntl.h>
#include <filesystem>
#include <iterator>
#include <sys/socket.h>
#include <system_error>
#include <thread>

namespace vboard
{

namespace fs = std::filesystem;

struct DeviceServer::Connection {
    std::string device;
    Descriptor socket;
    std::mutex busy; // held while a packet is taken and answered
    bool opened = false;
    int flags = 0;
    int pid = 0; // of the process that opened it
    std::int64_t position = 0;
};

DeviceServer::DeviceServer(Board &board, WriteSink sink) : board_(board), sink_(std::move(sink)) {}

DeviceServer::~DeviceServer()
{
    while (!hang_up())
        continue;
}

bool DeviceServer::hang_up()
{
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(2);
    for (std::unique_lock lock(mutex_); !connections_.empty(); lock.lock()) {
        for (const auto &connection : connections_)
            shutdown(connection->socket.get(), SHUT_RDWR);
        lock.unlock();
        if (std::chrono::steady_clock::now() > end)
            return false;
        std::this_thread::sleep_for(std::chrono::microseconds(200));
    }
    return true;
}

void DeviceServer::make_nodes()
{
    nodes_.clear();
    for (const std::string &device : driver_devices(board_)) {
        const fs::path path = node_path(device);
        fs::create_directories(path.parent_path());
        Descriptor socket = listen_at(path, SOCK_SEQPACKET, 0666);
        const int on = 1;
        // The kernel then tells the sender of each packet, whoever shares the descriptor.
        setsockopt(socket.get(), SOL_SOCKET, SO_PASSCRED, &on, sizeof on);
        fcntl(socket.get(), F_SETFL, O_NONBLOCK);
        nodes_.push_back({device, std::move(socket)});
    }
}

std::vector<std::string> DeviceServer::devices() const
{
    std::vector<std::string> names;
    for (const Node &node : nodes_)
        names.push_back(node.device);
    return names;
}

std::vector<pollfd> DeviceServer::listeners() const
{
    std::vector<pollfd> waiting;
    for (const Node &node : nodes_)
        waiting.push_back({node.socket.get(), POLLIN, 0});
    return waiting;
}

void DeviceServer::accept_waiting(const std::vector<pollfd> &listening)
{
    for (const Node &node : nodes_) {
        const auto ready = [&](const pollfd &one) { return one.fd == node.socket.get() && one.revents != 0; };
        while (std::any_of(listening.begin(), listening.end(), ready)) {
            Descriptor socket(accept4(node.socket.get(), nullptr, nullptr, SOCK_CLOEXEC));
            if (!socket)
                break;
            auto connection = std::make_shared<Connection>();
            connection->device = node.device;
            connection->socket = std::move(socket);
            const std::lock_guard lock(mutex_);
            connections_.push_back(connection);
            try {
                std::thread(&DeviceServer::serve, this, connection).detach();
            } catch (const std::system_error &) {
                connections_.pop_back(); // out of threads: this one open fails, the board goes on
            }
        }
    }
}

void DeviceServer::serve(const std::shared_ptr<Connection> &connection)
{
    pollfd waiting{connection->socket.get(), POLLIN, 0};
    for (bool more = true; more;) {
        if (poll(&waiting, 1, -1) < 0 && errno != EINTR)
            break;
        const std::lock_guard lock(connection->busy);
        std::optional<Packet> packet = take_packet(connection->socket.get());
        if (packet && packet->data.empty() && !packet->channel)
            more = (waiting.revents & POLLHUP) == 0; // the last copy of the descriptor was closed
        else if (packet)
            more = handle(*connection, std::move(*packet));
        else
            more = (waiting.revents & (POLLHUP | POLLERR)) == 0;
    }
    if (connection->opened)
        board_.close(connection->device, connection->pid);
    const std::lock_guard lock(mutex_);
    connections_.remove(connection);
}

bool DeviceServer::handle(Connection &connection, Packet packet)
{
    if (packet.refused)
        return false;
    if (!packet.channel) {
        if (connection.opened)
            write(connection, packet.data, packet.pid);
        return connection.opened;
    }
    const std::optional<wire::Request> request = request_of(packet);
    return request && handle_request(connection, std::move(packet), *request);
}

bool DeviceServer::handle_request(Connection &connection, Packet packet, const wire::Request &request)
{
    Channel channel(std::move(packet.channel));
    if (connection.opened == (request.action == wire::Action::open))
        return false; // the first request is an open, and no other one
    switch (request.action) {
    case wire::Action::open: {
        const auto flags = static_cast<int>(request.number);
        const int error = board_.open(connection.device, flags, packet.pid);
        if (error == 0) {
            connection.opened = true;
            connection.flags = flags;
            connection.pid = packet.pid;
            // The board sends nothing of its own: a read that does not go through the shim finds the end of
            // the file instead of waiting for ever.
            shutdown(connection.socket.get(), SHUT_WR);
        }
        channel.done(error == 0 ? 0 : -1, error);
        return error == 0;
    }
    case wire::Action::ioctl: {
        const IoctlResult result =
            run_ioctl(board_, connection.device, request.number, request.argument, packet.pid, channel);
        channel.done(result.result, result.error);
        return true;
    }
    case wire::Action::read: {
        if ((connection.flags & O_ACCMODE) == O_WRONLY) {
            channel.done(-1, EBADF);
            return true;
        }
        const IoResult result =
            board_.read(connection.device, request.number, packet.pid, &connection.position);
        if (const int error = channel.store(request.argument, result.data.data(), result.data.size());
            error != 0)
            channel.done(-1, error);
        else
            channel.done(result.result, result.error);
        return true;
    }
    case wire::Action::write: {
        Bytes data(request.number);
        if (const int error = channel.fetch(request.argument, data.data(), data.size()); error != 0) {
            channel.done(-1, error);
            return true;
        }
        const IoResult result = write(connection, data, packet.pid);
        channel.done(result.result, result.error);
        return true;
    }
    case wire::Action::lseek: {
        const IoResult result =
            board_.seek(connection.device, static_cast<std::int64_t>(request.argument),
                        static_cast<int>(request.number), packet.pid, &connection.position);
        channel.done(result.result, result.error);
        return true;
    }
    }
    return false;
}

IoResult DeviceServer::write(Connection &connection, const Bytes &data, int pid)
{
    if ((connection.flags & O_ACCMODE) == O_RDONLY)
        return {-1, EBADF, {}};
    IoResult result = board_.write(connection.device, data, pid, &connection.position);
    if (result.result > 0 && static_cast<std::size_t>(result.result) <= data.size())
        sink_(connection.device,
              Bytes(data.begin(), std::next(data.begin(), static_cast<std::ptrdiff_t>(result.result))));
    return result;
}

bool DeviceServer::idle()
{
    const std::lock_guard lock(mutex_);
    for (const auto &connection : connections_) {
        const std::unique_lock busy(connection->busy, std::try_to_lock);
        char byte;
        if (!busy || recv(connection->socket.get(), &byte, 1, MSG_PEEK | MSG_DONTWAIT) >= 0 ||
            errno != EAGAIN)
            return false;
    }
    return true;
}

void DeviceServer::settle()
{
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(1);
    for (;;) {
        std::vector<pollfd> listening = listeners();
        if (poll(listening.data(), listening.size(), 0) > 0)
            accept_waiting(listening);
        if (idle() || std::chrono::steady_clock::now() > end)
            return;
        std::this_thread::sleep_for(std::chrono::microseconds(200));
    }
}

} // namespace vboard
