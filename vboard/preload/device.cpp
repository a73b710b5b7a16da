// SPDX-License-Identifier: Apache-2.0
#include "preload/device.hpp"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace vboard::preload
{

namespace
{

// Lets a function look around without leaving a trace in errno.
struct KeepErrno {
    int saved = errno;
    ~KeepErrno()
    {
        errno = saved;
    }
};

void close_quietly(int fd)
{
    const KeepErrno keep;
    close(fd);
}

ssize_t send_packet(int fd, const msghdr &message)
{
    for (;;) {
        const ssize_t sent = sendmsg(fd, &message, MSG_NOSIGNAL);
        if (sent >= 0 || (errno != EINTR && errno != EAGAIN))
            return sent;
        // A program may have made its descriptor non-blocking; a driver's request waits all the same.
        pollfd room{fd, POLLOUT, 0};
        if (errno == EAGAIN)
            poll(&room, 1, -1);
    }
}

ssize_t receive_packet(int fd, iovec *pieces, std::size_t count, int flags)
{
    msghdr message{};
    message.msg_iov = pieces;
    message.msg_iovlen = count;
    for (;;) {
        const ssize_t length = recvmsg(fd, &message, flags);
        if (length >= 0 || errno != EINTR)
            return length;
    }
}

bool send_request(int fd, const wire::Request &request, int channel)
{
    iovec piece{const_cast<wire::Request *>(&request), sizeof request};
    alignas(cmsghdr) char control[CMSG_SPACE(sizeof channel)] = {};
    msghdr message{};
    message.msg_iov = &piece;
    message.msg_iovlen = 1;
    message.msg_control = control;
    message.msg_controllen = sizeof control;
    cmsghdr *rights = CMSG_FIRSTHDR(&message);
    rights->cmsg_level = SOL_SOCKET;
    rights->cmsg_type = SCM_RIGHTS;
    rights->cmsg_len = CMSG_LEN(sizeof channel);
    std::memcpy(CMSG_DATA(rights), &channel, sizeof channel);
    return send_packet(fd, message) >= 0;
}

// The address of a 32-bit program has no high half; nullptr stands for one that cannot be.
void *pointer(std::uint64_t address)
{
    const auto value = static_cast<std::uintptr_t>(address);
    return value == address ? reinterpret_cast<void *>(value) : nullptr;
}

// The kernel copies from and into the caller's memory, so a bad address is found out without a crash.
bool fetch(int channel, const wire::Answer &answer)
{
    wire::Fetched head{0, answer.size};
    iovec pieces[2] = {{&head, sizeof head}, {pointer(answer.address), answer.size}};
    msghdr message{};
    message.msg_iov = pieces;
    message.msg_iovlen = 2;
    if (send_packet(channel, message) >= 0)
        return true;
    if (errno != EFAULT)
        return false;
    head = {EFAULT, 0};
    message.msg_iovlen = 1;
    return send_packet(channel, message) >= 0;
}

// Takes the packet that `head` is the beginning of off the channel, its payload to `target`. EFAULT for a bad
// target.
bool take(int channel, const wire::Answer &head, void *target)
{
    wire::Answer again;
    const std::uint32_t payload = head.step == wire::Step::store ? head.size : 0;
    iovec pieces[2] = {{&again, sizeof again}, {target, payload}};
    const ssize_t length = receive_packet(channel, pieces, payload ? 2 : 1, 0);
    // An emulator takes what fits when only a later piece is out of its program's memory.
    if (length >= 0 && static_cast<std::size_t>(length) < sizeof again + payload)
        errno = EFAULT;
    return length >= 0 && static_cast<std::size_t>(length) == sizeof again + payload;
}

ssize_t follow(int channel)
{
    bool fault = false;
    for (;;) {
        wire::Answer head;
        iovec piece{&head, sizeof head};
        const ssize_t length = receive_packet(channel, &piece, 1, MSG_PEEK | MSG_TRUNC);
        if (length < 0 || !wire::valid(head, static_cast<std::size_t>(length)))
            break;
        if (!take(channel, head, pointer(head.address))) {
            if (errno != EFAULT)
                break;
            fault = true;
        }
        if (head.step == wire::Step::fetch && !fetch(channel, head))
            break;
        if (head.step == wire::Step::done) {
            if (fault || head.result == -1)
                errno = fault ? EFAULT : head.error;
            return fault ? -1 : static_cast<ssize_t>(head.result);
        }
    }
    errno = EIO; // the board went away, or what came is not of this protocol
    return -1;
}

bool connect_node(int fd, int directory, const char *path)
{
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    if (std::strlen(path) < sizeof address.sun_path && (directory == AT_FDCWD || path[0] == '/')) {
        std::strcpy(address.sun_path, path);
        return connect(fd, reinterpret_cast<sockaddr *>(&address), sizeof address) == 0;
    }
    // Too long for a socket address, or relative to an open directory: by way of a descriptor of the node.
    const int node = openat(directory, path, O_PATH | O_CLOEXEC);
    if (node < 0)
        return false;
    std::snprintf(address.sun_path, sizeof address.sun_path, "/proc/self/fd/%d", node);
    const bool connected = connect(fd, reinterpret_cast<sockaddr *>(&address), sizeof address) == 0;
    close_quietly(node);
    return connected;
}

} // namespace

bool is_device(int fd)
{
    const KeepErrno keep;
    sockaddr_un address{};
    socklen_t length = sizeof address;
    if (getpeername(fd, reinterpret_cast<sockaddr *>(&address), &length) != 0 ||
        address.sun_family != AF_UNIX || std::strncmp(address.sun_path, "/dev/", 5) != 0)
        return false;
    int type = 0;
    length = sizeof type;
    return getsockopt(fd, SOL_SOCKET, SO_TYPE, &type, &length) == 0 && type == SOCK_SEQPACKET;
}

int open_device(int directory, const char *path, int flags)
{
    const int fd = socket(AF_UNIX, SOCK_SEQPACKET | ((flags & O_CLOEXEC) ? SOCK_CLOEXEC : 0), 0);
    if (fd < 0)
        return -1;
    // A pipe without a reader and a foreign socket end up here too; they keep the answer that the kernel
    // gave.
    if (!connect_node(fd, directory, path) || !is_device(fd)) {
        close(fd);
        errno = ENXIO;
        return -1;
    }
    if (call_device(fd, wire::Action::open, static_cast<std::uint32_t>(flags), 0) < 0) {
        close_quietly(fd);
        return -1;
    }
    if (flags & O_NONBLOCK) {
        const KeepErrno keep;
        fcntl(fd, F_SETFL, O_NONBLOCK);
    }
    return fd;
}

ssize_t call_device(int fd, wire::Action action, std::uint32_t number, std::uint64_t argument)
{
    int pair[2];
    if (socketpair(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0, pair) != 0)
        return -1;
    const bool sent = send_request(fd, {wire::magic, action, argument, number, 0}, pair[1]);
    close_quietly(pair[1]);
    if (!sent)
        errno = EIO;
    const ssize_t result = sent ? follow(pair[0]) : -1;
    close_quietly(pair[0]);
    return result;
}

} // namespace vboard::preload
