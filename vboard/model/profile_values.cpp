// SPDX-License-Identifier: Apache-2.0
#include "model/profile_values.hpp"

#include <charconv>

namespace vboard
{

namespace
{

// All of the text is the number; from_chars takes no sign and no prefix.
template <typename Number>
bool take_hex(std::string_view text, Number &number)
{
    const char *end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, number, 16);
    return error == std::errc() && stop == end;
}

} // namespace

std::optional<Bytes> hex_bytes(std::string_view text, char separator)
{
    Bytes bytes;
    while (!text.empty()) {
        if (!bytes.empty() && separator != '\0') {
            if (text.front() != separator)
                return std::nullopt;
            text.remove_prefix(1);
        }
        const std::string_view digits = text.substr(0, 2);
        if (digits.size() != 2 || !take_hex(digits, bytes.emplace_back()))
            return std::nullopt;
        text.remove_prefix(digits.size());
    }
    return bytes;
}

bool is_file_name(std::string_view text)
{
    constexpr std::size_t longest_name = 255;
    return !text.empty() && text.size() <= longest_name && text != "." && text != ".." &&
           text.find('/') == std::string_view::npos && text.find('\0') == std::string_view::npos;
}

std::optional<std::uint32_t> hex_word(std::string_view text)
{
    std::uint32_t number = 0;
    if (!text.starts_with("0x") || !take_hex(text.substr(2), number))
        return std::nullopt;
    return number;
}

} // namespace vboard
