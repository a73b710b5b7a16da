// SPDX-License-Identifier: Apache-2.0
// Writing in spite of signals and short counts.
#include <moxboot/channel.h>

#include <cerrno>
#include <unistd.h>

int32_t drvboot_safe_write(int32_t fd, void *buf, uint32_t len)
{
    ssize_t written;
    do
        written = write(fd, buf, len);
    while (written < 0 && errno == EINTR);
    return static_cast<int32_t>(written);
}

int32_t drvboot_full_write(int32_t fd, uint8_t *buf, uint32_t len)
{
    int32_t total = 0;
    while (len > 0) {
        int32_t written = drvboot_safe_write(fd, buf, len);
        if (written < 0)
            return total != 0 ? total : written;
        total += written;
        buf += written;
        len -= static_cast<uint32_t>(written);
    }
    return total;
}
