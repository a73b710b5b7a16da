// SPDX-License-Identifier: Apache-2.0
// moxctl env: the variables of the boot environment.
#include "reason.hpp"
#include "verbs.hpp"

#include <moxboot/env.h>

#include <array>
#include <cerrno>
#include <cstring>

namespace moxctl
{

namespace
{

// The library's own failure; texts that are too long, its other reason, were refused before.
constexpr std::uint32_t not_opened = 1;
constexpr const char *device_failed =
    "the boot environment device cannot be opened, or its answer does not fit";

Outcome env_failure(const std::string &action, std::uint32_t result, int error)
{
    if (result == not_opened)
        return failure("cannot " + action + " (" + describe({result, device_failed}) + ")");
    std::string reason = "the driver failed";
    if (error != 0)
        reason += std::string(": ") + std::strerror(error);
    return failure("cannot " + action + " (" + describe({result, reason}) + ")");
}

// An ioctl that gives -1 leaves its reason in errno, and nothing that the library does afterwards touches it.
// Any other result comes without one: 0 then.
template <typename Request>
std::uint32_t ask(int &error, Request request)
{
    const std::uint32_t result = request();
    error = result == internal_failure ? errno : 0;
    return result;
}

} // namespace

Outcome get_variable(const std::string &name)
{
    std::array<char, DRVBOOT_ENV_SIZE> value{};
    int error = 0;
    const std::uint32_t result = ask(error, [&] { return drv_getenv(name.c_str(), value.data()); });
    if (error == ENOENT)
        return failure("boot variable \"" + name + "\" is not set");
    if (result != 0)
        return env_failure("read boot variable \"" + name + "\"", result, error);
    return {{{"name", "Name", words(name)}, {"value", "Value", words(value.data())}}, Style::bare};
}

Outcome set_variable(const std::string &name, const std::string &value)
{
    int error = 0;
    const std::uint32_t result = ask(error, [&] { return drv_setenv(name.c_str(), value.c_str()); });
    if (result != 0)
        return env_failure("set boot variable \"" + name + "\"", result, error);
    return {{{"name", "Name", words(name)}, {"value", "Value", words(value)}}, Style::silent};
}

Outcome clear_variable(const std::string &name)
{
    int error = 0;
    const std::uint32_t result = ask(error, [&] { return drv_clrenv(name.c_str()); });
    if (error == ENOENT)
        return failure("boot variable \"" + name + "\" is not set");
    if (result != 0)
        return env_failure("clear boot variable \"" + name + "\"", result, error);
    return {{{"name", "Name", words(name)}, {"value", "Value", {nullptr, {}, {}}}}, Style::silent};
}

Outcome save_variables()
{
    int error = 0;
    const std::uint32_t result = ask(error, drv_saveenv);
    if (result != 0)
        return env_failure("save the boot environment", result, error);
    return {{{"saved", "Saved", yes_or_no(true)}}, Style::silent};
}

} // namespace moxctl
