// SPDX-License-Identifier: Apache-2.0
#include "request.hpp"

#include <moxboot/moxboot.h>

#include <cstring>
#include <fcntl.h>
#include <sys/ioctl.h>
#include <unistd.h>

namespace board
{

namespace
{

void put_address(void *buffer, AddrDes *descriptor)
{
    const auto address = reinterpret_cast<std::uintptr_t>(buffer);
    std::memcpy(descriptor->addr, &address, sizeof address);
    descriptor->count = sizeof address;
}

} // namespace

int bare_query(const char *path, std::uint32_t item, std::uint32_t *value)
{
    std::uint32_t in[16] = {DRVBOOT_TLV_L1_TYPE, 8, item, 0};
    std::uint32_t out[16] = {};
    std::uint32_t status = 0;
    DrvbootIoctlBlock block = {};
    put_address(in, &block.in);
    put_address(out, &block.out);
    put_address(&status, &block.status);
    block.in_length = block.out_length = sizeof in;
    const int fd = open(path, O_RDONLY | O_NONBLOCK);
    if (fd < 0)
        return -1;
    const int result = ioctl(fd, DRVBOOT_CMD_GET, &block);
    close(fd);
    *value = out[7];
    return result;
}

} // namespace board
