// SPDX-License-Identifier: Apache-2.0
// moxctl mcu: the board's management microcontroller.
#include "reason.hpp"
#include "verbs.hpp"

#include <moxboot/mcu.h>

#include <array>
#include <dlfcn.h>

namespace moxctl
{

namespace
{

constexpr const char *status_library = "libdrv_basic.so";
constexpr const char *id_library = "libdrv_secure.so";

// The library answers a support library that is missing like an MCU that is, and tells only the system log.
std::optional<std::string> missing(const char *name)
{
    void *const library = ::dlopen(name, RTLD_NOW);
    if (library == nullptr)
        return std::string(name) + " cannot be loaded";
    ::dlclose(library);
    return std::nullopt;
}

Answer online()
{
    if (MOX_IsSupportMcu() == 1)
        return yes_or_no(true);
    if (const auto words = missing(status_library))
        return unreadable(0, *words);
    return yes_or_no(false, "or its state cannot be read");
}

Answer die_id()
{
    std::array<char, 2 * MOX_MCU_DIE_ID_MAX + 1> id{};
    std::uint32_t length = id.size();
    if (const std::uint32_t result = MOX_GetMcuID(id.data(), &length); result != 0)
        return unreadable(result, missing(id_library).value_or("the board-support library gives none"));
    if (length == 0)
        return {nullptr, "none", "an id of no bytes"};
    return words(id.data());
}

} // namespace

Outcome mcu()
{
    Outcome outcome{{{"online", "MCU online", online()}, {"die_id", "Die id", die_id()}}};
    if (outcome.facts[0].answer.failure && outcome.facts[1].answer.failure)
        outcome.error = "nothing is known about the MCU";
    return outcome;
}

} // namespace moxctl
