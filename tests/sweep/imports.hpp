// SPDX-License-Identifier: Apache-2.0
// What the library under test asks of others: the slots through which it calls them, and its own variables.
// Only its calls go through these slots; those of the test and of other libraries do not.
#pragma once

#include <map>
#include <string>
#include <vector>

namespace sweep
{

// Each function that the library imports, with the places that hold its address. They can be written from the
// first call on.
using Imports = std::map<std::string, std::vector<void **>>;
const Imports &imports();

// The library's variables as they were when keep_variables() was called; restore_variables() makes every call
// the first one of a process.
void keep_variables();
void restore_variables();

// The address of something that the library exports; the program stops when there is none.
void *exported(const char *name);

} // namespace sweep
