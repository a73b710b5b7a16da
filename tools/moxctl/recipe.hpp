// SPDX-License-Identifier: Apache-2.0
// What packages are made of.
#pragma once

#include "package/package.hpp"

#include <cstdint>
#include <string>

namespace moxctl
{

// Reads a recipe: a JSON object with "name", "version", and "files", a list of objects with "id" (a text with
// a number), "name", and either "path", seen from the recipe's folder, or "text". Throws std::runtime_error
// with words.
package::Recipe read_recipe(const std::string &file);

// A package with every file that the library's tables speak of. Boot files have `size` bytes.
package::Recipe sample_recipe(const std::string &name, const std::string &version, std::uint32_t size);

} // namespace moxctl
