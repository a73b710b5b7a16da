// SPDX-License-Identifier: Apache-2.0
#include "front/marshal.hpp"

#include "model/request_kind.hpp"

#include <moxboot/driver.h>

#include <algorithm>
#include <cerrno>

namespace vboard
{
namespace
{

constexpr std::uint32_t longest_buffer = 64 * 1024;

// Copies of the caller's memory; the first error sticks, and nothing is done after it.
class Copier
{
  public:
    explicit Copier(Memory &memory) : memory_(memory) {}

    int error() const
    {
        return error_;
    }

    // The address in a descriptor: 4 or 8 bytes, least significant byte first.
    std::uint64_t address(const AddrDes &descriptor)
    {
        if (descriptor.count != 4 && descriptor.count != 8) {
            fail(EINVAL);
            return 0;
        }
        std::uint64_t value = 0;
        for (std::uint32_t i = descriptor.count; i-- > 0;)
            value = (value << 8) | descriptor.addr[i];
        return value;
    }

    Piece place(std::uint64_t address, std::uint32_t size)
    {
        if (size > longest_buffer)
            fail(EINVAL);
        return {address, size};
    }
    Piece place(const AddrDes &descriptor, std::uint32_t size)
    {
        return place(address(descriptor), size);
    }

    void fetch(std::uint64_t address, void *into, std::size_t size)
    {
        if (error_ == 0 && size != 0)
            fail(address == 0 ? EFAULT : memory_.fetch(address, into, size));
    }
    Bytes fetch(const Piece &from)
    {
        Bytes bytes(error_ == 0 ? from.size : 0);
        fetch(from.address, bytes.data(), bytes.size());
        return bytes;
    }

    void store(std::uint64_t address, const void *from, std::size_t size)
    {
        if (error_ == 0 && size != 0)
            fail(address == 0 ? EFAULT : memory_.store(address, from, size));
    }
    void store(const Piece &to, const Bytes &bytes)
    {
        store(to.address, bytes.data(), std::min<std::size_t>(to.size, bytes.size()));
    }

  private:
    void fail(int error)
    {
        if (error_ == 0)
            error_ = error;
    }

    Memory &memory_;
    int error_ = 0;
};

// The answer's own result, unless the answer could not be delivered.
IoctlResult finish(const IoctlReply &reply, int delivery)
{
    return delivery != 0 ? IoctlResult{-1, delivery} : IoctlResult{reply.result, reply.error};
}

// With an error the board is told of it, so that the journal shows the call; nothing can be delivered then.
IoctlReply ask(Board &board, IoctlCall &call, int error)
{
    call.memory_error = error;
    return board.ioctl(call);
}

// The place of the status word. Nobody has to want it: then there is none.
Piece status_of(Copier &copier, const AddrDes &status)
{
    return {status.count == 0 ? 0 : copier.address(status), sizeof(std::uint32_t)};
}

// What one of the two kinds of argument says, as far as it is in order.
struct ItemPlaces {
    Piece in, out;
};
ItemPlaces places_of(Copier &copier, const DrvbootIoctlBlock &block)
{
    return {copier.place(block.in, block.in_length), copier.place(block.out, block.out_length)};
}
struct EnvironmentPlaces {
    Piece name, value;
};
EnvironmentPlaces places_of(Copier &copier, const DrvbootEnvBlock &block)
{
    return {copier.place(block.name, block.name_size), copier.place(block.value, block.value_size)};
}

Piece value_size_of(std::uint64_t argument)
{
    return {argument + offsetof(DrvbootEnvBlock, value_size), sizeof(std::uint32_t)};
}

IoctlResult run_item(Board &board, IoctlCall &call, std::uint64_t argument, Memory &memory)
{
    Copier copier(memory);
    DrvbootIoctlBlock block = {};
    copier.fetch(argument, &block, sizeof block);
    const auto [in, out] = places_of(copier, block);
    call.in = copier.fetch(in);
    call.out_size = out.size;

    const IoctlReply reply = ask(board, call, copier.error());
    if (copier.error() != 0)
        return {reply.result, reply.error};
    copier.store(out, reply.out);
    if (reply.status)
        if (const Piece status = status_of(copier, block.status); status.address != 0)
            copier.store(status.address, &*reply.status, sizeof *reply.status);
    return finish(reply, copier.error());
}

IoctlResult run_environment(Board &board, IoctlCall &call, std::uint64_t argument, Memory &memory)
{
    Copier copier(memory);
    DrvbootEnvBlock block = {};
    copier.fetch(argument, &block, sizeof block);
    const auto [name, value] = places_of(copier, block);
    if (call.request != DRVBOOT_ENV_SAVE)
        call.name = copier.fetch(name);
    if (call.request == DRVBOOT_ENV_WRITE)
        call.value = copier.fetch(value);
    else if (copier.error() == 0)
        call.value.resize(value.size);

    const IoctlReply reply = ask(board, call, copier.error());
    if (copier.error() != 0)
        return {reply.result, reply.error};
    if (reply.value)
        copier.store(value, *reply.value);
    if (reply.value_size)
        copier.store(value_size_of(argument).address, &*reply.value_size, sizeof *reply.value_size);
    return finish(reply, copier.error());
}

// What has no address or no size is not there to be named.
void name(std::vector<Piece> &pieces, const Piece &piece)
{
    if (piece.address != 0 && piece.size != 0)
        pieces.push_back(piece);
}

Pieces item_pieces(std::uint64_t argument, Memory &memory)
{
    Copier copier(memory);
    DrvbootIoctlBlock block = {};
    Pieces pieces;
    name(pieces.read, {argument, sizeof block});
    copier.fetch(argument, &block, sizeof block);
    const auto [in, out] = places_of(copier, block);
    if (copier.error() != 0)
        return pieces;
    name(pieces.read, in);
    Copier after(memory); // what is wrong with this place shows only when the request has been answered
    const Piece status = status_of(after, block.status);
    name(pieces.read, status);
    name(pieces.written, status);
    name(pieces.written, out);
    return pieces;
}

Pieces environment_pieces(std::uint32_t request, std::uint64_t argument, Memory &memory)
{
    Copier copier(memory);
    DrvbootEnvBlock block = {};
    Pieces pieces;
    name(pieces.read, {argument, sizeof block});
    copier.fetch(argument, &block, sizeof block);
    const auto [variable, value] = places_of(copier, block);
    if (copier.error() != 0)
        return pieces;
    if (request != DRVBOOT_ENV_SAVE)
        name(pieces.read, variable);
    if (request == DRVBOOT_ENV_WRITE)
        name(pieces.read, value);
    if (request == DRVBOOT_ENV_READ) {
        name(pieces.read, value_size_of(argument));
        name(pieces.written, value_size_of(argument));
        name(pieces.written, value);
    }
    return pieces;
}

} // namespace

Pieces pieces_of(const std::string &device, std::uint32_t request, std::uint64_t argument, Memory &memory)
{
    switch (request_kind(device, request)) {
    case RequestKind::items:
    case RequestKind::self_reset:
        return item_pieces(argument, memory);
    case RequestKind::environment:
        return environment_pieces(request, argument, memory);
    case RequestKind::unknown:
        break;
    }
    return {};
}

IoctlResult run_ioctl(Board &board, const std::string &device, std::uint32_t request, std::uint64_t argument,
                      int pid, Memory &memory)
{
    IoctlCall call;
    call.device = device;
    call.request = request;
    call.pid = pid;
    switch (request_kind(device, request)) {
    case RequestKind::items:
    case RequestKind::self_reset:
        return run_item(board, call, argument, memory);
    case RequestKind::environment:
        return run_environment(board, call, argument, memory);
    case RequestKind::unknown:
        break;
    }
    return finish(board.ioctl(call), 0); // the driver says itself that it does not know the request
}

} // namespace vboard
