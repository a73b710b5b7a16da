// SPDX-License-Identifier: Apache-2.0
// Calls every exported function once, with nothing failing.
#include "sweep/sweep.hpp"
#include "sweep/where.hpp"

#include <cstdio>

int main()
{
    sweep::Tally all;
    for (const sweep::Family &family : sweep::families())
        for (const sweep::Row &row : family.rows())
            all += sweep::call_once(row);
    sweep::nowhere();
    for (const std::string &violation : all.violations)
        std::printf("%s\n", violation.c_str());
    std::printf("%zu functions, %zu calls\n", all.functions, all.calls);
    return all.violations.empty() && all.functions != 0 ? 0 : 1;
}
