// SPDX-License-Identifier: Apache-2.0
#include "family_questions.hpp"

#include "reason.hpp"

#include <moxboot/backup.h>
#include <moxboot/board.h>
#include <moxboot/families.h>

namespace moxctl
{

namespace
{

constexpr FamilyQuestion questions[] = {
    {"DrvBoot_Qs3540", "Qs3540 chip", DrvBoot_Qs3540, nullptr, nullptr},
    {"DrvBoot_Qs3540ExcludeNgBoard", "Qs3540 chip, not next generation", DrvBoot_Qs3540ExcludeNgBoard,
     nullptr, nullptr},
    {"DrvBoot_Qs3540OriginalBios", "Qs3540 chip, first BIOS", DrvBoot_Qs3540OriginalBios, nullptr, nullptr},
    {"DrvBootIs3540NextGenBiosBoard", "Qs3540 chip, next generation BIOS", DrvBootIs3540NextGenBiosBoard,
     nullptr, nullptr},
    {"DrvBootIsSfc3540Board", "Qs3540 chip, SFC flash by its hard type", DrvBootIsSfc3540Board, nullptr,
     nullptr},
    {"DrvBoot_Qs3520", "Qs3520 chip", DrvBoot_Qs3520, nullptr, nullptr},
    {"DrvBoot_Qs3520SpiFlash", "Qs3520 chip, SPI flash", DrvBoot_Qs3520SpiFlash, nullptr, nullptr},
    {"DrvBoot_Qs3520NotSpiFlash", "Qs3520 chip, another flash", DrvBoot_Qs3520NotSpiFlash, nullptr, nullptr},
    {"DrvBoot_Qs3520_nextg", "Qs3520 chip, next generation", DrvBoot_Qs3520_nextg, nullptr, nullptr},
    {"DrvBootIs3520NextGenBiosBoard", "Qs3520 chip, next generation BIOS", DrvBootIs3520NextGenBiosBoard,
     nullptr, nullptr},
    {"DrvBoot_A53le", "A53 chip, little endian", DrvBoot_A53le, nullptr, nullptr},
    {"DrvBoot_IsNgBoard", "next generation", DrvBoot_IsNgBoard, nullptr, nullptr},
    {"DrvBoot_IsNg3540Board", "next generation on the Qs3540 chip", DrvBoot_IsNg3540Board, nullptr, nullptr},
    {"DrvBootIsNg3540OtherFlash", "next generation on the Qs3540 chip, no NAND flash",
     DrvBootIsNg3540OtherFlash, nullptr, nullptr},
    {"DrvBootIsNg3540NandFlashBoard", "next generation board or BIOS on the Qs3540 chip, NAND flash",
     DrvBootIsNg3540NandFlashBoard, nullptr, nullptr},
    {"DrvBootInstallBiosQs3520NextGen", "takes the next generation BIOS for Qs3520 outside NAND flash",
     DrvBootInstallBiosQs3520NextGen, nullptr, nullptr},
    {"DrvBootInstallBiosQs3540NextGen", "takes the next generation BIOS for Qs3540 outside NAND flash",
     DrvBootInstallBiosQs3540NextGen, nullptr, nullptr},
    {"MOX_IsSingleChlBoard", "one single channel", nullptr, MOX_IsSingleChlBoard, nullptr},
    {"DrvbootIsSupportSingleBakup", "one single backup", nullptr, nullptr, DrvbootIsSupportSingleBakup},
    {"DrvbootIsSupporDataBakup", "a backup of the data of its own", nullptr, nullptr,
     DrvbootIsSupporDataBakup},
    {"DrvbootNgFixBoxSingleBakup", "next generation box of fixed shape with a single backup", nullptr,
     nullptr, DrvbootNgFixBoxSingleBakup},
    {"DrvbootBakupParaSet", "a single backup of either kind", nullptr, nullptr, DrvbootBakupParaSet},
    {"MOX_IsBoardSuppSelfRun", "can run on its own", nullptr, nullptr, MOX_IsBoardSuppSelfRun},
};

} // namespace

FamilyAnswer FamilyQuestion::ask() const
{
    if (by_type != nullptr) {
        std::uint32_t hard_type = 0;
        if (MOX_GetBoardHardType(&hard_type) == 0) // inverted: 1 is success
            return {false, internal_failure};
        return {by_type(hard_type) != 0};
    }
    std::uint8_t small_flag = 0;
    std::uint32_t flag = 0;
    const std::uint32_t result = predicate != nullptr ? predicate(&small_flag, 0) : channel(&flag);
    if (result != 0)
        return {false, result};
    return {small_flag != 0 || flag != 0};
}

std::span<const FamilyQuestion> family_questions()
{
    return questions;
}

} // namespace moxctl
