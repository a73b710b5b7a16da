// SPDX-License-Identifier: Apache-2.0
// Board hard information: six items with one request.
#include "base/guard.hpp"
#include "base/report.hpp"
#include "base/result.hpp"
#include "base/tlv.hpp"

#include <moxboot/board.h>
#include <moxboot/channel.h>
#include <moxboot/platform.h>

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <iterator>
#include <sys/ioctl.h>

using namespace moxboot;

namespace
{

constexpr uint32_t buffer_size = 256;
constexpr useconds_t second_try_us = 500000; // the device may still be on its way while the board starts

// The items in the order they are asked, and so answered.
constexpr uint32_t items[] = {0x1000280e, 0x10002800, 0x8000001, 0x10002200, 0x100029b4, 0x1000280f};

// Where the values stand in the reply, in words: the first entry starts at byte 20; an entry is type, length,
// value.
enum : size_t { version = 7, slot = 10, hard_type = 13, item_2200 = 16, item_29b4 = 19, address = 22 };

void encode(uint32_t *in)
{
    in[0] = DRVBOOT_TLV_L1_TYPE;
    in[1] = sizeof items * 2;
    for (size_t i = 0; i < std::size(items); ++i)
        in[2 + 2 * i] = items[i]; // its length stays 0
}

int open_board()
{
    constexpr const char *path = "/dev/board0";
    int fd = open(path, O_RDONLY | O_NONBLOCK);
    if (fd < 0) {
        usleep(second_try_us);
        fd = open(path, O_RDONLY | O_NONBLOCK);
    }
    return fd;
}

// Fills the record from a reply that was accepted.
bool decode(const uint32_t *out, MoxHardInfo *info)
{
    int copied = memcpy_s(info->address, sizeof info->address, &out[address], MOX_HARD_ADDRESS_LENGTH);
    if (copied != 0) {
        REPORT_FAILURE("memcpy_s not success, not ok code is %d.\n", copied);
        return false;
    }
    // The driver's version goes in first; the record's own then takes its place.
    memcpy(info, &out[version], sizeof out[version]);
    info->version_low = 0;
    info->version_high = 1;
    info->slot = static_cast<uint16_t>(out[slot]);
    info->reserved = 0;
    info->hard_type = out[hard_type];
    info->item_2200 = out[item_2200];
    info->address_length = MOX_HARD_ADDRESS_LENGTH;
    info->item_29b4 = out[item_29b4];
    return true;
}

} // namespace

uint32_t drvboot_impl_get_hardinfo(MoxHardInfo *info)
{
    if (info == nullptr) {
        REPORT_FAILURE("Drvboot get hard info not success for arg is null\n");
        return DRVBOOT_ERR_IOCTL;
    }
    Block<uint32_t> in(buffer_size);
    Block<uint32_t> out(buffer_size);
    if (!in.valid() || !out.valid()) {
        REPORT_FAILURE("Drvboot get hard info not success for memory exhaust\n");
        return DRVBOOT_ERR_IOCTL;
    }
    memset(in.get(), 0, buffer_size);
    memset(out.get(), 0, buffer_size);
    encode(in.get());
    uint32_t status = 0;
    DrvbootIoctlBlock block;
    fill_block(block, in.get(), buffer_size, out.get(), buffer_size, &status);

    Descriptor board(open_board());
    if (!board.valid()) {
        REPORT_FAILURE("Drvboot get hard info not success for open /dev/board0 not ok(%s), fd %d\n",
                       strerror(errno), board.get());
        return DRVBOOT_ERR_IOCTL;
    }
    if (ioctl(board.get(), DRVBOOT_CMD_GET, &block) != 0 || !reply_accepted(out.get()))
        return DRVBOOT_ERR_IOCTL;
    if (!decode(out.get(), info))
        return DRVBOOT_ERR_IOCTL;
    if (g_idebug_print_flag == 1)
        g_idebug_print_flag = 0;
    return ok;
}

uint32_t MOX_GetHard_Info(MoxHardInfo *info)
{
    return drvboot_impl_get_hardinfo(info);
}
