// SPDX-License-Identifier: Apache-2.0
// Models by a list of hard types that the caller brings. These have a failure code of their own, and clear
// the flag before the board is asked.
#include "base/result.hpp"
#include "board/family.hpp"
#include "board/hard_types.hpp"

#include <moxboot/model.h>
#include <moxboot/work_mode.h>

using namespace moxboot;

namespace
{

constexpr uint32_t unanswered = 10000;
constexpr uint32_t kyp467r[] = {0x90020709, 0x9002071F};

} // namespace

uint32_t DrvBootInstallRunFile(const uint32_t *types, int32_t count, uint8_t *flag, uint32_t)
{
    if (flag == nullptr)
        return unanswered;
    *flag = 0;
    uint32_t hard_type = 0;
    if ((types == nullptr && count > 0) || !read_hard_type(run_file_unread, &hard_type))
        return unanswered;
    *flag = count > 0 && contains({types, static_cast<size_t>(count)}, hard_type);
    return ok;
}

uint32_t DrvBootInstallRunFileWithPtnmode(const uint32_t *types, int32_t count, uint8_t *flag, uint32_t)
{
    uint8_t listed = 0;
    uint8_t is_ptn = 0;
    if (flag == nullptr || DrvBootInstallRunFile(types, count, &listed, 0) != ok)
        return unanswered;
    DrvBoot_PtnMode(&is_ptn, 0);
    *flag = listed == 1 && is_ptn == 1;
    return ok;
}

uint32_t DrvBootInstallRunFileKYP467R(uint8_t *flag, uintptr_t)
{
    return DrvBootInstallRunFile(kyp467r, std::size(kyp467r), flag, 0);
}

uint32_t DrvBootInstallRunFileKYP467RPtnMode(uint8_t *flag, uintptr_t)
{
    return DrvBootInstallRunFileWithPtnmode(kyp467r, std::size(kyp467r), flag, 0);
}
