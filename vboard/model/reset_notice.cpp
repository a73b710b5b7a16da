// SPDX-License-Identifier: Apache-2.0
#include "model/reset_notice.hpp"

#include "model/item_request.hpp"
#include "model/tlv.hpp"

#include <cstdio>
#include <cstring>

namespace vboard
{

std::optional<ResetNotice> decode_notice(const Bytes &in)
{
    const auto parts = decode_request(in, DRVBOOT_TLV_SELF_RESET);
    if (!parts || parts->size() != 3)
        return std::nullopt;
    const auto is = [&](std::size_t part, std::uint32_t type, std::size_t size) {
        return (*parts)[part].code == type && (*parts)[part].value.size() == size;
    };
    if (!is(0, DRVBOOT_TLV_SELF_RESET_ITEM, 0) || !is(1, DRVBOOT_TLV_RESET_REASON, sizeof(std::uint32_t)) ||
        !is(2, DRVBOOT_TLV_RESET_DATE, DRVBOOT_RESET_DATE_LENGTH))
        return std::nullopt;
    ResetNotice notice;
    notice.reason = word_of((*parts)[1].value);
    std::memcpy(&notice.date, (*parts)[2].value.data(), MOX_RESET_DATE_SIZE);
    return notice;
}

std::optional<ResetNotice> notice_in(const Bytes &record)
{
    MoxResetReason kept = {};
    if (record.size() != sizeof kept)
        return std::nullopt;
    std::memcpy(&kept, record.data(), sizeof kept);
    ResetNotice notice;
    notice.reason = kept.code;
    notice.date.year = kept.year;
    notice.date.month = kept.month;
    notice.date.day = kept.day;
    notice.date.hour = kept.hour;
    notice.date.minute = kept.minute;
    notice.date.second = kept.second;
    return notice;
}

std::string date_text(const MoxResetDate &date)
{
    char text[48];
    std::snprintf(text, sizeof text, "%04u/%02u/%02u %02u:%02u:%02u", unsigned{date.year},
                  unsigned{date.month}, unsigned{date.day}, unsigned{date.hour}, unsigned{date.minute},
                  unsigned{date.second});
    return text;
}

Bytes reason_record(std::uint32_t reason, const MoxResetDate &date)
{
    const MoxResetReason record{reason,    date.year,   date.month,  date.day,
                                date.hour, date.minute, date.second, 0};
    Bytes bytes(sizeof record);
    std::memcpy(bytes.data(), &record, sizeof record);
    return bytes;
}

} // namespace vboard
