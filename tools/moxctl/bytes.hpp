// SPDX-License-Identifier: Apache-2.0
// Bytes of no known form: how they are shown, and where they come from and go to.
#pragma once

#include <cstdint>
#include <span>
#include <string>

namespace moxctl
{

using Bytes = std::span<const std::uint8_t>;

enum class View {
    hex,  // lines of sixteen bytes, with their offsets and what of them is text
    text, // lines as they are; what would steer a terminal shows as dots, zeros at the end do not show
    raw,  // the bytes themselves
};

// `offset` is that of the first byte.
std::string shown(Bytes bytes, View view, std::uint32_t offset);
// Two hexadecimal digits a byte, nothing between.
std::string digits(Bytes bytes);
// The same bytes have the same digest.
std::string digest(Bytes bytes);

// All of a file, or of standard input where its name is "-"; what goes beyond `most` bytes is left unread but
// for one byte that tells of it. Throws std::runtime_error with words.
std::string read_file(const std::string &name, std::size_t most);
void write_file(const std::string &name, Bytes bytes);

} // namespace moxctl
