// SPDX-License-Identifier: Apache-2.0
// Small functions that belong to the channel: the board's descriptor, address descriptors, the delay.
#include "base/report.hpp"
#include "base/result.hpp"

#include <moxboot/channel.h>

#include <cerrno>
#include <fcntl.h>
#include <sys/select.h>

using namespace moxboot;

int32_t MOX_GetBoardFd(void)
{
    constexpr const char *path = "/dev/board0";
    int fd = open(path, O_RDONLY | O_NONBLOCK);
    if (fd < 0)
        REPORT_FAILURE("Drvboot get board fd not success for open %s not ok(%d), fd %d\n", path, errno, fd);
    return fd;
}

uint32_t Iof_GetAddrToAddrDes(uint32_t *addr, AddrDes *descriptor)
{
    if (addr == nullptr || descriptor == nullptr)
        return IOF_ADDR_NULL;
    if (descriptor->count == 0)
        return IOF_ADDR_EMPTY;
    // Each address byte, from the last one down, takes the place of the one before it: what is left is byte
    // 0.
    *addr = descriptor->addr[0];
    return ok;
}

int32_t drvboot_taskdelay(uint32_t ms)
{
    timeval remaining = {};
    remaining.tv_sec = static_cast<time_t>(ms / 1000);
    remaining.tv_usec = static_cast<suseconds_t>((ms % 1000) * 1000);
    int result;
    do
        result = select(1, nullptr, nullptr, nullptr, &remaining);
    while (result == -1 && errno == EINTR);
    return result;
}
