// SPDX-License-Identifier: Apache-2.0
#include "drv.hpp"
#include "tpm.hpp"

#include <moxboot/platform.h>

int nb_is_sec_boot_en(void)
{
    uint32_t enabled = 0;
    return iof_get_attr_value("/dev/board0", DRVBOOT_TLV_L1_TYPE, platform::item_secure_boot, 0, &enabled,
                              sizeof enabled) == 0 &&
           enabled == 1;
}
