// SPDX-License-Identifier: Apache-2.0
// Variables of the boot environment, with what the library tells about a failure and what errno adds to it.
#pragma once

#include "reason.hpp"

#include <cerrno>
#include <optional>
#include <string>

namespace moxctl
{

// What an environment request came to.
struct EnvResult {
    std::uint32_t code;
    int error; // 0: the driver gave no reason

    bool unset() const
    {
        return error == ENOENT;
    }
    Failure failure() const; // of a code other than 0
};

// An ioctl that gives -1 leaves its reason in errno, and nothing that the library does afterwards touches it.
// Any other result comes without one.
template <typename Request>
EnvResult ask_environment(Request request)
{
    const std::uint32_t code = request();
    return {code, code == internal_failure ? errno : 0};
}

struct Variable {
    EnvResult result;
    std::optional<std::string> value; // none: not set, or not to be read
};
Variable read_variable(const std::string &name);

// A variable that something else was learnt from: `answer` when it could be read or is not set, with the
// reason beside it when it could not be read.
Answer learnt_from(const Variable &variable, Answer answer);

} // namespace moxctl
