// SPDX-License-Identifier: Apache-2.0
// Short words for the tables; for the files of the tables only.
#pragma once

#include "sweep/tables.hpp"

// A row of a function that is called with these arguments; what follows says what it may answer.
#define ROW(function_, arguments, ...)                                                                       \
    Row                                                                                                      \
    {                                                                                                        \
        .function = #function_, .call = []([[maybe_unused]] Outputs &out) -> std::int64_t {                  \
            return number(function_ arguments);                                                              \
        } __VA_OPT__(, ) __VA_ARGS__                                                                         \
    }
// One without a result.
#define VOID_ROW(function_, arguments, ...)                                                                  \
    Row                                                                                                      \
    {                                                                                                        \
        .function = #function_, .call = []([[maybe_unused]] Outputs &out) -> std::int64_t {                  \
            function_ arguments;                                                                             \
            return 0;                                                                                        \
        } __VA_OPT__(, ) __VA_ARGS__                                                                         \
    }

namespace sweep
{

inline const Results failed = only({minus_1});
inline const Results channel_result = only({refused_by_driver, minus_1});
constexpr Failure kept = Failure::leaves_outputs;

inline Rows operator+(Rows some, const Rows &more)
{
    some.insert(some.end(), more.begin(), more.end());
    return some;
}

} // namespace sweep
