// SPDX-License-Identifier: Apache-2.0
// Requests as a program builds them, word by word and apart from the model's own coding.
#pragma once

#include "vboard/model/board.hpp"

#include <initializer_list>
#include <string>
#include <vector>

namespace vboard_test
{

using vboard::Bytes;

constexpr const char *board0 = "/dev/board0";
constexpr const char *envinfo0 = "/dev/envinfo0";
constexpr std::uint32_t hard_type_item = 0x8000001;
constexpr std::uint32_t role_item = 0x10002987;

vboard::Profile small_profile(); // an MPU with a hard type, a role and three boot variables

Bytes words(std::initializer_list<std::uint32_t> values);
std::uint32_t word(const Bytes &bytes, std::size_t at); // at a byte offset; the test fails beyond the end

vboard::IoctlCall get(const std::string &device, std::uint32_t item);
vboard::IoctlCall set(const std::string &device, std::uint32_t item, std::uint32_t value);
vboard::IoctlCall self_reset(std::uint32_t reason, const Bytes &date); // seven bytes
vboard::IoctlCall hard_info(std::initializer_list<std::uint32_t> items);
vboard::IoctlCall env(std::uint32_t request, const std::string &name, const std::string &value = "");

// The text up to the first zero.
std::string text(const Bytes &buffer);

} // namespace vboard_test
