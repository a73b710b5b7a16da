// SPDX-License-Identifier: Apache-2.0
#include "daemon/syslog_socket.hpp"

#include <array>
#include <cstdio>
#include <cstdlib>
#include <sys/socket.h>

namespace vboard
{

SyslogSocket::SyslogSocket(Sink sink)
    : socket_(listen_at("/dev/log", SOCK_DGRAM, 0666)), sink_(std::move(sink))
{
}

void SyslogSocket::take_waiting() const
{
    std::array<char, 65536> buffer;
    for (;;) {
        const ssize_t length = recv(socket_.get(), buffer.data(), buffer.size(), MSG_DONTWAIT);
        if (length < 0)
            return;
        sink_(syslog_line(std::string(buffer.data(), static_cast<std::size_t>(length))));
    }
}

std::string syslog_line(const std::string &datagram)
{
    std::string line = "? ";
    std::size_t start = 0;
    if (datagram.starts_with("<")) {
        char *end = nullptr;
        const unsigned long priority = std::strtoul(datagram.c_str() + 1, &end, 10);
        if (*end == '>') {
            line = std::to_string(priority / 8) + "." + std::to_string(priority % 8) + " ";
            start = static_cast<std::size_t>(end - datagram.c_str()) + 1;
        }
    }
    for (const char c : datagram.substr(start)) {
        const auto byte = static_cast<unsigned char>(c);
        char shown[8];
        if (byte >= 0x20 && byte != 0x7f)
            line.push_back(c);
        else if (std::snprintf(shown, sizeof shown, "\\x%02x", byte) > 0)
            line += shown;
    }
    return line + "\n";
}

} // namespace vboard
