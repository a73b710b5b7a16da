// SPDX-License-Identifier: Apache-2.0
// Error numbers and their names ("ENOENT").
#pragma once

#include <optional>
#include <string>

namespace vboard
{

// The name; "errno 4711" for a number that has none.
std::string errno_name(int error);
std::optional<int> errno_from_name(const std::string &name);

} // namespace vboard
