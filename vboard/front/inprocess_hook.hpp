// SPDX-License-Identifier: Apache-2.0
// What all definitions that stand before libc's have in common: asking the hook, and finding the definition
// behind. The files that include this are built without sanitizers, for their functions run before those are
// ready; the definitions behind them are the sanitizers' where there are any.
#pragma once

#include "front/inprocess.hpp"

#include <atomic>
#include <cerrno>
#include <dlfcn.h>
#include <type_traits>

namespace vboard::inprocess
{

// Whether anybody is to be asked or told: a thread that is in a hook is left alone.
bool hooked();
// The hook's answer; errno is set as it says, and otherwise left as it was.
bool answered(const LibcCall &call, long &result);
void tell_block(void *block, const void *caller);

// Whether this thread is in dlsym(), which must not wait for the malloc() that it looks for.
extern constinit thread_local bool looking;

// Looked up at the first call: constructors of other libraries call before this file's could run.
template <typename Function>
Function *find(std::atomic<void *> &place, const char *name)
{
    void *found = place.load(std::memory_order_relaxed);
    if (found == nullptr) {
        looking = true;
        found = dlsym(RTLD_NEXT, name);
        looking = false;
        place.store(found, std::memory_order_relaxed);
    }
    return reinterpret_cast<Function *>(found);
}

// Makes the call unless the hook answers it.
template <typename Make>
auto unless_answered(const LibcCall &call, Make make)
{
    using Result = decltype(make());
    long result = 0;
    if (hooked() && answered(call, result)) {
        if constexpr (std::is_pointer_v<Result>)
            return reinterpret_cast<Result>(result);
        else
            return static_cast<Result>(result);
    }
    return make();
}

} // namespace vboard::inprocess

// The definition behind this one, of the given type.
#define NEXT(type, name)                                                                                     \
    ([]() -> std::add_pointer_t<type> {                                                                      \
        static constinit std::atomic<void *> place{nullptr};                                                 \
        return vboard::inprocess::find<type>(place, name);                                                   \
    }())

#define CALLER __builtin_return_address(0)
