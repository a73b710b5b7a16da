// SPDX-License-Identifier: Apache-2.0
#include "install/boot_file_rows.hpp"

namespace test
{

const std::vector<BootFileRow> boot_file_rows = {
    {"bios_qs3540_mpu.bin", 0x08000005, "DrvBoot_Qs3540OriginalBios"},
    {"bios_qs3540_nand_mpu.bin", 0xA1200501, "DrvBootIsNg3540NandFlashBoard"},
    {"bios_tk7100_mpu.bin", 0x08000005, "DrvBoot_A53le"},
    {"uImage_qs3540_mpu.bin", 0xFE000005, "DrvBoot_Qs3540ExcludeNgBoard"},
    {"uImage_tk7100_mpu.bin", 0xFE000005, "DrvBoot_A53le"},
    {"initrd_qs3540_mpu.img", 0xFD000005, "DrvBoot_Qs3540ExcludeNgBoard"},
    {"initrd_tk7100_mpu.img", 0xFD000005, "DrvBoot_A53le"},
    {"dtb_tk7100_mpu.bin", 0x08000006, "DrvBoot_A53le"},
    {"signature_filelist.bin", 0xFF000009, "DrvBoot_Qs3540"},
    {"signature_cms.bin", 0xFF00000A, "DrvBoot_Qs3540"},
    {"signature_crl.bin", 0xFF00000B, "DrvBoot_Qs3540"},
    {"bios_qs3520_mpu.bin", 0x08000015, "DrvBoot_Qs3520NotSpiFlash"},
    {"bios_qs3520_mpu_sfc.bin", 0x08000017, "DrvBoot_Qs3520SpiFlash"},
    {"uImage_qs3520_mpu.bin", 0xFE000015, "DrvBoot_Qs3520"},
    {"initrd_qs3520_mpu.img", 0xFD000015, "DrvBoot_Qs3520"},
    {"dtb_qs3520_mpu.bin", 0x08000016, "DrvBoot_Qs3520"},
    {"ospkg_qs3540_mpu.bin", 0xFF130006, "DrvBoot_IsNgBoard"},
    {"bios_qs3540_mpu_nextgen.bin", 0xA1210001, "DrvBootInstallBiosQs3540NextGen"},
    {"bios_qs3520_mpu_sfc_nextgen.bin", 0xA1210301, "DrvBoot_Qs3520_nextg"},
    {"ospkg_qs3520_mpu.bin", 0xA2210301, "DrvBoot_Qs3520_nextg"},
    {"bios_qs3540_mpu_sfc.bin", 0xA1200001, "DrvBootIsSfc3540Board"},
    {"HSM1.5_qs3540.bin", 0xAB200001, "DrvBootIsSfc3540Board"},
};

const std::set<std::string> bios_files = {
    "bios_qs3520_mpu_sfc_nextgen.bin", "bios_qs3540_mpu_nextgen.bin",
    "bios_qs3540_mpu_sfc.bin",         "bios_qs3540_mpu.bin",
    "bios_qs3540_nand_mpu.bin",
};

} // namespace test
