// SPDX-License-Identifier: Apache-2.0
// Operators' tools search the library for its message texts: whether the built file holds them. Programs that
// include this say with MOXBOOT_LIBRARY which file that is.
#pragma once

#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <span>
#include <string>
#include <string_view>

namespace test
{

inline std::string library_bytes()
{
    std::ifstream file(MOXBOOT_LIBRARY, std::ios::binary);
    std::string bytes{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
    EXPECT_GT(bytes.size(), 1000u) << MOXBOOT_LIBRARY;
    return bytes;
}

// Each text stands in the library as it is printed, up to its end.
inline void expect_in_library(std::span<const std::string_view> texts)
{
    const std::string library = library_bytes();
    for (std::string_view text : texts) {
        std::string terminated(text);
        terminated += '\0';
        EXPECT_NE(library.find(terminated), std::string::npos) << text;
    }
}

// None of these stands anywhere in the library.
inline void expect_not_in_library(std::span<const std::string_view> texts)
{
    const std::string library = library_bytes();
    for (std::string_view text : texts)
        EXPECT_EQ(library.find(text), std::string::npos) << text;
}

} // namespace test
