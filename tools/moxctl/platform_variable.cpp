// SPDX-License-Identifier: Apache-2.0
#include "platform_variable.hpp"

#include <moxboot/driver.h>
#include <moxboot/platform.h>

#include <array>

namespace moxctl
{

std::optional<std::string> platform_variable(const char *name)
{
    std::array<char, DRVBOOT_ENV_SIZE> text{};
    if (GetEnv(name, text.data()) != 0)
        return std::nullopt;
    return text.data();
}

std::optional<std::string> memory_variable(const char *name)
{
    std::array<char, DRVBOOT_ENV_SIZE> text{};
    if (bsp_getmemenv_s(name, text.data(), text.size()) != 0)
        return std::nullopt;
    return text.data();
}

Answer variable_answer(const std::optional<std::string> &value)
{
    return value ? words(*value) : Answer{nullptr, "not set", "or the environment cannot be read"};
}

} // namespace moxctl
