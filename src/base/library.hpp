// SPDX-License-Identifier: Apache-2.0
// A board-support library that is opened for one call and closed again on every path.
#pragma once

#include <dlfcn.h>

namespace moxboot
{

class LoadedLibrary
{
  public:
    // As a rule its own symbols come first: board-support libraries bring functions of common names.
    explicit LoadedLibrary(const char *name, int flags = RTLD_NOW | RTLD_DEEPBIND)
        : handle_(dlopen(name, flags))
    {
    }
    LoadedLibrary(const LoadedLibrary &) = delete;
    LoadedLibrary &operator=(const LoadedLibrary &) = delete;
    ~LoadedLibrary()
    {
        if (handle_ != nullptr)
            dlclose(handle_);
    }
    bool valid() const
    {
        return handle_ != nullptr;
    }
    // Null when the library has no such function.
    template <typename Function>
    Function *function(const char *name) const
    {
        return reinterpret_cast<Function *>(dlsym(handle_, name));
    }

  private:
    void *handle_;
};

} // namespace moxboot
