// SPDX-License-Identifier: Apache-2.0
// Values that stand as text in a profile. Private to the model.
#pragma once

#include "model/board.hpp"

#include <string_view>

namespace vboard
{

// Bytes of two hexadecimal digits each, with a separator between them or, by '\0', with none; nullopt for
// anything else.
std::optional<Bytes> hex_bytes(std::string_view text, char separator);

// Whether a file of this name can lie in a directory.
bool is_file_name(std::string_view text);

// "0x10002987"
std::optional<std::uint32_t> hex_word(std::string_view text);

} // namespace vboard
