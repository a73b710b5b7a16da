// SPDX-License-Identifier: Apache-2.0
#include "reset/record.hpp"

#include "base/tlv.hpp"
#include "board/item.hpp"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/ioctl.h>

namespace moxboot
{

// The formats come from rows whose constructors have checked them.
#pragma GCC diagnostic ignored "-Wformat-nonliteral"

DriverRecord::DriverRecord(uint32_t value_room)
    : size_(value_room <= UINT32_MAX - overhead ? value_room + overhead : 0), reply_(size_)
{
}

uint32_t DriverRecord::word(uint32_t at) const
{
    uint32_t value;
    memcpy(&value, reply_.get() + at, sizeof value);
    return value;
}

bool DriverRecord::ask(uint32_t item, const RecordTexts &texts)
{
    if (!reply_.valid()) {
        report_failure(texts.no_memory);
        return false;
    }
    memset(reply_.get(), 0, size_);

    Descriptor device(open(board0, O_RDONLY | O_NONBLOCK));
    if (!device.valid()) {
        report(DRVBOOT_TRACE_FAILURE, texts.not_open.text, errno, device.get());
        return false;
    }
    // The driver is shown no more of the request than its header and the item's type and length.
    uint32_t request[] = {DRVBOOT_TLV_L1_TYPE, item_header, item, 0, 0};
    constexpr uint32_t request_length = 16;
    uint32_t status = 0;
    DrvbootIoctlBlock block;
    fill_block(block, request, request_length, reply_.get(), size_, &status);
    int result = ioctl(device.get(), DRVBOOT_CMD_GET, &block);
    if (result != 0)
        report(DRVBOOT_TRACE_FAILURE, texts.not_asked.text, result, errno);
    return result == 0;
}

bool DriverRecord::find_value()
{
    const uint32_t room = size_ - status_at;
    const uint32_t offset = word(offset_at);
    if (offset > room - item_header)
        return false;
    const uint32_t item_at = status_at + offset;
    length_ = word(item_at + sizeof(uint32_t));
    value_ = reply_.get() + item_at + item_header;
    return length_ <= size_ - item_at - item_header;
}

} // namespace moxboot
