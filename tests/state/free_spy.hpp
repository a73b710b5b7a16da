// SPDX-License-Identifier: Apache-2.0
// Which blocks the calling thread gives back while something runs; a test has threads of its own beside it.
// The compiler may let a function of the library end in free() itself, and then the caller of free() is the
// test.
#pragma once

#include "support/from_library.hpp"

#include <functional>
#include <pthread.h>
#include <string_view>
#include <vector>

namespace test
{

inline std::vector<const void *> *freed_blocks = nullptr;
inline pthread_t freeing_thread;

inline std::optional<vboard::LibcAnswer> on_call_with_free_spy(const vboard::LibcCall &call)
{
    if (std::string_view(call.function) == "free") {
        if (pthread_equal(pthread_self(), freeing_thread))
            freed_blocks->push_back(call.data);
        return on_library_call(call);
    }
    return on_any_call(call);
}

inline std::vector<const void *> freed_during(const std::function<void()> &action)
{
    std::vector<const void *> blocks;
    freed_blocks = &blocks;
    freeing_thread = pthread_self();
    vboard::set_libc_hook(on_call_with_free_spy);
    action();
    vboard::set_libc_hook(on_any_call);
    return blocks;
}

} // namespace test
