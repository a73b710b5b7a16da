// SPDX-License-Identifier: Apache-2.0
// The product models that the hard type alone tells.
#include "board/family.hpp"

#include <moxboot/model.h>

using namespace moxboot;

namespace
{

constexpr uint32_t kyp362r_hjv[] = {0x900005D2, 0x900005D3, 0x900005DB};
constexpr uint32_t kyp432r[] = {0x900005F5, 0x900005E7};
constexpr uint32_t kyp432v_6273[] = {0x9002071C};
constexpr uint32_t kyp432v_6274[] = {0x90020752};
constexpr uint32_t kyp432r_6273[] = {0x900005F4, 0x900005D1};
constexpr uint32_t kyp432r_6274[] = {0x90020759};
constexpr uint32_t kyp467j[] = {0x900005E6};
constexpr uint32_t kyp247[] = {0x90000758, 0x900005F8};
constexpr uint32_t kyp362v_h[] = {0x90020720};

uint32_t answer(std::span<const uint32_t> types, uint8_t *flag)
{
    return answer_family(types, run_file_unread, flag);
}

} // namespace

uint32_t DrvBoot_IsInstallRunFile_KYP362R_HJV(uint8_t *flag, uintptr_t)
{
    return answer(kyp362r_hjv, flag);
}

uint32_t DrvBoot_IsInstallKYP432RRunFileByHardtype(uint8_t *flag, uintptr_t)
{
    return answer(kyp432r, flag);
}

uint32_t DrvBoot_IsInstallRunFile_KYP432V_6273(uint8_t *flag, uintptr_t)
{
    return answer(kyp432v_6273, flag);
}

uint32_t DrvBoot_IsInstallRunFile_KYP432V_6274(uint8_t *flag, uintptr_t)
{
    return answer(kyp432v_6274, flag);
}

uint32_t DrvBoot_IsInstallRunFile_KYP432R_6273(uint8_t *flag, uintptr_t)
{
    return answer(kyp432r_6273, flag);
}

uint32_t DrvBoot_IsInstallRunFile_KYP432R_6274(uint8_t *flag, uintptr_t)
{
    return answer(kyp432r_6274, flag);
}

uint32_t DrvBoot_IsInstallKYP467JRunFileByHardtype(uint8_t *flag, uintptr_t)
{
    return answer(kyp467j, flag);
}

uint32_t DrvBoot_IsInstallRunFile_KYP247(uint8_t *flag, uintptr_t)
{
    return answer(kyp247, flag);
}

uint32_t DrvBoot_InstallKYP362VH(uint8_t *flag, uintptr_t)
{
    return answer(kyp362v_h, flag);
}
