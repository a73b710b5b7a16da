// SPDX-License-Identifier: Apache-2.0
// Which flash the board boots from.
#include "base/result.hpp"

#include <moxboot/driver.h>
#include <moxboot/env.h>
#include <moxboot/families.h>

#include <cstring>

using namespace moxboot;

namespace
{

struct Medium {
    char name[5];
    uint32_t code;
};
constexpr Medium media[] = {
    {"NOR", DRVBOOT_FLASH_NOR},
    {"NAND", DRVBOOT_FLASH_NAND},
    {"SFC", DRVBOOT_FLASH_SPI},
};

} // namespace

uint32_t DrvBootGetFlashType(void)
{
    char value[DRVBOOT_ENV_SIZE] = {};
    if (drv_getenv_s("BOOTMEDIA", value, sizeof value) != ok)
        return DRVBOOT_FLASH_NOR;
    for (const Medium &medium : media)
        if (strncmp(value, medium.name, strlen(medium.name)) == 0)
            return medium.code;
    return DRVBOOT_FLASH_NOR;
}
