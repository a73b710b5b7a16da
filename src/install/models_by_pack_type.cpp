// SPDX-License-Identifier: Apache-2.0
// The product models that hard type and package type tell. The package type is asked only on a listed board,
// and one that cannot be read is another one.
#include "base/result.hpp"
#include "board/hard_types.hpp"
#include "install/model.hpp"

#include <moxboot/driver.h>
#include <moxboot/model.h>
#include <moxboot/platform.h>

#include <cstdlib>

using namespace moxboot;

namespace
{

constexpr uint32_t zq_and_q2r[] = {0x9002077B, 0x90020757};
constexpr uint32_t h713[] = {0x90000713};
constexpr uint32_t q2v[] = {0x90020720};
constexpr uint32_t q2v_j[] = {0x9002202A};
constexpr uint32_t r92[] = {0x90000758};
constexpr uint32_t dub594_r22[] = {0x90020786, 0x90020787, 0x90020784, 0x90B2077D};
constexpr uint32_t lw_of_any_pack_type = 0x9000054B;

bool has_pack_type(unsigned long pack_type)
{
    char value[DRVBOOT_ENV_SIZE] = {};
    return bsp_getmemenv_s("pack_type", value, sizeof value) == ok &&
           strtoul(value, nullptr, 10) == pack_type;
}

bool fits(std::span<const uint32_t> types, unsigned long pack_type, uint32_t hard_type)
{
    return contains(types, hard_type) && has_pack_type(pack_type);
}

uint32_t answer(std::span<const uint32_t> types, unsigned long pack_type, PlainText failure, uint8_t *flag)
{
    uint32_t hard_type = 0;
    if (flag == nullptr || !read_hard_type(failure, &hard_type))
        return failed;
    *flag = fits(types, pack_type, hard_type);
    return ok;
}

} // namespace

uint32_t DrvBoot_IsInstallRunFile_KYP362R_LW(uint8_t *flag, uintptr_t)
{
    uint32_t hard_type = 0;
    if (flag == nullptr || !read_hard_type(run_file_unread, &hard_type))
        return failed;
    *flag = hard_type == lw_of_any_pack_type || fits(h713, 102, hard_type);
    return ok;
}

uint32_t DrvBoot_IsInstallRunFile_KYP362R_ZQ(uint8_t *flag, uintptr_t)
{
    return answer(zq_and_q2r, 102, MODEL_UNREAD("KYP362R_ZQ"), flag);
}

uint32_t DrvBoot_IsInstallRunFile_GL6264_Q2R(uint8_t *flag, uintptr_t)
{
    return answer(zq_and_q2r, 165, MODEL_UNREAD("GL6264_Q2R"), flag);
}

uint32_t DrvBoot_IsInstallRunFile_GL6264_Q2H(uint8_t *flag, uintptr_t)
{
    return answer(h713, 145, MODEL_UNREAD("GL6264_Q2H"), flag);
}

uint32_t DrvBoot_IsInstallRunFile_GL6264_Q2V(uint8_t *flag, uintptr_t)
{
    return answer(q2v, 157, MODEL_UNREAD("GL6264_Q2V"), flag);
}

uint32_t DrvBoot_IsInstallRunFile_GL6264_Q2V_J(uint8_t *flag, uintptr_t)
{
    return answer(q2v_j, 157, MODEL_UNREAD("GL6264_Q2V_J"), flag);
}

uint32_t DrvBoot_IsInstallRunFile_KYP613_S(uint8_t *flag, uintptr_t)
{
    return answer(h713, 254, MODEL_UNREAD("KYP613_S"), flag);
}

uint32_t DrvBoot_IsInstallRunFile_GL6264_R92(uint8_t *flag, uintptr_t)
{
    return answer(r92, 169, MODEL_UNREAD("GL6264_R92"), flag);
}

uint32_t DrvBoot_IsInstallRunFile_DUB594_R22(uint8_t *flag, uintptr_t)
{
    return answer(dub594_r22, 174, MODEL_UNREAD("GL6264_Q2R"), flag); // a sibling's name
}
