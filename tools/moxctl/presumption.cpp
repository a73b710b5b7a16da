// SPDX-License-Identifier: Apache-2.0
#include "presumption.hpp"

#include "next.hpp"

#include <moxboot/board.h>
#include <moxboot/driver.h>
#include <moxboot/env.h>
#include <moxboot/platform.h>

#include <cstdio>

namespace moxctl
{

namespace
{

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

Presumption::Presumption(const Presumed &given)
{
    presumed = &given;
}

Presumption::~Presumption()
{
    presumed = nullptr;
}

} // namespace moxctl

using namespace moxctl;

std::uint32_t MOX_GetBoardHardType(std::uint32_t *hard_type)
{
    static const auto next = library_function<decltype(&MOX_GetBoardHardType)>("MOX_GetBoardHardType");
    return answer(hard_type, &Presumed::hard_type) ? 1 : next(hard_type); // inverted: 1 is success
}

std::uint32_t MOX_GetSelfEncapLogicId(std::uint32_t *logic_id)
{
    static const auto next = library_function<decltype(&MOX_GetSelfEncapLogicId)>("MOX_GetSelfEncapLogicId");
    return answer(logic_id, &Presumed::logic_id) ? 0 : next(logic_id);
}

std::uint32_t drv_getenv_s(const char *name, char *value, std::int32_t length)
{
    static const auto next = library_function<decltype(&drv_getenv_s)>("drv_getenv_s");
    const std::string *const text = presumed_variable(&Presumed::boot, name);
    if (text == nullptr || value == nullptr || length < 2)
        return next(name, value, length);
    put(*text, value, static_cast<std::size_t>(length));
    return 0;
}

std::uint32_t GetEnv(const char *name, char *value)
{
    static const auto next = library_function<decltype(&GetEnv)>("GetEnv");
    const std::string *const text = presumed_variable(&Presumed::platform, name);
    if (text == nullptr || value == nullptr)
        return next(name, value);
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
        return next(name, value, size);
    put(*text, value, size);
    return 0;
}
