// SPDX-License-Identifier: Apache-2.0
#include "cli/numbers.hpp"

#include "cli/verbs.hpp"
#include "model/errno_name.hpp"

#include <charconv>
#include <cstdio>
#include <limits>

namespace vboard::cli
{

namespace
{

template <class Number>
Number convert(const std::string &text, const std::string &what)
{
    const bool negative = std::numeric_limits<Number>::is_signed && text.starts_with("-");
    std::string digits = text.substr(negative ? 1 : 0);
    int base = 10;
    if (digits.starts_with("0x") || digits.starts_with("0X")) {
        digits.erase(0, 2);
        base = 16;
    }
    if (negative)
        digits.insert(0, "-");
    Number value{};
    const char *const end = digits.data() + digits.size();
    const auto [stop, error] = std::from_chars(digits.data(), end, value, base);
    if (error == std::errc::result_out_of_range)
        throw UsageError(what + " \"" + text + "\" does not fit 32 bits");
    if (error != std::errc() || stop != end)
        throw UsageError(what + " \"" + text + "\" is not a number (decimal, or hexadecimal after 0x)");
    return value;
}

} // namespace

std::uint32_t number(const std::string &text, const std::string &what)
{
    return convert<std::uint32_t>(text, what);
}

int signed_number(const std::string &text, const std::string &what)
{
    return convert<int>(text, what);
}

int errno_number(const std::string &text)
{
    if (const std::optional<int> named = errno_from_name(text))
        return *named;
    constexpr int last = 133; // of Linux
    if (!text.empty() && text.front() >= '0' && text.front() <= '9') {
        const int value = signed_number(text, "error");
        if (value >= 1 && value <= last)
            return value;
    }
    throw UsageError("\"" + text + "\" is no error number or name (EIO, ENOTTY, ...)");
}

std::string hex(std::uint32_t value)
{
    char text[16];
    std::snprintf(text, sizeof text, "0x%x", value);
    return text;
}

} // namespace vboard::cli
