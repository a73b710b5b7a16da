// SPDX-License-Identifier: Apache-2.0
#include "report/words.hpp"

#include <cmath>
#include <cstdio>
#include <ctime>

namespace vboard::report
{

namespace
{

constexpr double minute = 60, hour = 60 * minute, day = 24 * hour;

std::tm calendar(double time)
{
    const auto seconds = static_cast<std::time_t>(std::floor(time));
    std::tm parts{};
    gmtime_r(&seconds, &parts);
    return parts;
}

std::string two_parts(double seconds, double unit, const char *name, double part, const char *part_name)
{
    const double whole = std::floor(seconds / unit);
    const double rest = std::floor((seconds - whole * unit) / part);
    char text[48];
    std::snprintf(text, sizeof text, "%.0f %s %02.0f %s", whole, name, rest, part_name);
    return text;
}

} // namespace

std::string day_and_time(double time)
{
    const std::tm parts = calendar(time);
    char text[32] = "";
    std::strftime(text, sizeof text, "%Y-%m-%d %H:%M:%S", &parts);
    return text;
}

std::string exact_time(double time)
{
    const double fraction = std::floor((time - std::floor(time)) * 1000);
    const std::tm parts = calendar(time);
    char text[32] = "";
    std::strftime(text, sizeof text, "%H:%M:%S", &parts);
    char behind[8];
    std::snprintf(behind, sizeof behind, ".%03d", static_cast<int>(fraction) % 1000);
    return std::string(text) + behind;
}

std::string time_span(double seconds)
{
    if (seconds < 0.001)
        return decimals(seconds * 1e6, 0) + " µs";
    if (seconds < 1)
        return decimals(seconds * 1000, seconds < 0.01 ? 1 : 0) + " ms";
    if (seconds < minute)
        return decimals(seconds, 1) + " s";
    if (seconds < hour)
        return two_parts(seconds, minute, "min", 1, "s");
    return seconds < day ? two_parts(seconds, hour, "h", minute, "min")
                         : two_parts(seconds, day, "d", hour, "h");
}

std::string grouped(std::uint64_t number)
{
    std::string text = std::to_string(number);
    for (std::size_t at = text.size(); at > 3; at -= 3)
        text.insert(at - 3, ",");
    return text;
}

std::string times(std::uint64_t count, const std::string &one)
{
    return grouped(count) + " " + one + (count == 1 ? "" : "s");
}

std::string hexadecimal(std::uint32_t value)
{
    char text[16];
    std::snprintf(text, sizeof text, "0x%x", value);
    return text;
}

std::string decimals(double value, int places)
{
    char text[48];
    std::snprintf(text, sizeof text, "%.*f", places, value);
    return text;
}

} // namespace vboard::report
