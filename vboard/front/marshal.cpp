// SPDX-License-Identifier: Apache-2.0
#include "front/marshal.hpp"

#include <moxboot/driver.h>

#include <algorithm>
#include <cerrno>

namespace vboard
{
namespace
{

constexpr std::uint32_t longest_buffer = 64 * 1024;
constexpr std::uint32_t self_reset = 1;

bool is_item_request(std::uint32_t request)
{
    return request == self_reset || request == DRVBOOT_CMD_GET || request == DRVBOOT_CMD_SET;
}

bool is_environment_request(std::uint32_t request)
{
    return request >= DRVBOOT_ENV_READ && request <= DRVBOOT_ENV_DELETE;
}

// The address in a descriptor; 0, which is nobody's, for a count that no address has.
std::uint64_t address(const AddrDes &descriptor)
{
    if (descriptor.count != 4 && descriptor.count != 8)
        return 0;
    std::uint64_t value = 0;
    for (std::uint32_t i = descriptor.count; i-- > 0;)
        value = (value << 8) | descriptor.addr[i];
    return value;
}

int fetch(Memory &memory, std::uint64_t at, std::uint32_t size, Bytes &into)
{
    if (at == 0)
        return EFAULT;
    if (size > longest_buffer)
        return EINVAL;
    into.resize(size);
    return size == 0 ? 0 : memory.fetch(at, into.data(), size);
}

int store(Memory &memory, std::uint64_t at, const void *from, std::size_t size)
{
    if (size == 0)
        return 0;
    return at == 0 ? EFAULT : memory.store(at, from, size);
}

// The answer's own result, unless the answer could not be delivered.
IoctlResult finish(const IoctlReply &reply, int delivery)
{
    return delivery != 0 ? IoctlResult{-1, delivery} : IoctlResult{reply.result, reply.error};
}

IoctlResult run_item(Board &board, IoctlCall &call, std::uint64_t argument, Memory &memory)
{
    DrvbootIoctlBlock block = {};
    int error = argument == 0 ? EFAULT : memory.fetch(argument, &block, sizeof block);
    if (error == 0)
        error = fetch(memory, address(block.in), block.in_length, call.in);
    if (error == 0 && block.out_length > longest_buffer)
        error = EINVAL;
    call.memory_error = error;
    call.out_size = block.out_length;

    IoctlReply reply = board.ioctl(call);
    if (call.memory_error != 0)
        return finish(reply, 0);
    error = store(memory, address(block.out), reply.out.data(),
                  std::min<std::size_t>(reply.out.size(), block.out_length));
    if (error == 0 && reply.status)
        error = store(memory, address(block.status), &*reply.status, sizeof *reply.status);
    return finish(reply, error);
}

IoctlResult run_environment(Board &board, IoctlCall &call, std::uint64_t argument, Memory &memory)
{
    DrvbootEnvBlock block = {};
    int error = argument == 0 ? EFAULT : memory.fetch(argument, &block, sizeof block);
    if (error == 0)
        error = fetch(memory, block.name, block.name_size, call.name);
    if (error == 0)
        error = fetch(memory, block.value, block.value_size, call.value);
    call.memory_error = error;

    IoctlReply reply = board.ioctl(call);
    if (call.memory_error != 0)
        return finish(reply, 0);
    if (reply.value)
        error = store(memory, block.value, reply.value->data(),
                      std::min<std::size_t>(reply.value->size(), block.value_size));
    if (error == 0 && reply.value_size) {
        block.value_size = *reply.value_size;
        error = memory.store(argument, &block, sizeof block);
    }
    return finish(reply, error);
}

} // namespace

IoctlResult run_ioctl(Board &board, const std::string &device, std::uint32_t request, std::uint64_t argument,
                      int pid, Memory &memory)
{
    IoctlCall call;
    call.device = device;
    call.request = request;
    call.pid = pid;
    if (is_item_request(request))
        return run_item(board, call, argument, memory);
    if (is_environment_request(request))
        return run_environment(board, call, argument, memory);
    return finish(board.ioctl(call), 0); // unknown to the driver; it says so itself
}

} // namespace vboard
