// SPDX-License-Identifier: Apache-2.0
#include "log_service.hpp"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <thread>
#include <unistd.h>

namespace bench
{

namespace
{

void take_datagrams(int socket)
{
    char datagram[1024];
    while (recv(socket, datagram, sizeof datagram, 0) > 0) {
    }
}

} // namespace

void serve_log()
{
    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    std::strcpy(address.sun_path, "/dev/log");
    const int fd = socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0);
    if (bind(fd, reinterpret_cast<sockaddr *>(&address), sizeof address) != 0) {
        std::perror("bench: /dev/log (start this program with `vboard tree --`)");
        std::exit(1);
    }
    std::thread(take_datagrams, fd).detach();
}

int silence()
{
    std::fflush(stdout);
    const int before = dup(STDOUT_FILENO);
    const int nowhere = open("/dev/null", O_WRONLY);
    dup2(nowhere, STDOUT_FILENO);
    dup2(nowhere, STDERR_FILENO);
    return before;
}

} // namespace bench
