// SPDX-License-Identifier: Apache-2.0
// The install root, a directory beside which packages are unpacked and links are made.
#pragma once

#include <string>

namespace moxctl
{

// Absolute, without "/" at its end: links name their sources by it, and the library appends to it.
std::string install_root(const std::string &word);

// What is wrong with the word; nothing when all is well. The library has no room for every path.
std::string check_install_root(const std::string &word);

} // namespace moxctl
