// SPDX-License-Identifier: Apache-2.0
// The manifest as it stands in a package.
#pragma once

#include "package/package.hpp"

namespace package
{

constexpr std::string_view manifest_name = "manifest.json";
constexpr std::string_view manifest_digest_name = "manifest.sha256";
constexpr std::uint64_t largest_manifest = 1U << 20;

// These throw Error with a message that does not name the package.
Manifest parse_manifest(const std::string &text);
std::string print_manifest(const Manifest &manifest);
// No two files share an id or a name, and all names are good.
void check_files(const Manifest &manifest);

std::string hexadecimal(std::uint32_t id);

// The line of "manifest.sha256".
std::string digest_line(const std::string &manifest_text);

} // namespace package
