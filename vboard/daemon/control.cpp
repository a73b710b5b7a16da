// SPDX-License-Identifier: Apache-2.0
#include "daemon/control.hpp"

#include "daemon/state.hpp"

#include <stdexcept>
#include <string>
#include <sys/socket.h>
#include <system_error>

namespace vboard
{

namespace fs = std::filesystem;
using nlohmann::json;

namespace
{

constexpr std::size_t longest_line = 1U << 20; // bytes

bool write_line(int fd, const json &object)
{
    const std::string line = object.dump(-1, ' ', false, json::error_handler_t::replace) + "\n";
    return send_all(fd, line.data(), line.size());
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

json ask(const Descriptor &connection, const json &request)
{
    if (!write_line(connection.get(), request))
        throw std::runtime_error("the board went away");
    json answer = json::parse(read_line(connection.get(), longest_line), nullptr, false);
    if (!answer.is_object())
        throw std::runtime_error("the board went away without an answer");
    if (answer.contains("error"))
        throw std::runtime_error(answer["error"].get<std::string>());
    return answer;
}

void serve(int connection, const ControlServer::Handler &handler)
{
    json answer;
    try {
        answer = handler(json::parse(read_line(connection, longest_line)));
    } catch (const std::exception &error) {
        answer = {{"error", error.what()}};
    }
    write_line(connection, answer);
}

} // namespace

ControlServer::ControlServer(const fs::path &path, const Handler &handler)
    : ConnectionServer(path, 0600, [handler](int connection) { serve(connection, handler); })
{
}

json ask_board(const fs::path &directory, const json &request)
{
    return ask(connect_board(directory), request);
}

pid_t board_process(const fs::path &directory)
{
    const Descriptor connection = connect_board(directory);
    // The kernel's word for it: the process may have another number where the caller is.
    ucred peer{};
    socklen_t size = sizeof peer;
    if (getsockopt(connection.get(), SOL_SOCKET, SO_PEERCRED, &peer, &size) != 0 || peer.pid <= 0)
        throw std::runtime_error("cannot tell which process the board in " + directory.string() + " runs in");
    ask(connection, {{"do", "ready"}});
    return peer.pid;
}

} // namespace vboard
