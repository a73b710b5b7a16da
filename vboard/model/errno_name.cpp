// SPDX-License-Identifier: Apache-2.0
#include "model/errno_name.hpp"

#include <cstring>

namespace vboard
{

namespace
{

constexpr int last_errno = 4095; // the highest that a system call can return

} // namespace

std::string errno_name(int error)
{
    const char *name = error > 0 ? strerrorname_np(error) : nullptr;
    return name ? name : "errno " + std::to_string(error);
}

std::optional<int> errno_from_name(const std::string &name)
{
    for (int error = 1; error <= last_errno; ++error) {
        const char *known = strerrorname_np(error);
        if (known && name == known)
            return error;
    }
    return std::nullopt;
}

} // namespace vboard
