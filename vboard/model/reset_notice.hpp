// SPDX-License-Identifier: Apache-2.0
// The notice of a reset that a program gives the driver beforehand: why and when.
#pragma once

#include "model/board.hpp"

#include <moxboot/driver.h>

namespace vboard
{

struct ResetNotice {
    std::uint32_t reason = 0;
    MoxResetDate date = {};
};

// nullopt when the request is malformed: a driver that took half a notice would later tell a wrong story.
std::optional<ResetNotice> decode_notice(const Bytes &in);

// The same from a record of its own; nullopt when it is none.
std::optional<ResetNotice> notice_in(const Bytes &record);

// "2026/11/21 08:30:00". The date is the caller's and may be none of the calendar's.
std::string date_text(const MoxResetDate &date);

// What the driver tells after the reset; a reason of 0 says that none is recorded.
Bytes reason_record(std::uint32_t reason, const MoxResetDate &date);

} // namespace vboard
