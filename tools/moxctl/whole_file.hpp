// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

namespace moxctl
{

// A file that is there whole or, after a failure, as it was before. Throws std::runtime_error.
void write_whole_file(const std::string &path, const std::string &text);

} // namespace moxctl
