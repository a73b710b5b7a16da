// SPDX-License-Identifier: Apache-2.0
// Which boards keep which kind of backup.
#include "base/report.hpp"
#include "base/result.hpp"
#include "board/hard_types.hpp"

#include <moxboot/driver.h>
#include <moxboot/env.h>
#include <moxboot/families.h>

#include <cstdlib>

using namespace moxboot;

namespace
{

constexpr uint32_t single_backup[] = {0x9000054B, 0x900005F8, 0x900005F2, 0x90000713, 0x90000758};
static_assert(std::size(single_backup) == 5 && all_different(single_backup));
constexpr uint32_t fixed_ng_box[] = {0x90020720, 0x9002202A};
constexpr unsigned long ptn_box = 8; // product family

} // namespace

uint32_t DrvbootIsSupportSingleBakup(uint32_t hard_type)
{
    return contains(single_backup, hard_type);
}

uint32_t DrvbootIsSupporDataBakup(uint32_t hard_type)
{
    char value[DRVBOOT_ENV_SIZE] = {};
    uint32_t result = drv_getenv_s("product_family_type", value, sizeof value);
    if (result != ok || strtoul(value, nullptr, 10) != ptn_box) {
        REPORT_INFO("[drv_boot] product not ptn box.\n");
        return 0;
    }
    return contains(g_ng_board_list, hard_type);
}

uint32_t DrvbootNgFixBoxSingleBakup(uint32_t hard_type)
{
    return contains(fixed_ng_box, hard_type);
}

uint32_t DrvbootBakupParaSet(uint32_t hard_type)
{
    return DrvbootIsSupportSingleBakup(hard_type) != 0 || DrvbootNgFixBoxSingleBakup(hard_type) != 0 ? 1 : 0;
}
