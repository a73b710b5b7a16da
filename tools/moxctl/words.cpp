// SPDX-License-Identifier: Apache-2.0
#include "words.hpp"

#include <moxboot/driver.h>

#include <charconv>

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

} // namespace moxctl
