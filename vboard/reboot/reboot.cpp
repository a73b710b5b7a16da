// SPDX-License-Identifier: Apache-2.0
// What stands at "/sbin/reboot" in a board's tree: asks the board's process for a reset, and is ended by it
// like every program. It also stands where the machine has other commands that could take it down, and
// refuses.
#include "daemon/reboot_words.hpp"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <sys/auxv.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace
{

namespace words = vboard::reboot_words;

// The name that it was started under, whatever the first argument says.
const char *own_name()
{
    const char *path = reinterpret_cast<const char *>(getauxval(AT_EXECFN));
    if (!path)
        return "?";
    const char *slash = std::strrchr(path, '/');
    return slash ? slash + 1 : path;
}

int fail(const char *words)
{
    std::fprintf(stderr, "%s: %s\n", own_name(), words);
    return 1;
}

int connect_board()
{
    const int fd = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    std::snprintf(address.sun_path, sizeof address.sun_path, "%s", words::socket_path);
    const bool connected =
        fd >= 0 && connect(fd, reinterpret_cast<sockaddr *>(&address), sizeof address) == 0;
    return connected ? fd : -1;
}

int reboot()
{
    const int board = connect_board();
    if (board < 0)
        return fail("no board's process runs here, so there is nothing to reset");
    if (send(board, words::request, std::strlen(words::request), MSG_NOSIGNAL) < 0)
        return fail("the board's process went away");
    // The board ends this program along with all others. An answer comes only when it refuses.
    char answer[256];
    std::size_t length = 0;
    for (;;) {
        const ssize_t part = recv(board, answer + length, sizeof answer - 1 - length, 0);
        if (part < 0 && errno == EINTR)
            continue;
        if (part <= 0)
            break;
        length += static_cast<std::size_t>(part);
    }
    answer[length] = '\0';
    return fail(length > 0 ? answer : "the board's process went away");
}

} // namespace

int main(int argc, char **argv)
{
    // Before the name: a caller finds out so whose command this is, whatever it is called.
    if (argc > 1 && std::strcmp(argv[1], "--version") == 0) {
        std::printf("vboard reboot " VBOARD_VERSION "\n");
        return 0;
    }
    if (std::strcmp(own_name(), "reboot") != 0 && std::strcmp(own_name(), "vboard-reboot") != 0)
        return fail("not on a virtual board");
    return reboot();
}
