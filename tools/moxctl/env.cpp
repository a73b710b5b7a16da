// SPDX-License-Identifier: Apache-2.0
// moxctl env: the variables of the boot environment.
#include "variable.hpp"
#include "verbs.hpp"

#include <moxboot/env.h>

namespace moxctl
{

namespace
{

Outcome env_failure(const std::string &action, const EnvResult &result)
{
    return failure("cannot " + action + " (" + describe(result.failure()) + ")");
}

Outcome variable_failure(const char *action, const std::string &name, const EnvResult &result)
{
    if (result.unset())
        return failure("boot variable \"" + name + "\" is not set");
    return env_failure(std::string(action) + " boot variable \"" + name + "\"", result);
}

} // namespace

Outcome get_variable(const std::string &name)
{
    const Variable variable = read_variable(name);
    if (!variable.value)
        return variable_failure("read", name, variable.result);
    return {{{"name", "Name", words(name)}, {"value", "Value", words(*variable.value)}}, Style::bare};
}

Outcome set_variable(const std::string &name, const std::string &value)
{
    const EnvResult result = ask_environment([&] { return drv_setenv(name.c_str(), value.c_str()); });
    if (result.code != 0)
        return env_failure("set boot variable \"" + name + "\"", result);
    return {{{"name", "Name", words(name)}, {"value", "Value", words(value)}}, Style::silent};
}

Outcome clear_variable(const std::string &name)
{
    const EnvResult result = ask_environment([&] { return drv_clrenv(name.c_str()); });
    if (result.code != 0)
        return variable_failure("clear", name, result);
    return {{{"name", "Name", words(name)}, {"value", "Value", {nullptr, {}, {}}}}, Style::silent};
}

Outcome save_variables()
{
    const EnvResult result = ask_environment(drv_saveenv);
    if (result.code != 0)
        return env_failure("save the boot environment", result);
    return {{{"saved", "Saved", yes_or_no(true)}}, Style::silent};
}

} // namespace moxctl
