// SPDX-License-Identifier: Apache-2.0
// The kernel's modules that the machine needs, in the order in which they can be loaded.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace vboard::machine
{

// The files of the named modules and of all that they depend on, each after those it needs. The packages of
// the kernel bring no list of dependencies; each module names its own. Throws std::runtime_error for one that
// is missing.
std::vector<std::filesystem::path> load_order(const std::filesystem::path &modules,
                                              const std::vector<std::string> &wanted);

// What a module's file says it depends on.
std::vector<std::string> dependencies(const std::string &module);

} // namespace vboard::machine
