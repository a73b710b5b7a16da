// SPDX-License-Identifier: Apache-2.0
#include "install/model_ptn_mode.hpp"

#include <moxboot/work_mode.h>

#include <dlfcn.h>

namespace
{
std::optional<test::PtnAnswer> planned;
unsigned asked;
} // namespace

extern "C" std::uint32_t DrvBoot_PtnMode(std::uint8_t *is_ptn, std::uintptr_t argument)
{
    ++asked;
    if (!planned)
        return reinterpret_cast<decltype(&DrvBoot_PtnMode)>(dlsym(RTLD_NEXT, "DrvBoot_PtnMode"))(is_ptn,
                                                                                                 argument);
    if (planned->flag)
        *is_ptn = *planned->flag;
    return planned->result;
}

void test::answer_ptn_mode(std::optional<PtnAnswer> answer)
{
    planned = answer;
    asked = 0;
}

unsigned test::ptn_mode_asked()
{
    return asked;
}
