// SPDX-License-Identifier: Apache-2.0
// Finds the library's own definition of a function that moxctl has put one in front of.
#pragma once

#include <dlfcn.h>
#include <stdexcept>
#include <string>

namespace moxctl
{

template <typename Function>
Function library_function(const char *name)
{
    void *const found = ::dlsym(RTLD_NEXT, name);
    if (found == nullptr)
        throw std::runtime_error(std::string("the library has no function ") + name);
    return reinterpret_cast<Function>(found);
}

} // namespace moxctl
