// SPDX-License-Identifier: Apache-2.0
#include "package_library.hpp"

#include <dlfcn.h>

namespace moxctl
{

const package::Interface &package_library()
{
    // Never closed: its errors are thrown through moxctl.
    void *const library = ::dlopen("libmoxpackage.so", RTLD_NOW);
    void *const found = library != nullptr ? ::dlsym(library, "moxpackage_interface") : nullptr;
    if (found == nullptr)
        throw std::runtime_error(std::string("packages cannot be read here: ") + ::dlerror());
    return *reinterpret_cast<decltype(&moxpackage_interface)>(found)();
}

} // namespace moxctl
