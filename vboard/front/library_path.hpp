// SPDX-License-Identifier: Apache-2.0
// Libraries that programs open by their place on a board. The machine's own "/lib" is shown on a virtual
// board and stays as it is, so such a library is looked for by its name, where the caller's other libraries
// are.
#pragma once

#include <cstring>

namespace vboard
{

// What is opened in place of `path`; anything else goes by the name that it was given.
inline const char *library_path(const char *path)
{
    return path != nullptr && std::strcmp(path, "/lib/libnb_bsp.so") == 0 ? "libnb_bsp.so" : path;
}

} // namespace vboard
