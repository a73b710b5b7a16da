// SPDX-License-Identifier: Apache-2.0
#include "variable.hpp"

#include <moxboot/env.h>

#include <array>
#include <cstring>
#include <utility>

namespace moxctl
{

namespace
{

// The library's own failure; texts that are too long, its other reason, were refused before.
constexpr std::uint32_t not_opened = 1;
constexpr const char *device_failed =
    "the boot environment device cannot be opened, or its answer does not fit";

} // namespace

Failure EnvResult::failure() const
{
    if (code == not_opened)
        return {code, device_failed};
    std::string reason = "the driver failed";
    if (error != 0)
        reason += std::string(": ") + std::strerror(error);
    return {code, reason};
}

Variable read_variable(const std::string &name)
{
    std::array<char, DRVBOOT_ENV_SIZE> value{};
    const EnvResult result = ask_environment([&] { return drv_getenv(name.c_str(), value.data()); });
    if (result.code != 0)
        return {result, std::nullopt};
    return {result, value.data()};
}

Answer learnt_from(const Variable &variable, Answer answer)
{
    if (!variable.value && !variable.result.unset())
        answer.failure = variable.result.failure();
    return answer;
}

} // namespace moxctl
