// SPDX-License-Identifier: Apache-2.0
#include "presumption.hpp"

#include "next.hpp"

#include <moxboot/board.h>
#include <moxboot/env.h>

#include <cstdio>

namespace moxctl
{

namespace
{

const Presumed *presumed = nullptr;

const std::string *presumed_variable(const char *name)
{
    if (presumed == nullptr || name == nullptr)
        return nullptr;
    const auto found = presumed->variables.find(name);
    return found == presumed->variables.end() ? nullptr : &found->second;
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
    if (presumed == nullptr || !presumed->hard_type || hard_type == nullptr)
        return next(hard_type);
    *hard_type = *presumed->hard_type;
    return 1; // inverted: 1 is success
}

std::uint32_t drv_getenv_s(const char *name, char *value, std::int32_t length)
{
    static const auto next = library_function<decltype(&drv_getenv_s)>("drv_getenv_s");
    const std::string *const text = presumed_variable(name);
    if (text == nullptr || value == nullptr || length < 2)
        return next(name, value, length);
    std::snprintf(value, static_cast<std::size_t>(length), "%s", text->c_str());
    return 0;
}
