// SPDX-License-Identifier: Apache-2.0
// Attributes of a device, asked of the board's kernel driver with one request, and the address descriptors
// that such requests carry.
#include <moxboot/platform.h>

#include "item.hpp"

#include <cstring>
#include <fcntl.h>
#include <sys/ioctl.h>
#include <unistd.h>

namespace
{

struct Request {
    uint32_t l1type;
    uint32_t length; // of what follows
    uint32_t l2type;
    uint32_t data_length;
    uint8_t data[DRVBOOT_DATA_SIZE];
};
static_assert(sizeof(Request) == DRVBOOT_BUFFER_SIZE);

struct Reply {
    uint32_t l1type;
    uint32_t length; // left open by the driver
    uint32_t ret_type;
    uint32_t ret_length;
    uint32_t ret_code;
    uint32_t l2type;
    uint32_t value_length;
    uint8_t value[36];
};
static_assert(sizeof(Reply) == DRVBOOT_BUFFER_SIZE);

constexpr uint32_t not_asked = 0xFFFFFFFF;

void describe(const void *buffer, AddrDes *descriptor)
{
    const auto address = reinterpret_cast<uintptr_t>(buffer);
    for (unsigned i = 0; i < sizeof descriptor->addr; ++i)
        descriptor->addr[i] = static_cast<uint8_t>(uint64_t{address} >> (8 * i));
    descriptor->count = sizeof address;
}

uint32_t check(const Reply &reply, uint32_t l1type, uint32_t l2type)
{
    const bool good = reply.l1type == l1type && reply.ret_type == DRVBOOT_TLV_RET_TYPE &&
                      reply.ret_length == DRVBOOT_TLV_RET_LENGTH && reply.ret_code == 0 &&
                      reply.l2type == l2type;
    return good ? 0 : DRVBOOT_ERR_IOCTL;
}

// One request to the driver: 0 with a reply that is in order.
uint32_t ask(const char *device, uint32_t l1type, uint32_t l2type, Reply &reply)
{
    const int fd = open(device, O_RDONLY | O_NONBLOCK);
    if (fd < 0)
        return not_asked;

    Request request{};
    request.l1type = l1type;
    request.length = 2 * sizeof(uint32_t);
    request.l2type = l2type;
    uint32_t status = 0;
    DrvbootIoctlBlock block{};
    describe(&request, &block.in);
    block.in_length = sizeof request;
    describe(&reply, &block.out);
    block.out_length = sizeof reply;
    describe(&status, &block.status);

    uint32_t result = DRVBOOT_ERR_IOCTL;
    if (ioctl(fd, DRVBOOT_CMD_GET, &block) == 0)
        result = check(reply, l1type, l2type);
    close(fd);
    return result;
}

} // namespace

void Iof_SetAddrToAddrDes(void *buffer, AddrDes *descriptor)
{
    if (descriptor != nullptr)
        describe(buffer, descriptor);
}

uint32_t iof_get_attr_value(const char *device, uint32_t l1type, uint32_t l2type, uint32_t index, void *value,
                            uint32_t size)
{
    // The request has no room for an index: an item has one instance.
    if (device == nullptr || value == nullptr || index != 0 || size == 0 || size > sizeof Reply::value)
        return not_asked;
    Reply reply{};
    const uint32_t result = ask(device, l1type, l2type, reply);
    if (result == 0)
        memcpy(value, reply.value, size);
    return result;
}

uint32_t moxplatform_read_item(const char *device, uint32_t l1type, uint32_t l2type, void *value,
                               uint32_t room, uint32_t *length)
{
    if (device == nullptr || value == nullptr || room == 0 || length == nullptr)
        return not_asked;
    Reply reply{};
    const uint32_t result = ask(device, l1type, l2type, reply);
    if (result != 0)
        return result;
    // Here the length counts, and is the driver's word for it: no more than a reply holds.
    if (reply.value_length > room || reply.value_length > sizeof reply.value)
        return DRVBOOT_ERR_IOCTL;
    memcpy(value, reply.value, reply.value_length);
    *length = reply.value_length;
    return 0;
}
