// SPDX-License-Identifier: Apache-2.0
#include "presumption.hpp"

#include "next.hpp"
#include "reason.hpp"

#include <moxboot/board.h>
#include <moxboot/driver.h>
#include <moxboot/env.h>
#include <moxboot/platform.h>
#include <moxboot/tpm.h>

#include <cstdio>
#include <syslog.h>

namespace moxctl
{

namespace
{

constexpr std::uint32_t unread = 1; // by the stores, in place of 0

const Presumed *presumed = nullptr;

const std::string *presumed_variable(Variables Presumed::*environment, const char *name)
{
    if (presumed == nullptr || name == nullptr)
        return nullptr;
    const Variables &variables = presumed->*environment;
    const auto found = variables.find(name);
    return found == variables.end() ? nullptr : &found->second;
}

bool answer(std::uint32_t *value, std::optional<std::uint32_t> Presumed::*number)
{
    if (presumed == nullptr || !(presumed->*number) || value == nullptr)
        return false;
    *value = *(presumed->*number);
    return true;
}

void put(const std::string &text, char *value, std::size_t size)
{
    std::snprintf(value, size, "%s", text.c_str());
}

} // namespace

Presumption::Presumption(const Presumed &given) : log_mask_(::setlogmask(0))
{
    presumed = &given;
    if (given.alone)
        ::setlogmask(LOG_MASK(LOG_EMERG));
}

Presumption::~Presumption()
{
    presumed = nullptr;
    ::setlogmask(log_mask_);
}

bool asks_about_another()
{
    return presumed != nullptr && presumed->alone;
}

} // namespace moxctl

using namespace moxctl;

std::uint32_t MOX_GetBoardHardType(std::uint32_t *hard_type)
{
    static const auto next = library_function<decltype(&MOX_GetBoardHardType)>("MOX_GetBoardHardType");
    if (answer(hard_type, &Presumed::hard_type))
        return 1; // inverted: 1 is success
    return asks_about_another() ? 0 : next(hard_type);
}

std::uint32_t MOX_GetSelfEncapLogicId(std::uint32_t *logic_id)
{
    static const auto next = library_function<decltype(&MOX_GetSelfEncapLogicId)>("MOX_GetSelfEncapLogicId");
    if (answer(logic_id, &Presumed::logic_id))
        return 0;
    return asks_about_another() ? internal_failure : next(logic_id);
}

std::uint32_t drv_getenv_s(const char *name, char *value, std::int32_t length)
{
    static const auto next = library_function<decltype(&drv_getenv_s)>("drv_getenv_s");
    const std::string *const text = presumed_variable(&Presumed::boot, name);
    if (text == nullptr || value == nullptr || length < 2)
        return asks_about_another() ? unread : next(name, value, length);
    put(*text, value, static_cast<std::size_t>(length));
    return 0;
}

std::uint32_t GetEnv(const char *name, char *value)
{
    static const auto next = library_function<decltype(&GetEnv)>("GetEnv");
    const std::string *const text = presumed_variable(&Presumed::platform, name);
    if (text == nullptr || value == nullptr)
        return asks_about_another() ? unread : next(name, value);
    put(*text, value, DRVBOOT_ENV_SIZE);
    return 0;
}

std::uint32_t SetEnv(const char *name, const char *value)
{
    static const auto next = library_function<decltype(&SetEnv)>("SetEnv");
    return presumed == nullptr ? next(name, value) : 0;
}

std::uint32_t bsp_getmemenv_s(const char *name, char *value, std::uint32_t size)
{
    static const auto next = library_function<decltype(&bsp_getmemenv_s)>("bsp_getmemenv_s");
    const std::string *const text = presumed_variable(&Presumed::memory, name);
    if (text == nullptr || value == nullptr || size <= text->size())
        return asks_about_another() ? unread : next(name, value, size);
    put(*text, value, size);
    return 0;
}

std::uint32_t Drvboot_GetSecureBootType()
{
    static const auto next =
        library_function<decltype(&Drvboot_GetSecureBootType)>("Drvboot_GetSecureBootType");
    if (presumed != nullptr && presumed->secure_boot)
        return *presumed->secure_boot ? 1 : 0;
    return asks_about_another() ? 0 : next();
}
