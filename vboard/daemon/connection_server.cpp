// SPDX-License-Identifier: Apache-2.0
#include "daemon/connection_server.hpp"

#include <cerrno>
#include <chrono>
#include <fcntl.h>
#include <sys/socket.h>
#include <system_error>
#include <thread>

namespace vboard
{

ConnectionServer::ConnectionServer(std::filesystem::path path, unsigned mode, Serve serve)
    : path_(std::move(path)), mode_(mode), shared_(std::make_shared<Shared>())
{
    shared_->serve = std::move(serve);
    listen_again();
}

void ConnectionServer::listen_again()
{
    std::filesystem::create_directories(path_.parent_path());
    socket_ = Descriptor(); // who waits to be taken in is turned away
    socket_ = listen_at(path_, SOCK_STREAM, mode_);
    fcntl(socket_.get(), F_SETFL, O_NONBLOCK); // a caller may be gone by the time it is taken in
}

void ConnectionServer::accept_waiting()
{
    auto connection = std::make_shared<Descriptor>(accept4(socket_.get(), nullptr, nullptr, SOCK_CLOEXEC));
    if (!*connection)
        return;
    shared_->busy++;
    try {
        std::thread([shared = shared_, connection] {
            shared->serve(connection->get());
            shared->busy--;
        }).detach();
    } catch (const std::system_error &) {
        shared_->busy--; // out of threads: this caller sees the connection close
    }
}

void ConnectionServer::settle() const
{
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(1);
    while (shared_->busy > 0 && std::chrono::steady_clock::now() < end)
        std::this_thread::sleep_for(std::chrono::microseconds(200));
}

std::string read_line(int fd, std::size_t longest)
{
    std::string line;
    char part[4096];
    while (line.size() < longest) {
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

bool send_all(int fd, const void *data, std::size_t size)
{
    const char *rest = static_cast<const char *>(data);
    while (size > 0) {
        const ssize_t length = send(fd, rest, size, MSG_NOSIGNAL);
        if (length < 0 && errno != EINTR)
            return false;
        const std::size_t sent = length > 0 ? static_cast<std::size_t>(length) : 0;
        rest += sent;
        size -= sent;
    }
    return true;
}

bool receive_all(int fd, void *data, std::size_t size)
{
    char *rest = static_cast<char *>(data);
    while (size > 0) {
        const ssize_t length = recv(fd, rest, size, 0);
        if (length < 0 && errno == EINTR)
            continue;
        if (length <= 0)
            return false;
        rest += length;
        size -= static_cast<std::size_t>(length);
    }
    return true;
}

} // namespace vboard
