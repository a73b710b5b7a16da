// SPDX-License-Identifier: Apache-2.0
// moxctl families: what kind of board this is, or another one would be, by the library's own predicates.
#include "other_board.hpp"
#include "reason.hpp"
#include "verbs.hpp"

#include <moxboot/backup.h>
#include <moxboot/board.h>
#include <moxboot/families.h>

namespace moxctl
{

namespace
{

constexpr const char *hard_type_unread = "the hard type could not be read";

struct Predicate {
    const char *name;
    DrvBootPredicate holds;
    const char *meaning;
};
constexpr Predicate predicates[] = {
    {"DrvBoot_Qs3540", DrvBoot_Qs3540, "Qs3540 chip"},
    {"DrvBoot_Qs3540ExcludeNgBoard", DrvBoot_Qs3540ExcludeNgBoard, "Qs3540 chip, not next generation"},
    {"DrvBoot_Qs3540OriginalBios", DrvBoot_Qs3540OriginalBios, "Qs3540 chip, first BIOS"},
    {"DrvBootIs3540NextGenBiosBoard", DrvBootIs3540NextGenBiosBoard, "Qs3540 chip, next generation BIOS"},
    {"DrvBootIsSfc3540Board", DrvBootIsSfc3540Board, "Qs3540 chip, SFC flash by its hard type"},
    {"DrvBoot_Qs3520", DrvBoot_Qs3520, "Qs3520 chip"},
    {"DrvBoot_Qs3520SpiFlash", DrvBoot_Qs3520SpiFlash, "Qs3520 chip, SPI flash"},
    {"DrvBoot_Qs3520NotSpiFlash", DrvBoot_Qs3520NotSpiFlash, "Qs3520 chip, another flash"},
    {"DrvBoot_Qs3520_nextg", DrvBoot_Qs3520_nextg, "Qs3520 chip, next generation"},
    {"DrvBootIs3520NextGenBiosBoard", DrvBootIs3520NextGenBiosBoard, "Qs3520 chip, next generation BIOS"},
    {"DrvBoot_A53le", DrvBoot_A53le, "A53 chip, little endian"},
    {"DrvBoot_IsNgBoard", DrvBoot_IsNgBoard, "next generation"},
    {"DrvBoot_IsNg3540Board", DrvBoot_IsNg3540Board, "next generation on the Qs3540 chip"},
    {"DrvBootIsNg3540OtherFlash", DrvBootIsNg3540OtherFlash,
     "next generation on the Qs3540 chip, no NAND flash"},
    {"DrvBootIsNg3540NandFlashBoard", DrvBootIsNg3540NandFlashBoard,
     "next generation board or BIOS on the Qs3540 chip, NAND flash"},
    {"DrvBootInstallBiosQs3520NextGen", DrvBootInstallBiosQs3520NextGen,
     "takes the next generation BIOS for Qs3520 outside NAND flash"},
    {"DrvBootInstallBiosQs3540NextGen", DrvBootInstallBiosQs3540NextGen,
     "takes the next generation BIOS for Qs3540 outside NAND flash"},
};

struct HardTypeTest {
    const char *name;
    std::uint32_t (*holds)(std::uint32_t hard_type);
    const char *meaning;
};
constexpr HardTypeTest tests[] = {
    {"DrvbootIsSupportSingleBakup", DrvbootIsSupportSingleBakup, "one single backup"},
    {"DrvbootIsSupporDataBakup", DrvbootIsSupporDataBakup, "a backup of the data of its own"},
    {"DrvbootNgFixBoxSingleBakup", DrvbootNgFixBoxSingleBakup,
     "next generation box of fixed shape with a single backup"},
    {"DrvbootBakupParaSet", DrvbootBakupParaSet, "a single backup of either kind"},
    {"MOX_IsBoardSuppSelfRun", MOX_IsBoardSuppSelfRun, "can run on its own"},
};

Answer asked(const Predicate &predicate)
{
    std::uint8_t flag = 0;
    const std::uint32_t result = predicate.holds(&flag, 0);
    return result == 0 ? yes_or_no(flag != 0, predicate.meaning) : unreadable(result, hard_type_unread);
}

Answer single_channel()
{
    std::uint32_t flag = 0;
    const std::uint32_t result = MOX_IsSingleChlBoard(&flag);
    return result == 0 ? yes_or_no(flag != 0, "one single channel") : unreadable(result, hard_type_unread);
}

} // namespace

Outcome families(const OtherBoard &other)
{
    const Presumed presumed = presume(other);
    const Presumption presumption(presumed);
    Outcome outcome{{hard_type_fact(other), flash_fact(other), family_type_fact(other)}};
    const Json type = outcome.facts.front().answer.value;
    for (const Predicate &predicate : predicates)
        outcome.facts.push_back({predicate.name, predicate.name, asked(predicate)});
    outcome.facts.push_back({"MOX_IsSingleChlBoard", "MOX_IsSingleChlBoard", single_channel()});
    for (const HardTypeTest &test : tests)
        outcome.facts.push_back(
            {test.name, test.name,
             type.is_null()
                 ? unreadable(internal_failure, hard_type_unread)
                 : yes_or_no(test.holds(static_cast<std::uint32_t>(type.number())) != 0, test.meaning)});
    if (type.is_null())
        outcome.error = "the board does not tell its hard type; --hard-type asks about any board";
    return outcome;
}

} // namespace moxctl
