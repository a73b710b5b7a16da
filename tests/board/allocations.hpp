// SPDX-License-Identifier: Apache-2.0
// The library's allocations, whichever function the compiler has made of them: it may join a malloc() and the
// zeroing behind it into one calloc().
#pragma once

#include "support/library.hpp"

#include <algorithm>
#include <cerrno>

namespace test
{

inline std::vector<Call> allocations()
{
    std::vector<Call> some = calls();
    some.erase(std::remove_if(
                   some.begin(), some.end(),
                   [](const Call &call) { return call.function != "malloc" && call.function != "calloc"; }),
               some.end());
    return some;
}

// Plans that the n-th allocation of a run like this earlier one fails.
inline void fail_allocation(const std::vector<Call> &earlier, std::size_t n)
{
    const std::string &function = earlier.at(n).function;
    auto before = std::count_if(earlier.begin(), earlier.begin() + static_cast<std::ptrdiff_t>(n),
                                [&](const Call &call) { return call.function == function; });
    fail_libc(function, ENOMEM, static_cast<unsigned>(before));
}

} // namespace test
