// SPDX-License-Identifier: Apache-2.0
// How the library under test uses a board-support library that it loads for one question.
#pragma once

#include "support/front_library.hpp"
#include "support/library.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

namespace test
{

// One library was opened, by this name and in this way. It was closed again if it could be opened: before a
// word was logged if it was asked, and after it if it could not be.
inline void expect_one_use(const std::string &name, std::size_t flags, bool opened, bool asked)
{
    const auto openings = calls("dlopen");
    ASSERT_EQ(openings.size(), 1u);
    EXPECT_EQ(openings[0].path, name);
    EXPECT_EQ(openings[0].size, flags);
    std::vector<std::string> order;
    for (const Call &call : calls())
        if (call.function == "dlclose" || call.function == "syslog")
            order.push_back(call.function);
    ASSERT_EQ(std::count(order.begin(), order.end(), "dlclose"), opened ? 1 : 0);
    if (opened) {
        EXPECT_EQ(asked ? order.front() : order.back(), "dlclose");
    }
    EXPECT_FALSE(loaded(name));
}

} // namespace test
