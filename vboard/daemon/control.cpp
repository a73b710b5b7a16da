// SPDX-License-Identifier: Apache-2.0
#include "daemon/control.hpp"

#include "daemon/state.hpp"

#include <cerrno>
#include <chrono>
#include <memory>
#include <stdexcept>
#include <string>
#include <sys/socket.h>
#include <system_error>
#include <thread>

namespace vboard
{

namespace fs = std::filesystem;
using nlohmann::json;

namespace
{

constexpr std::size_t longest_line = 1024 * 1024;

// A line without its end; empty when the other side closed early or went on for too long.
std::string read_line(int fd)
{
    std::string line;
    char part[4096];
    while (line.size() < longest_line) {
        const ssize_t length = recv(fd, part, sizeof part, 0);
        if (length < 0 && errno == EINTR)
            continue;
        if (length <= 0)
            break;
        line.append(part, static_cast<std::size_t>(length));
        if (const std::size_t end = line.find('\n'); end != std::string::npos)
            return line.substr(0, end);
    }
    return {};
}

bool write_line(int fd, const json &object)
{
    const std::string line = object.dump(-1, ' ', false, json::error_handler_t::replace) + "\n";
    std::size_t sent = 0;
    while (sent < line.size()) {
        const ssize_t length = send(fd, line.data() + sent, line.size() - sent, MSG_NOSIGNAL);
        if (length < 0 && errno != EINTR)
            return false;
        sent += length > 0 ? static_cast<std::size_t>(length) : 0;
    }
    return true;
}

Descriptor connect_board(const fs::path &directory)
{
    try {
        return connect_to(control_path(directory), SOCK_STREAM);
    } catch (const std::system_error &error) {
        // The socket of a board that was killed is still there, but nobody listens.
        if (error.code() != std::errc::no_such_file_or_directory &&
            error.code() != std::errc::connection_refused)
            throw std::runtime_error(std::string("cannot reach the board: ") + error.what());
    }
    throw std::runtime_error("no board is running in " + directory.string() + "; \"vboard up\" starts one");
}

} // namespace

ControlServer::ControlServer(const fs::path &path, Handler handler)
    : socket_(listen_at(path, SOCK_STREAM, 0600)), handler_(std::move(handler))
{
}

void ControlServer::accept_waiting()
{
    auto connection = std::make_shared<Descriptor>(accept4(socket_.get(), nullptr, nullptr, SOCK_CLOEXEC));
    if (!*connection)
        return;
    busy_++;
    try {
        std::thread([this, connection] {
            serve(*connection);
            busy_--;
        }).detach();
    } catch (const std::system_error &) {
        busy_--; // out of threads: this caller sees the connection close
    }
}

void ControlServer::settle() const
{
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(1);
    while (busy_ > 0 && std::chrono::steady_clock::now() < end)
        std::this_thread::sleep_for(std::chrono::microseconds(200));
}

void ControlServer::serve(const Descriptor &connection) const
{
    json answer;
    try {
        answer = handler_(json::parse(read_line(connection.get())));
    } catch (const std::exception &error) {
        answer = {{"error", error.what()}};
    }
    write_line(connection.get(), answer);
}

json ask_board(const fs::path &directory, const json &request)
{
    const Descriptor connection = connect_board(directory);
    if (!write_line(connection.get(), request))
        throw std::runtime_error("the board went away");
    const json answer = json::parse(read_line(connection.get()), nullptr, false);
    if (!answer.is_object())
        throw std::runtime_error("the board went away without an answer");
    if (answer.contains("error"))
        throw std::runtime_error(answer["error"].get<std::string>());
    return answer;
}

pid_t board_process(const fs::path &directory)
{
    const Descriptor connection = connect_board(directory);
    ucred peer{};
    socklen_t size = sizeof peer;
    if (getsockopt(connection.get(), SOL_SOCKET, SO_PEERCRED, &peer, &size) != 0 || peer.pid <= 0)
        throw std::runtime_error("cannot tell which process the board in " + directory.string() + " runs in");
    return peer.pid;
}

} // namespace vboard
