// SPDX-License-Identifier: Apache-2.0
#include "daemon/channel.hpp"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <sys/socket.h>
#include <sys/uio.h>

namespace vboard
{

namespace
{

constexpr std::size_t most_descriptors = 4; // room to notice that there are too many, and to close them

void take_control(msghdr &message, Packet &packet)
{
    for (cmsghdr *part = CMSG_FIRSTHDR(&message); part; part = CMSG_NXTHDR(&message, part)) {
        if (part->cmsg_level != SOL_SOCKET)
            continue;
        if (part->cmsg_type == SCM_CREDENTIALS && part->cmsg_len >= CMSG_LEN(sizeof(ucred))) {
            ucred sender{};
            std::memcpy(&sender, CMSG_DATA(part), sizeof sender);
            packet.pid = sender.pid;
        } else if (part->cmsg_type == SCM_RIGHTS) {
            const std::size_t count = (part->cmsg_len - CMSG_LEN(0)) / sizeof(int);
            for (std::size_t i = 0; i < count; i++) {
                int fd = -1;
                std::memcpy(&fd, CMSG_DATA(part) + i * sizeof fd, sizeof fd);
                Descriptor received(fd);
                if (packet.channel)
                    packet.refused = true;
                else
                    packet.channel = std::move(received);
            }
        }
    }
}

} // namespace

std::optional<Packet> take_packet(int connection)
{
    Packet packet;
    packet.data.resize(sizeof(wire::Request) + wire::max_payload);
    iovec piece{packet.data.data(), packet.data.size()};
    alignas(cmsghdr) std::array<char, CMSG_SPACE(sizeof(ucred)) + CMSG_SPACE(sizeof(int) * most_descriptors)>
        control{};
    msghdr message{};
    message.msg_iov = &piece;
    message.msg_iovlen = 1;
    message.msg_control = control.data();
    message.msg_controllen = control.size();
    const ssize_t length = recvmsg(connection, &message, MSG_DONTWAIT | MSG_CMSG_CLOEXEC);
    if (length < 0)
        return std::nullopt;
    take_control(message, packet);
    if (message.msg_flags & (MSG_TRUNC | MSG_CTRUNC))
        packet.refused = true;
    packet.data.resize(static_cast<std::size_t>(length));
    return packet;
}

std::optional<wire::Request> request_of(const Packet &packet)
{
    wire::Request request{};
    if (packet.refused || packet.data.size() < sizeof request)
        return std::nullopt;
    std::memcpy(&request, packet.data.data(), sizeof request);
    return wire::valid(request, packet.data.size()) ? std::optional(request) : std::nullopt;
}

bool Channel::send(const wire::Answer &answer, const void *payload) const
{
    iovec pieces[2] = {{const_cast<wire::Answer *>(&answer), sizeof answer},
                       {const_cast<void *>(payload), payload ? answer.size : 0}};
    msghdr message{};
    message.msg_iov = pieces;
    message.msg_iovlen = 2;
    ssize_t sent;
    do
        sent = sendmsg(end_.get(), &message, MSG_NOSIGNAL);
    while (sent < 0 && errno == EINTR);
    return sent >= 0;
}

int Channel::fetch(std::uint64_t address, void *into, std::size_t size)
{
    auto *target = static_cast<std::uint8_t *>(into);
    while (size > 0) {
        const auto part = static_cast<std::uint32_t>(std::min<std::size_t>(size, wire::max_payload));
        if (!send({wire::magic, wire::Step::fetch, address, 0, 0, part}, nullptr))
            return EFAULT;
        wire::Fetched head{};
        iovec pieces[2] = {{&head, sizeof head}, {target, part}};
        msghdr message{};
        message.msg_iov = pieces;
        message.msg_iovlen = 2;
        ssize_t length;
        do
            length = recvmsg(end_.get(), &message, MSG_TRUNC);
        while (length < 0 && errno == EINTR);
        if (length < 0 || !wire::valid(head, static_cast<std::size_t>(length), part) || head.error != 0)
            return EFAULT;
        target += part;
        address += part;
        size -= part;
    }
    return 0;
}

int Channel::store(std::uint64_t address, const void *from, std::size_t size)
{
    const auto *source = static_cast<const std::uint8_t *>(from);
    while (size > 0) {
        const auto part = static_cast<std::uint32_t>(std::min<std::size_t>(size, wire::max_payload));
        if (!send({wire::magic, wire::Step::store, address, 0, 0, part}, source))
            return EFAULT;
        source += part;
        address += part;
        size -= part;
    }
    return 0;
}

void Channel::done(std::int64_t result, int error) const
{
    send({wire::magic, wire::Step::done, 0, result, error, 0}, nullptr);
}

} // namespace vboard
