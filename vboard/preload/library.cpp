// SPDX-License-Identifier: Apache-2.0
// dlopen() in front of the real one, which judges its caller by the return address: the caller's own search
// path counts, and its own place for "$ORIGIN". So this one is left by a jump, and the real one returns to
// the caller. The file is compiled with optimization whatever the rest is, which makes a jump of the call at
// the end.
#include "front/library_path.hpp"
#include "preload/next.hpp"

namespace
{
vboard::preload::Next<void *(const char *, int)> next_dlopen{"dlopen"};
}

VBOARD_FRONT void *dlopen(const char *path, int flags) noexcept
{
    return next_dlopen.function()(vboard::library_path(path), flags);
}
