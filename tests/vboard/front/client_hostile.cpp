// SPDX-License-Identifier: Apache-2.0
// A program that sends the board what no shim would send. The board refuses it and goes on serving others.
#include "client.hpp"
#include "front/wire.hpp"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>
#include <vector>

namespace client
{

namespace
{

namespace wire = vboard::wire;

int connect_raw()
{
    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    std::strcpy(address.sun_path, "/dev/board0");
    const int fd = socket(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0);
    check(connect(fd, reinterpret_cast<sockaddr *>(&address), sizeof address) == 0, "connect");
    return fd;
}

// Sends the bytes with `count` descriptors. The end of the channel that is ours.
int send_raw(int fd, const void *data, std::size_t size, int count)
{
    int pair[2];
    check(socketpair(AF_UNIX, SOCK_SEQPACKET, 0, pair) == 0, "socketpair");
    iovec piece{const_cast<void *>(data), size};
    alignas(cmsghdr) char control[CMSG_SPACE(sizeof(int) * 16)] = {};
    msghdr message = {};
    message.msg_iov = &piece;
    message.msg_iovlen = 1;
    if (count > 0) {
        message.msg_control = control;
        message.msg_controllen = CMSG_SPACE(sizeof(int) * static_cast<unsigned>(count));
        cmsghdr *rights = CMSG_FIRSTHDR(&message);
        rights->cmsg_level = SOL_SOCKET;
        rights->cmsg_type = SCM_RIGHTS;
        rights->cmsg_len = CMSG_LEN(sizeof(int) * static_cast<unsigned>(count));
        for (int i = 0; i < count; i++)
            std::memcpy(CMSG_DATA(rights) + sizeof(int) * static_cast<unsigned>(i), &pair[1], sizeof(int));
    }
    check(sendmsg(fd, &message, MSG_NOSIGNAL) >= 0, "sendmsg");
    close(pair[1]);
    return pair[0];
}

// The board closes a connection that does not keep to the rules, and answers nothing.
void check_refused(int fd, int channel, const char *what)
{
    char answer[64];
    check(recv(channel, answer, sizeof answer, 0) == 0, std::string(what) + ": was answered");
    check(recv(fd, answer, sizeof answer, 0) <= 0, std::string(what) + ": the connection lives");
    close(channel);
    close(fd);
}

wire::Request request(wire::Action action, std::uint32_t number, std::uint32_t unused)
{
    return {wire::magic, action, 0, number, unused};
}

void hostile(int, char **)
{
    const wire::Request open_request = request(wire::Action::open, 0, 0);
    wire::Request bad = open_request;
    int fd = connect_raw();
    check_refused(fd, send_raw(fd, &bad, 7, 1), "half a header");
    bad.magic++;
    fd = connect_raw();
    check_refused(fd, send_raw(fd, &bad, sizeof bad, 1), "another protocol");
    bad = request(static_cast<wire::Action>(99), 0, 0);
    fd = connect_raw();
    check_refused(fd, send_raw(fd, &bad, sizeof bad, 1), "an unknown action");
    bad = request(wire::Action::open, 0, 1000);
    fd = connect_raw();
    check_refused(fd, send_raw(fd, &bad, sizeof bad, 1), "a field that is not zero");
    bad = request(wire::Action::ioctl, 3, 0);
    fd = connect_raw();
    check_refused(fd, send_raw(fd, &bad, sizeof bad, 1), "a request before the open");
    fd = connect_raw();
    check_refused(fd, send_raw(fd, &open_request, sizeof open_request, 3), "three channels");
    const std::vector<char> huge(wire::max_payload + 4096, 'x');
    fd = connect_raw();
    check_refused(fd, send_raw(fd, huge.data(), huge.size(), 1), "too long a packet");

    // One that opens properly, asks for an item, and then lies about its memory.
    for (const std::size_t lie : {std::size_t{0}, std::size_t{4}, std::size_t{8}, std::size_t{4096}}) {
        fd = connect_raw();
        wire::Answer answer = {};
        int channel = send_raw(fd, &open_request, sizeof open_request, 1);
        check(recv(channel, &answer, sizeof answer, 0) == sizeof answer && answer.result == 0, "open");
        close(channel);
        const wire::Request get = request(wire::Action::ioctl, 3, 0);
        wire::Request with_argument = get;
        with_argument.argument = 0x1000;
        channel = send_raw(fd, &with_argument, sizeof with_argument, 1);
        check(recv(channel, &answer, sizeof answer, 0) == sizeof answer && answer.step == wire::Step::fetch,
              "fetch");
        std::vector<char> wrong(lie, 'y');
        if (lie >= sizeof(wire::Fetched)) {
            const wire::Fetched head = {0, 0xffffffff};
            std::memcpy(wrong.data(), &head, sizeof head);
        }
        if (lie > 0)
            check(send(channel, wrong.data(), wrong.size(), MSG_NOSIGNAL) >= 0, "send a lie");
        else
            shutdown(channel, SHUT_WR);
        check(recv(channel, &answer, sizeof answer, 0) == sizeof answer && answer.step == wire::Step::done &&
                  answer.result == -1 && answer.error == EFAULT,
              "a lie about memory was believed");
        close(channel);
        close(fd);
    }
    check_query(open_board(), "after hostile packets");
}

} // namespace

const Scenario hostile_scenarios[] = {{"hostile", hostile}, {nullptr, nullptr}};

} // namespace client
