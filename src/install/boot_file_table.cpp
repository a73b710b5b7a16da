// SPDX-License-Identifier: Apache-2.0
// The boot files. The links of these files are renewed by every installation.
#include <moxboot/boot_file.h>

constexpr BootFileDesc g_bootFileDesc[DRVBOOT_BOOT_FILES] = {
    {"bios_qs3540_mpu.bin", "0x08000005", DrvBoot_Qs3540OriginalBios},
    {"bios_qs3540_nand_mpu.bin", "0xa1200501", DrvBootIsNg3540NandFlashBoard},
    {"bios_tk7100_mpu.bin", "0x08000005", DrvBoot_A53le},
    {"uImage_qs3540_mpu.bin", "0xfe000005", DrvBoot_Qs3540ExcludeNgBoard},
    {"uImage_tk7100_mpu.bin", "0xfe000005", DrvBoot_A53le},
    {"initrd_qs3540_mpu.img", "0xfd000005", DrvBoot_Qs3540ExcludeNgBoard},
    {"initrd_tk7100_mpu.img", "0xfd000005", DrvBoot_A53le},
    {"dtb_tk7100_mpu.bin", "0x08000006", DrvBoot_A53le},
    {"signature_filelist.bin", "0xff000009", DrvBoot_Qs3540},
    {"signature_cms.bin", "0xff00000a", DrvBoot_Qs3540},
    {"signature_crl.bin", "0xff00000b", DrvBoot_Qs3540},
    {"bios_qs3520_mpu.bin", "0x08000015", DrvBoot_Qs3520NotSpiFlash},
    {"bios_qs3520_mpu_sfc.bin", "0x08000017", DrvBoot_Qs3520SpiFlash},
    {"uImage_qs3520_mpu.bin", "0xfe000015", DrvBoot_Qs3520},
    {"initrd_qs3520_mpu.img", "0xfd000015", DrvBoot_Qs3520},
    {"dtb_qs3520_mpu.bin", "0x08000016", DrvBoot_Qs3520},
    {"ospkg_qs3540_mpu.bin", "0xff130006", DrvBoot_IsNgBoard},
    {"bios_qs3540_mpu_nextgen.bin", "0xa1210001", DrvBootInstallBiosQs3540NextGen},
    {"bios_qs3520_mpu_sfc_nextgen.bin", "0xa1210301", DrvBoot_Qs3520_nextg},
    {"ospkg_qs3520_mpu.bin", "0xa2210301", DrvBoot_Qs3520_nextg},
    {"bios_qs3540_mpu_sfc.bin", "0xa1200001", DrvBootIsSfc3540Board},
    {"HSM1.5_qs3540.bin", "0xab200001", DrvBootIsSfc3540Board},
};
static_assert(g_bootFileDesc[DRVBOOT_BOOT_FILES - 1].file_name != nullptr, "a row is missing");
