// SPDX-License-Identifier: Apache-2.0
// A mount table of the test's own in place of the kernel's.
#pragma once

#include "support/library.hpp"

#include <cstdio>
#include <fstream>
#include <string>

namespace test
{

constexpr const char *reset_data = "/opt/moxv8/SoftResetData";

// The next mount table that the library opens holds these lines.
inline void answer_mounts(const std::string &lines)
{
    std::ofstream("/tmp/own-mounts") << lines;
    answer_libc("setmntent", reinterpret_cast<long>(std::fopen("/tmp/own-mounts", "r")));
}

} // namespace test
