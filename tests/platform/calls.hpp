// SPDX-License-Identifier: Apache-2.0
// Stands in front of the libc calls that the stand-ins make. Without a hook they go straight on.
#pragma once

#include <cstddef>
#include <functional>
#include <optional>

namespace test
{

struct Call {
    const char *function; // the plain name, also for the variants with 64-bit offsets and times
    const char *path = nullptr;
    int fd = -1;
    int flags = 0;
    unsigned long request = 0;
    void *argument = nullptr; // write: what is written
    std::size_t size = 0;     // write
};

// Answers with the call's result, having set errno itself, or with nothing: then the real call is made.
using Hook = std::function<std::optional<long>(const Call &)>;

// Sees every call made in its life, those of the hook itself excepted. One thread at a time.
class Watch
{
  public:
    explicit Watch(Hook hook);
    ~Watch();
    Watch(const Watch &) = delete;
    Watch &operator=(const Watch &) = delete;
};

} // namespace test
