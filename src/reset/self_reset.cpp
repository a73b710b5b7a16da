// SPDX-License-Identifier: Apache-2.0
// Tells the board driver that the board is about to be reset, and why.
#include "base/guard.hpp"
#include "base/report.hpp"
#include "base/result.hpp"
#include "base/tlv.hpp"
#include "base/weak.hpp"
#include "board/item.hpp"

#include <moxboot/reset.h>

#include <cerrno>
#include <fcntl.h>
#include <sys/ioctl.h>

using namespace moxboot;

namespace
{

constexpr Item pre_reset_reason = {board0, 0x1100aaab, "\r\n Not succeed to set pre rst reason,ret=0x%x.\n"};

struct Request {
    uint32_t outer_type;
    uint32_t outer_length; // what follows up to and with the date
    uint32_t item;
    uint32_t item_length;
    uint32_t reason_type;
    uint32_t reason_length;
    uint32_t reason;
    uint32_t date_type;
    uint32_t date_length;
    uint8_t date[DRVBOOT_RESET_DATE_LENGTH];
    uint8_t zero[16];
};
static_assert(sizeof(Request) == DRVBOOT_BUFFER_SIZE);

Request make_request(uint32_t reason)
{
    Request request = {};
    request.outer_type = DRVBOOT_TLV_SELF_RESET;
    request.outer_length = offsetof(Request, zero) - offsetof(Request, item);
    request.item = DRVBOOT_TLV_SELF_RESET_ITEM;
    request.reason_type = DRVBOOT_TLV_RESET_REASON;
    request.reason_length = sizeof request.reason;
    request.reason = reason;
    request.date_type = DRVBOOT_TLV_RESET_DATE;
    request.date_length = DRVBOOT_RESET_DATE_LENGTH;
    return request;
}

} // namespace

uint32_t drvboot_impl_self_reset(uint32_t reason, const MoxResetDate *date)
{
    if (date == nullptr) {
        REPORT_FAILURE("Drvboot rst self not success for input arg is null\n");
        return failed;
    }
    Descriptor device(open(board0, O_RDONLY | O_NONBLOCK));
    if (!device.valid()) {
        REPORT_FAILURE("Drvboot rst self not success for open board0 not ok(%d), fd 0x%x\n", errno,
                       static_cast<uint32_t>(device.get()));
        return failed;
    }
    Request request = make_request(reason);
    MoxResetDate told = {};
    if (memcpy_s(request.date, MOX_RESET_DATE_SIZE, date, MOX_RESET_DATE_SIZE) != 0 ||
        memcpy_s(&told, MOX_RESET_DATE_SIZE, date, MOX_RESET_DATE_SIZE) != 0)
        return failed;
    REPORT_INFO("Drvboot rst self, reason id 0x%x, date %u/%u/%u %u:%u:%u\n", reason, told.year, told.month,
                told.day, told.hour, told.minute, told.second);

    uint32_t reply[DRVBOOT_BUFFER_SIZE / sizeof(uint32_t)] = {};
    uint32_t status = 0;
    DrvbootIoctlBlock block;
    fill_block(block, &request, sizeof request, reply, sizeof reply, &status);
    if (ioctl(device.get(), DRVBOOT_CMD_SELF_RESET, &block) != 0 ||
        !reply_header_valid(reply, DRVBOOT_TLV_SELF_RESET))
        return DRVBOOT_ERR_IOCTL;
    return ok;
}

uint32_t MOX_SelfReset(uint32_t reason, const MoxResetDate *date)
{
    return drvboot_impl_self_reset(reason, date);
}

int32_t drvboot_impl_pre_reset_board(uint32_t reason)
{
    return static_cast<int32_t>(write_item(pre_reset_reason, reason));
}

MOXBOOT_WEAK void MOX_PreResetBoard(void) {}
