// SPDX-License-Identifier: Apache-2.0
// SHA-256 of short texts, as the standard writes it down, for tests that must not ask the crypto library
// which they hold the library under test against.
#pragma once

#include <array>
#include <cstdint>
#include <string>

namespace test
{

// Of at most 55 bytes: those that fill one block with their end mark and length.
std::array<std::uint8_t, 32> own_sha256(const std::string &text);

} // namespace test
