// SPDX-License-Identifier: Apache-2.0
#include "support/library_texts.hpp"

namespace
{

constexpr std::string_view texts[] = {
    "libdrv_basic.so",
    "drv_update_startup_file",
    "drv_update_delete_startup_file",
    "/boot",
    "%s/%s",
    "bios_qs3520_mpu_sfc_nextgen.bin",
    "bios_qs3540_mpu_nextgen.bin",
    "bios_qs3540_mpu_sfc.bin",
    "bios_qs3540_mpu.bin",
    "bios_qs3540_nand_mpu.bin",
    "ospkg_qs3540_mpu.bin",
    "ospkg_qs3520_mpu.bin",
    "HSM1.5_qs3540.bin",
    "Drvboot pre install os begin\n",
    "Drvboot pre install os end(ret is 0x%x)\n",
    "[Preload]pre load boot file enter\n",
    "[Preload]pre load boot file end\n",
    "[Preload]dlopen drv_basic unsuccessfully.\n",
    "[Preload]dlsym drv update interface unsuccessfully.\n",
    "[Preload]update_delete_startup_file does not exist.\n",
    "[Preload]Unable to print file(%s/%s).\n",
    "[Preload]preload file(%s) and type(%u) unsuccessfully.\n",
    "[Preload]delete startup file ret is %u.\n",
};

TEST(PreloadTexts, StandInTheLibrary)
{
    test::expect_in_library(texts);
}

} // namespace
