// SPDX-License-Identifier: Apache-2.0
#include "facts.hpp"

#include <cinttypes>
#include <cstdio>
#include <utility>

namespace moxctl
{

std::string hex_text(std::uint32_t value)
{
    char text[16];
    std::snprintf(text, sizeof text, "0x%" PRIx32, value);
    return text;
}

Answer yes_or_no(bool value, std::string meaning)
{
    return {value, value ? "yes" : "no", std::move(meaning)};
}

Answer number(std::uint64_t value, std::string meaning)
{
    return {value, std::to_string(value), std::move(meaning)};
}

Answer hexadecimal(std::uint32_t value, std::string meaning)
{
    return {value, hex_text(value), std::move(meaning)};
}

Answer words(std::string text)
{
    Json value = text;
    return {std::move(value), std::move(text), {}};
}

Answer not_applicable(std::string why)
{
    return {nullptr, "not applicable", std::move(why)};
}

Answer unreadable(Failure failure)
{
    return {nullptr, "unreadable", {}, std::move(failure)};
}

Answer unreadable(std::uint32_t code, std::string reason)
{
    return unreadable(Failure{code, std::move(reason)});
}

Outcome failure(std::string error)
{
    return {{}, Style::silent, std::move(error)};
}

} // namespace moxctl
