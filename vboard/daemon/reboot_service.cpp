// SPDX-License-Identifier: Apache-2.0
#include "daemon/reboot_service.hpp"

#include "daemon/reboot_words.hpp"

#include <cstring>
#include <sys/socket.h>
#include <unistd.h>

namespace vboard
{

namespace
{

// As the kernel tells it, whatever the caller says.
bool is_root_of_board(int connection)
{
    ucred peer{};
    socklen_t size = sizeof peer;
    return getsockopt(connection, SOL_SOCKET, SO_PEERCRED, &peer, &size) == 0 && peer.uid == geteuid();
}

void serve(int connection, const std::function<void()> &reboot)
{
    if (read_line(connection, 64) + "\n" != reboot_words::request)
        return;
    if (!is_root_of_board(connection)) {
        send_all(connection, reboot_words::not_permitted, std::strlen(reboot_words::not_permitted));
        return;
    }
    reboot();
    // Held until the caller is ended: it takes the end of the connection for a failure.
    char byte;
    while (recv(connection, &byte, 1, 0) > 0)
        continue;
}

} // namespace

RebootService::RebootService(const std::function<void()> &reboot)
    : ConnectionServer(reboot_words::socket_path, 0777,
                       [reboot](int connection) { serve(connection, reboot); })
{
}

} // namespace vboard
