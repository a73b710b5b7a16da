// SPDX-License-Identifier: Apache-2.0
// The library's functions of links and boot files once more, in front of it: each notes that it was called,
// and with what, and passes the call on unless it has an answer of its own.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace test
{

extern std::vector<std::string> steps;
extern std::map<std::string, std::int64_t> own_answers; // by function; what is not here is passed on
extern std::uint32_t own_logic_id;

} // namespace test
