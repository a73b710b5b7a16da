// SPDX-License-Identifier: Apache-2.0
// The product models in ptn mode: each asks its plain predicate and the mode.
#include "base/result.hpp"

#include <moxboot/model.h>
#include <moxboot/work_mode.h>

using namespace moxboot;

namespace
{

enum class PtnFailure { is_a_no, counts };

uint32_t answer_in_ptn_mode(DrvBootPredicate model, PtnFailure failure, uint8_t *flag)
{
    if (flag == nullptr)
        return failed;
    uint8_t is_model = 0;
    uint8_t is_ptn = 0;
    if (model(&is_model, 0) != ok)
        return failed;
    // Asked on every board: it also notes the current mode in the platform environment.
    if (DrvBoot_PtnMode(&is_ptn, 0) != ok && failure == PtnFailure::counts)
        return failed;
    *flag = is_model == 1 && is_ptn == 1;
    return ok;
}

} // namespace

uint32_t DrvBoot_IsInstallPtnRunFile_KYP362R_HJV(uint8_t *flag, uintptr_t)
{
    return answer_in_ptn_mode(DrvBoot_IsInstallRunFile_KYP362R_HJV, PtnFailure::is_a_no, flag);
}

uint32_t DrvBoot_IsInstallPtnRunFile_KYP247(uint8_t *flag, uintptr_t)
{
    return answer_in_ptn_mode(DrvBoot_IsInstallRunFile_KYP247, PtnFailure::is_a_no, flag);
}

uint32_t DrvBoot_KYP432RRunFileByHardtypeAndPtnmode(uint8_t *flag, uintptr_t)
{
    return answer_in_ptn_mode(DrvBoot_IsInstallKYP432RRunFileByHardtype, PtnFailure::is_a_no, flag);
}

uint32_t DrvBoot_IsInstallPtnRunFile_KYP432V_6273(uint8_t *flag, uintptr_t)
{
    return answer_in_ptn_mode(DrvBoot_IsInstallRunFile_KYP432V_6273, PtnFailure::is_a_no, flag);
}

uint32_t DrvBoot_IsInstallPtnRunFile_KYP432V_6274(uint8_t *flag, uintptr_t)
{
    return answer_in_ptn_mode(DrvBoot_IsInstallRunFile_KYP432V_6274, PtnFailure::is_a_no, flag);
}

uint32_t DrvBoot_IsInstallPtnRunFile_KYP432R_6273(uint8_t *flag, uintptr_t)
{
    return answer_in_ptn_mode(DrvBoot_IsInstallRunFile_KYP432R_6273, PtnFailure::counts, flag);
}

uint32_t DrvBoot_IsInstallPtnRunFile_KYP432R_6274(uint8_t *flag, uintptr_t)
{
    return answer_in_ptn_mode(DrvBoot_IsInstallRunFile_KYP432R_6274, PtnFailure::is_a_no, flag);
}

uint32_t DrvBoot_KYP467JRunFileByHardtypeAndPtnmode(uint8_t *flag, uintptr_t)
{
    return answer_in_ptn_mode(DrvBoot_IsInstallKYP467JRunFileByHardtype, PtnFailure::is_a_no, flag);
}

uint32_t DrvBoot_IsInstallPtnRunFile_KYP362R_LW(uint8_t *flag, uintptr_t)
{
    return answer_in_ptn_mode(DrvBoot_IsInstallRunFile_KYP362R_LW, PtnFailure::is_a_no, flag);
}

uint32_t DrvBoot_IsInstallPtnRunFile_KYP613_S(uint8_t *flag, uintptr_t)
{
    return answer_in_ptn_mode(DrvBoot_IsInstallRunFile_KYP613_S, PtnFailure::is_a_no, flag);
}

uint32_t DrvBoot_IsInstallPtnRunFile_KYP362V_H(uint8_t *flag, uintptr_t)
{
    return answer_in_ptn_mode(DrvBoot_InstallKYP362VHWithoutPack, PtnFailure::is_a_no, flag);
}

uint32_t DrvBoot_IsInstallPtnRunFile_KYP362V_J(uint8_t *flag, uintptr_t)
{
    return answer_in_ptn_mode(DrvBoot_IsInstallRunFile_KYP362V_J, PtnFailure::is_a_no, flag);
}

uint32_t DrvBoot_IsInstallPtnRunFile_KYP362R_ZQ(uint8_t *flag, uintptr_t)
{
    return answer_in_ptn_mode(DrvBoot_IsInstallRunFile_KYP362R_ZQ, PtnFailure::counts, flag);
}

uint32_t DrvBoot_IsInstallPtnRunFile_GL6264_Q7(uint8_t *flag, uintptr_t)
{
    return answer_in_ptn_mode(DrvBoot_IsInstallRunFile_GL6264_Q7, PtnFailure::counts, flag);
}

uint32_t DrvBoot_IsInstallPtnRunFile_GL6264_Q7Z(uint8_t *flag, uintptr_t)
{
    return answer_in_ptn_mode(DrvBoot_IsInstallRunFile_GL6264_Q7Z, PtnFailure::counts, flag);
}

uint32_t DrvBoot_IsInstallPtnRunFile_GL6264_R22(uint8_t *flag, uintptr_t)
{
    return answer_in_ptn_mode(DrvBoot_IsInstallRunFile_GL6264_R22, PtnFailure::counts, flag);
}

uint32_t DrvBoot_IsInstallPtnRunFile_GL6264_H639Q(uint8_t *flag, uintptr_t)
{
    return answer_in_ptn_mode(DrvBoot_IsInstallRunFile_GL6264_H639Q, PtnFailure::counts, flag);
}

uint32_t DrvBoot_IsInstallPtnRunFile_Ploxy_H632(uint8_t *flag, uintptr_t)
{
    return answer_in_ptn_mode(DrvBoot_IsInstallRunFile_Ploxy_H632, PtnFailure::counts, flag);
}

uint32_t DrvBoot_IsInstallPtnRunFile_Ploxy_H632U(uint8_t *flag, uintptr_t)
{
    return answer_in_ptn_mode(DrvBoot_IsInstallRunFile_Ploxy_H632U, PtnFailure::counts, flag);
}

uint32_t DrvBoot_IsInstallPtnRunFile_GL6264_H622(uint8_t *flag, uintptr_t)
{
    return answer_in_ptn_mode(DrvBoot_IsInstallRunFile_GL6264_H622, PtnFailure::counts, flag);
}

uint32_t DrvBoot_IsInstallPtnRunFile_GL6264_H622Q(uint8_t *flag, uintptr_t)
{
    return answer_in_ptn_mode(DrvBoot_IsInstallRunFile_GL6264_H622Q, PtnFailure::counts, flag);
}

uint32_t DrvBoot_IsInstallPtnRunFile_GL6264_Q2R(uint8_t *flag, uintptr_t)
{
    return answer_in_ptn_mode(DrvBoot_IsInstallRunFile_GL6264_Q2R, PtnFailure::counts, flag);
}

uint32_t DrvBoot_IsInstallPtnRunFile_GL6264_Q2H(uint8_t *flag, uintptr_t)
{
    return answer_in_ptn_mode(DrvBoot_IsInstallRunFile_GL6264_Q2H, PtnFailure::counts, flag);
}

uint32_t DrvBoot_IsInstallPtnRunFile_GL6264_Q2V(uint8_t *flag, uintptr_t)
{
    return answer_in_ptn_mode(DrvBoot_IsInstallRunFile_GL6264_Q2V, PtnFailure::counts, flag);
}

uint32_t DrvBoot_IsInstallPtnRunFile_GL6264_Q2V_J(uint8_t *flag, uintptr_t)
{
    return answer_in_ptn_mode(DrvBoot_IsInstallRunFile_GL6264_Q2V_J, PtnFailure::counts, flag);
}

uint32_t DrvBoot_IsInstallPtnRunFile_GL6264_R92(uint8_t *flag, uintptr_t)
{
    return answer_in_ptn_mode(DrvBoot_IsInstallRunFile_GL6264_R92, PtnFailure::counts, flag);
}

uint32_t DrvBoot_IsInstallPtnRunFile_DUB594_R22(uint8_t *flag, uintptr_t)
{
    return answer_in_ptn_mode(DrvBoot_IsInstallRunFile_DUB594_R22, PtnFailure::counts, flag);
}
