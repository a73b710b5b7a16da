// SPDX-License-Identifier: Apache-2.0
// Lists of hard types and how they are searched.
#pragma once

#include <cstddef>
#include <cstdint>
#include <iterator>
#include <span>

namespace moxboot
{

constexpr bool contains(std::span<const uint32_t> types, uint32_t hard_type)
{
    for (uint32_t type : types)
        if (type == hard_type)
            return true;
    return false;
}

template <size_t N>
constexpr bool all_different(const uint32_t (&types)[N])
{
    for (size_t i = 0; i < N; ++i)
        for (size_t j = i + 1; j < N; ++j)
            if (types[i] == types[j])
                return false;
    return true;
}

} // namespace moxboot
