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

// A buffer in the caller's memory.
struct Place {
    std::uint64_t address = 0;
    std::uint32_t size = 0;
};

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

    Place place(std::uint64_t address, std::uint32_t size)
    {
        if (size > longest_buffer)
            fail(EINVAL);
        return {address, size};
    }
    Place place(const AddrDes &descriptor, std::uint32_t size)
    {
        return place(address(descriptor), size);
    }

    void fetch(std::uint64_t address, void *into, std::size_t size)
    {
        if (error_ == 0 && size != 0)
            fail(address == 0 ? EFAULT : memory_.fetch(address, into, size));
    }
    Bytes fetch(const Place &from)
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
    void store(const Place &to, const Bytes &bytes)
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

IoctlResult run_item(Board &board, IoctlCall &call, std::uint64_t argument, Memory &memory)
{
    Copier copier(memory);
    DrvbootIoctlBlock block = {};
    copier.fetch(argument, &block, sizeof block);
    const Place in = copier.place(block.in, block.in_length);
    const Place out = copier.place(block.out, block.out_length);
    call.in = copier.fetch(in);
    call.out_size = out.size;

    const IoctlReply reply = ask(board, call, copier.error());
    if (copier.error() != 0)
        return {reply.result, reply.error};
    copier.store(out, reply.out);
    // Nobody has to want the status word.
    if (reply.status && block.status.count != 0)
        if (const std::uint64_t status = copier.address(block.status); status != 0)
            copier.store(status, &*reply.status, sizeof *reply.status);
    return finish(reply, copier.error());
}

IoctlResult run_environment(Board &board, IoctlCall &call, std::uint64_t argument, Memory &memory)
{
    Copier copier(memory);
    DrvbootEnvBlock block = {};
    copier.fetch(argument, &block, sizeof block);
    const Place name = copier.place(block.name, block.name_size);
    const Place value = copier.place(block.value, block.value_size);
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
        copier.store(argument + offsetof(DrvbootEnvBlock, value_size), &*reply.value_size,
                     sizeof *reply.value_size);
    return finish(reply, copier.error());
}

} // namespace

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
