// SPDX-License-Identifier: Apache-2.0
// Board-support libraries of a test's own in front of the platform's stand-ins of the same names. The program
// is linked with front_libraries, which has it look into the folder of these first.
#pragma once

#include <string>

namespace test
{

// Puts a copy of `file` in front of the stand-in of this name.
void copy_to_front(const std::string &name, const std::string &file);
// Puts a file in front that is no library.
void spoil_front(const std::string &name);
// The stand-in again.
void remove_from_front(const std::string &name);

// Whether a library of this name is loaded now.
bool loaded(const std::string &name);

} // namespace test
