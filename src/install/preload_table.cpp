// SPDX-License-Identifier: Apache-2.0
// The files of the preload. BIOS files come first: their first row uses up the delete flag.
#include <moxboot/preload.h>

constexpr const char *boot = "/boot";

constexpr PreloadFileDesc g_preloadFileTbl[DRVBOOT_PRELOAD_FILES] = {
    {boot, "bios_qs3520_mpu_sfc_nextgen.bin", DRVBOOT_STARTUP_BIOS, DrvBootInstallBiosQs3520NextGen},
    {boot, "bios_qs3540_mpu_nextgen.bin", DRVBOOT_STARTUP_BIOS, DrvBootInstallBiosQs3540NextGen},
    {boot, "bios_qs3540_mpu_sfc.bin", DRVBOOT_STARTUP_BIOS, DrvBootIsSfc3540Board},
    {boot, "bios_qs3540_mpu.bin", DRVBOOT_STARTUP_BIOS, DrvBootIsNg3540OtherFlash},
    {boot, "bios_qs3540_nand_mpu.bin", DRVBOOT_STARTUP_BIOS, DrvBootIsNg3540NandFlashBoard},
    {boot, "ospkg_qs3540_mpu.bin", DRVBOOT_STARTUP_OS_PACKAGE, DrvBoot_Qs3540},
    {boot, "ospkg_qs3520_mpu.bin", DRVBOOT_STARTUP_OS_PACKAGE, DrvBootIs3520NextGenBiosBoard},
    {boot, "HSM1.5_qs3540.bin", DRVBOOT_STARTUP_HSM, DrvBootIsSfc3540Board},
};
static_assert(g_preloadFileTbl[DRVBOOT_PRELOAD_FILES - 1].file_name != nullptr, "a row is missing");
