// SPDX-License-Identifier: Apache-2.0
// The definition of a libc function that comes after the shim's own.
#pragma once

#include <cerrno>
#include <dlfcn.h>

namespace vboard::preload
{

// One slot a function. Two threads may both look it up: they find the same.
template <class Function>
class Next
{
  public:
    explicit constexpr Next(const char *name) : name_(name) {}

    Function *function()
    {
        Function *found = __atomic_load_n(&function_, __ATOMIC_RELAXED);
        if (!found) {
            found = reinterpret_cast<Function *>(dlsym(RTLD_NEXT, name_));
            __atomic_store_n(&function_, found, __ATOMIC_RELAXED);
        }
        return found;
    }

    template <class... Arguments>
    auto operator()(Arguments... arguments)
    {
        return function()(arguments...);
    }

  private:
    const char *name_;
    Function *function_ = nullptr;
};

} // namespace vboard::preload

// Marks what the shim puts in front of libc.
#define VBOARD_FRONT extern "C" __attribute__((visibility("default")))
