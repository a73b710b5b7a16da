// SPDX-License-Identifier: Apache-2.0
#include "install/preload_files.hpp"

#include "board/family_rows.hpp"

#include <algorithm>
#include <stdexcept>

namespace test
{

#define FAMILY(function) #function, function

const std::vector<FlashFile> flash_files = {
    {"/boot",
     "bios_qs3520_mpu_sfc_nextgen.bin",
     256,
     FAMILY(DrvBootInstallBiosQs3520NextGen),
     0x90020784,
     "NOR",
     {"update 256 /boot/bios_qs3520_mpu_sfc_nextgen.bin", "update 260 /boot/ospkg_qs3520_mpu.bin"}},
    {"/boot",
     "bios_qs3540_mpu_nextgen.bin",
     256,
     FAMILY(DrvBootInstallBiosQs3540NextGen),
     0x90020757,
     "SFC",
     {"update 256 /boot/bios_qs3540_mpu_nextgen.bin", "update 260 /boot/ospkg_qs3540_mpu.bin"}},
    {"/boot",
     "bios_qs3540_mpu_sfc.bin",
     256,
     FAMILY(DrvBootIsSfc3540Board),
     0x9002077b,
     "SFC",
     {"update 256 /boot/bios_qs3540_mpu_sfc.bin", "update 260 /boot/ospkg_qs3540_mpu.bin",
      "update 265 /boot/HSM1.5_qs3540.bin"}},
    {"/boot",
     "bios_qs3540_mpu.bin",
     256,
     FAMILY(DrvBootIsNg3540OtherFlash),
     0x90020708,
     "NOR",
     {"update 256 /boot/bios_qs3540_mpu.bin", "update 260 /boot/ospkg_qs3540_mpu.bin"}},
    {"/boot",
     "bios_qs3540_nand_mpu.bin",
     256,
     FAMILY(DrvBootIsNg3540NandFlashBoard),
     0x90020709,
     "NAND",
     {"update 256 /boot/bios_qs3540_nand_mpu.bin", "update 260 /boot/ospkg_qs3540_mpu.bin"}},
    {"/boot",
     "ospkg_qs3540_mpu.bin",
     260,
     FAMILY(DrvBoot_Qs3540),
     0x9002202a,
     "NOR",
     {"update 256 /boot/bios_qs3540_mpu_sfc.bin", "update 260 /boot/ospkg_qs3540_mpu.bin",
      "update 265 /boot/HSM1.5_qs3540.bin"}},
    {"/boot",
     "ospkg_qs3520_mpu.bin",
     260,
     FAMILY(DrvBootIs3520NextGenBiosBoard),
     0x90b2077d,
     "NAND",
     {"update 260 /boot/ospkg_qs3520_mpu.bin"}},
    {"/boot",
     "HSM1.5_qs3540.bin",
     265,
     FAMILY(DrvBootIsSfc3540Board),
     0x9002202a,
     "SFC",
     {"update 256 /boot/bios_qs3540_mpu_sfc.bin", "update 260 /boot/ospkg_qs3540_mpu.bin",
      "update 265 /boot/HSM1.5_qs3540.bin"}},
};

std::vector<std::string> updates_of(std::uint32_t hard_type, std::uint32_t flash)
{
    std::vector<std::string> updates;
    for (const FlashFile &row : flash_files) {
        const auto family = std::find_if(family_rows.begin(), family_rows.end(), [&](const FamilyRow &each) {
            return each.name == std::string(row.family);
        });
        if (family == family_rows.end())
            throw std::logic_error(row.family);
        if (holds(family->types, hard_type) && (!family->flashes || family->flashes->count(flash) != 0))
            updates.push_back(row.update());
    }
    return updates;
}

} // namespace test
