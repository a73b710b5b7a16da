// SPDX-License-Identifier: Apache-2.0
// Numbers of the command line: decimal, or hexadecimal after "0x". Anything else is a UsageError naming
// `what`.
#pragma once

#include <cstdint>
#include <string>

namespace vboard::cli
{

std::uint32_t number(const std::string &text, const std::string &what);
int signed_number(const std::string &text, const std::string &what);
// An errno by number or by name ("EIO").
int errno_number(const std::string &text);
std::string hex(std::uint32_t value);

} // namespace vboard::cli
