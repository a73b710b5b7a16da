// SPDX-License-Identifier: Apache-2.0
// The product models that hard type and product service type tell. Both are read on every board.
#include "base/result.hpp"
#include "install/model.hpp"

#include <moxboot/driver.h>
#include <moxboot/env.h>
#include <moxboot/model.h>

#include <cstdlib>

using namespace moxboot;

namespace
{

uint32_t answer(uint32_t type, uint32_t service_type, PlainText failure, uint8_t *flag)
{
    uint32_t hard_type = 0;
    uint32_t own_service_type = 0;
    if (flag == nullptr || !read_hard_type(failure, &hard_type) ||
        DrvBoot_GetProductServiceType(&own_service_type) != ok)
        return failed;
    *flag = hard_type == type && own_service_type == service_type;
    return ok;
}

} // namespace

uint32_t DrvBoot_GetProductServiceType(uint32_t *type)
{
    if (type == nullptr)
        return failed;
    char value[DRVBOOT_ENV_SIZE] = {};
    if (drv_getenv_s("product_service_type", value, sizeof value) != ok) {
        REPORT_FAILURE("get service type env unsuccess!\n");
        return failed;
    }
    *type = static_cast<uint32_t>(strtoul(value, nullptr, 10));
    return ok;
}

uint32_t DrvBoot_InstallKYP362VHWithoutPack(uint8_t *flag, uintptr_t)
{
    return answer(0x90020720, 148, run_file_unread, flag);
}

uint32_t DrvBoot_IsInstallRunFile_KYP362V_J(uint8_t *flag, uintptr_t)
{
    return answer(0x9002202A, 148, run_file_unread, flag);
}

uint32_t DrvBoot_IsInstallRunFile_KYP627_S(uint8_t *flag, uintptr_t)
{
    return answer(0x9002071C, 253, MODEL_UNREAD("KYP627_S"), flag);
}
