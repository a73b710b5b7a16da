// SPDX-License-Identifier: Apache-2.0
// Watches a call that never comes back.
#pragma once

#include "support/library.hpp"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <functional>
#include <memory>
#include <thread>

namespace test
{

// Makes the call on a thread that is left behind, and comes back once that has gone to sleep `rounds` times
// without waiting and once more for real. The call must not use anything that the test takes away at its end.
inline void until_asleep(const std::function<void()> &call, unsigned rounds = 3)
{
    answer_libc("sleep", 0, 0, rounds);
    auto returned = std::make_shared<std::atomic<bool>>(false);
    std::thread([call, returned] {
        call();
        *returned = true;
    }).detach();
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(30);
    while (!*returned && calls("sleep").size() <= rounds && std::chrono::steady_clock::now() < deadline)
        std::this_thread::sleep_for(std::chrono::milliseconds(2));
    EXPECT_FALSE(*returned);
    EXPECT_GT(calls("sleep").size(), rounds);
    for (const Call &sleep : calls("sleep"))
        EXPECT_EQ(sleep.microseconds, 1000000u);
}

} // namespace test
