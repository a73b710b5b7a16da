// SPDX-License-Identifier: Apache-2.0
// Words of the command line: what they stand for, and whether they will do. A check tells in words what is
// wrong, and nothing when all is well.
#pragma once

#include <moxboot/driver.h>

#include <cstdint>
#include <optional>
#include <string>

namespace moxctl
{

// A 32-bit number, decimal or with 0x in front hexadecimal; nothing else will do.
std::optional<std::uint32_t> parse_number(const std::string &word);
std::string check_number(const std::string &word);

// A device path; a word without a slash is a name under /dev.
std::string device_path(const std::string &word);
std::string check_device(const std::string &word);

// The library would cut or misreport what is longer than the store can hold.
std::string check_variable_name(const std::string &word);
std::string check_variable_value(const std::string &word);

// A reason that a reset can be asked for with.
std::string check_reset_reason(const std::string &word);

// A time of the calendar, "2024-03-01T08:00:05", as a reset is recorded with.
std::optional<MoxResetDate> parse_date(const std::string &word);
std::string check_date(const std::string &word);
MoxResetDate date_now();
std::string date_text(const MoxResetDate &date);

// A time to set the clock to, as far as the interface carries it: a calendar's, which is local time, or
// seconds since the epoch, "1700000000.5".
struct ClockTime {
    std::int32_t seconds;
    std::int32_t microseconds;
};
std::optional<ClockTime> parse_clock_time(const std::string &word);
std::string check_clock_time(const std::string &word);

// A name that the library's table of callbacks has room for.
std::string check_module_name(const std::string &word);

// A name that becomes a file of its own, of a length that the library takes.
std::string check_box_name(const std::string &word);
std::string check_memory_name(const std::string &word);
std::string check_box_size(const std::string &word);
std::string check_memory_size(const std::string &word);
std::string check_file_version(const std::string &word);

std::optional<std::uint32_t> parse_backup_state(const std::string &word);
std::string check_backup_state(const std::string &word);

} // namespace moxctl
