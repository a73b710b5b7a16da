// SPDX-License-Identifier: Apache-2.0
// The words of the pre-reset handshake. They go over the pipes without a terminator.
#pragma once

#include "base/guard.hpp"

#include <cstring>
#include <string_view>
#include <unistd.h>

namespace moxboot
{

constexpr std::string_view announcement = "start";
constexpr std::string_view answer = "end";

enum class Heard { word, other, nothing };

// Reads once. `nothing`: the read failed, errno tells why; a pipe that nobody writes to any more is `other`.
inline Heard hear(const Descriptor &pipe, std::string_view word)
{
    char said[8] = {};
    if (read(pipe.get(), said, word.size()) < 0)
        return Heard::nothing;
    return memcmp(said, word.data(), word.size()) == 0 ? Heard::word : Heard::other;
}

inline void say(const Descriptor &pipe, std::string_view word)
{
    [[maybe_unused]] ssize_t written = write(pipe.get(), word.data(), word.size());
}

} // namespace moxboot
