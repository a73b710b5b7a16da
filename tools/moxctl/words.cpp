// SPDX-License-Identifier: Apache-2.0
#include "words.hpp"

#include <moxboot/backup.h>
#include <moxboot/blackbox.h>
#include <moxboot/pre_reset.h>
#include <moxboot/reserved_memory.h>
#include <moxboot/reset.h>
#include <moxboot/startup_sync.h>

#include <algorithm>
#include <charconv>
#include <chrono>
#include <cstdio>
#include <ctime>
#include <limits>

namespace moxctl
{

namespace
{

std::string check_length(const std::string &word, const char *what, std::size_t most)
{
    if (word.size() <= most)
        return {};
    return std::string(what) + " of " + std::to_string(word.size()) + " characters is too long; at most " +
           std::to_string(most) + " are possible";
}

// Of something that is a file; another directory's files are not meant.
std::string check_file_name(const std::string &word, const std::string &what, std::size_t most)
{
    if (word.empty() || word.find('/') != std::string::npos || word == "." || word == "..")
        return '"' + word + "\" cannot be the name of " + what;
    return check_length(word, ("the name of " + what).c_str(), most);
}

constexpr std::size_t longest_text = DRVBOOT_ENV_SIZE - 1;
constexpr std::size_t longest_path = DRVBOOT_DEVICE_SIZE - 1;

} // namespace

std::optional<std::uint32_t> parse_number(const std::string &word)
{
    const bool hexadecimal = word.starts_with("0x") || word.starts_with("0X");
    const char *first = word.data() + (hexadecimal ? 2 : 0);
    const char *last = word.data() + word.size();
    std::uint32_t value = 0;
    const auto [end, error] = std::from_chars(first, last, value, hexadecimal ? 16 : 10);
    if (error != std::errc() || end != last)
        return std::nullopt;
    return value;
}

std::string check_number(const std::string &word)
{
    if (parse_number(word))
        return {};
    return "\"" + word + "\" is no 32-bit number; write it in decimal, or in hexadecimal with 0x in front";
}

std::string device_path(const std::string &word)
{
    return word.find('/') == std::string::npos ? "/dev/" + word : word;
}

std::string check_device(const std::string &word)
{
    return word.empty() ? "a device needs a name"
                        : check_length(device_path(word), "a device path", longest_path);
}

std::string check_variable_name(const std::string &word)
{
    return word.empty() ? "a boot variable needs a name"
                        : check_length(word, "a boot variable's name", longest_text);
}

std::string check_variable_value(const std::string &word)
{
    return check_length(word, "a boot variable's value", longest_text);
}

std::string check_reset_reason(const std::string &word)
{
    if (parse_number(word) == MOX_RESET_FAST)
        return "reason 0 asks for a fast reboot, which does nothing; give another one";
    return check_number(word);
}

std::optional<MoxResetDate> parse_date(const std::string &word)
{
    constexpr std::string_view form = "dddd-dd-ddTdd:dd:dd";
    if (word.size() != form.size())
        return std::nullopt;
    unsigned parts[6] = {};
    unsigned *part = parts;
    for (std::size_t i = 0; i < form.size(); ++i) {
        const char c = word[i];
        const bool digit = c >= '0' && c <= '9';
        if (digit != (form[i] == 'd') || (!digit && c != form[i]))
            return std::nullopt;
        if (digit)
            *part = *part * 10 + static_cast<unsigned>(c - '0');
        else
            ++part;
    }
    const auto [year, month, day, hour, minute, second] = parts;
    const std::chrono::year_month_day date{std::chrono::year(static_cast<int>(year)),
                                           std::chrono::month(month), std::chrono::day(day)};
    if (!date.ok() || hour > 23 || minute > 59 || second > 59)
        return std::nullopt;
    const auto byte = [](unsigned value) { return static_cast<std::uint8_t>(value); };
    return MoxResetDate{
        static_cast<std::uint16_t>(year), byte(month), byte(day), byte(hour), byte(minute), byte(second)};
}

std::string check_date(const std::string &word)
{
    if (parse_date(word))
        return {};
    return '"' + word + "\" is no time; write it as YYYY-MM-DDThh:mm:ss";
}

std::optional<ClockTime> parse_clock_time(const std::string &word)
{
    constexpr std::size_t decimals = 6;
    if (const auto date = parse_date(word)) {
        std::tm local = {};
        local.tm_year = date->year - 1900;
        local.tm_mon = date->month - 1;
        local.tm_mday = date->day;
        local.tm_hour = date->hour;
        local.tm_min = date->minute;
        local.tm_sec = date->second;
        local.tm_isdst = -1;
        const std::time_t seconds = std::mktime(&local);
        if (seconds < 0 || seconds > std::numeric_limits<std::int32_t>::max())
            return std::nullopt;
        return ClockTime{static_cast<std::int32_t>(seconds), 0};
    }
    const std::size_t point = std::min(word.find('.'), word.size());
    const std::string whole = word.substr(0, point);
    std::string part = word.substr(std::min(point + 1, word.size()));
    if (part.size() > decimals || (part.empty() && point != word.size()))
        return std::nullopt;
    part.resize(decimals, '0');
    ClockTime time{};
    const auto read = [](const std::string &digits, std::int32_t &value) {
        const char *const last = digits.data() + digits.size();
        const auto [end, error] = std::from_chars(digits.data(), last, value);
        return error == std::errc() && end == last && digits.front() != '-';
    };
    if (whole.empty() || !read(whole, time.seconds) || !read(part, time.microseconds))
        return std::nullopt;
    return time;
}

std::string check_clock_time(const std::string &word)
{
    if (parse_clock_time(word))
        return {};
    return '"' + word +
           "\" is no time for the clock; write it as YYYY-MM-DDThh:mm:ss, or as seconds since the epoch, "
           "from 0 "
           "to 2147483647, with up to six decimals";
}

MoxResetDate date_now()
{
    const std::time_t now = std::time(nullptr);
    std::tm local = {};
    ::localtime_r(&now, &local);
    const auto byte = [](int value) { return static_cast<std::uint8_t>(value); };
    return {static_cast<std::uint16_t>(local.tm_year + 1900),
            byte(local.tm_mon + 1),
            byte(local.tm_mday),
            byte(local.tm_hour),
            byte(local.tm_min),
            byte(local.tm_sec)};
}

std::string date_text(const MoxResetDate &date)
{
    char text[40];
    std::snprintf(text, sizeof text, "%04u-%02u-%02u %02u:%02u:%02u", date.year, date.month, date.day,
                  date.hour, date.minute, date.second);
    return text;
}

std::string check_module_name(const std::string &word)
{
    return word.empty() ? "a module needs a name"
                        : check_length(word, "a module's name", MOX_PRE_RESET_NAME_SIZE - 1);
}

std::string check_box_name(const std::string &word)
{
    return check_file_name(word, "a black box", MOX_BLACKBOX_MAX_NAME);
}

std::string check_memory_name(const std::string &word)
{
    return check_file_name(word, "a memory", MOX_RSVMEM_MAX_NAME);
}

std::string check_box_size(const std::string &word)
{
    const std::string wrong = check_number(word);
    if (wrong.empty() && parse_number(word).value() > MOX_BLACKBOX_MAX_SIZE)
        return "a black box has at most " + std::to_string(MOX_BLACKBOX_MAX_SIZE) + " bytes";
    return wrong;
}

std::string check_memory_size(const std::string &word)
{
    return parse_number(word) == 0 ? "a memory has at least one byte" : check_number(word);
}

std::string check_file_version(const std::string &word)
{
    return check_length(word, "a version", MOX_SYNC_TEXT_SIZE - 1);
}

std::optional<std::uint32_t> parse_backup_state(const std::string &word)
{
    if (word == "0" || word == "ready")
        return MOX_BACKUP_READY;
    if (word == "1" || word == "unready")
        return MOX_BACKUP_UNREADY;
    return std::nullopt;
}

std::string check_backup_state(const std::string &word)
{
    return parse_backup_state(word) ? std::string()
                                    : '"' + word + "\" is no backup state; it is 0 or ready, 1 or unready";
}

} // namespace moxctl
