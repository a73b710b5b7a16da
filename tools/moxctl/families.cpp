// SPDX-License-Identifier: Apache-2.0
// moxctl families: what kind of board this is, or another one would be, by the library's own predicates.
#include "presumption.hpp"
#include "question.hpp"
#include "variable.hpp"
#include "verbs.hpp"

#include <moxboot/backup.h>
#include <moxboot/board.h>
#include <moxboot/families.h>

#include <cstdlib>
#include <iterator>

namespace moxctl
{

namespace
{

constexpr const char *flash_variable = "BOOTMEDIA";
constexpr const char *family_variable = "product_family_type";
constexpr const char *hard_type_unread = "the hard type could not be read";

// In the order of the library's numbers.
struct Flash {
    const char *name;
    const char *stored; // in the boot variable
};
constexpr Flash flashes[] = {{"nor", "NOR"}, {"nand", "NAND"}, {"spi", "SFC"}};

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

Presumed presume(const OtherBoard &other)
{
    Presumed presumed{other.hard_type, {}};
    for (const Flash &flash : flashes)
        if (other.flash == flash.name)
            presumed.variables[flash_variable] = flash.stored;
    if (other.family_type)
        presumed.variables[family_variable] = std::to_string(*other.family_type);
    return presumed;
}

// How a boot variable's text was come by.
std::string source(const char *name, const Variable &variable)
{
    const std::string boot_variable = std::string("boot variable \"") + name + '"';
    return variable.value ? boot_variable + " is \"" + *variable.value + '"' : boot_variable + " is not set";
}

Answer flash(const OtherBoard &other)
{
    const std::uint32_t type = DrvBootGetFlashType();
    const std::string name = type < std::size(flashes) ? flashes[type].name : std::to_string(type);
    Answer answer = words(name);
    if (!other.flash.empty()) {
        answer.meaning = "as given";
        return answer;
    }
    // The library takes a variable that it cannot read for NOR.
    const Variable variable = read_variable(flash_variable);
    answer.meaning = source(flash_variable, variable);
    return learnt_from(variable, answer);
}

Answer family_type(const OtherBoard &other)
{
    if (other.family_type)
        return number(*other.family_type, "as given");
    const Variable variable = read_variable(family_variable);
    if (!variable.value)
        return learnt_from(variable, {nullptr, "none", source(family_variable, variable)});
    // As the library reads it.
    return number(std::strtoul(variable.value->c_str(), nullptr, 10), source(family_variable, variable));
}

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

std::vector<std::string> flash_names()
{
    std::vector<std::string> names;
    for (const Flash &flash : flashes)
        names.emplace_back(flash.name);
    return names;
}

Outcome families(const OtherBoard &other)
{
    const Presumed presumed = presume(other);
    const Presumption presumption(presumed);
    std::optional<Failure> no_type;
    std::uint32_t type = 0;
    if (MOX_GetBoardHardType(&type) == 0) // inverted: 1 is success
        no_type = why(item_hard_type, internal_failure);

    Outcome outcome;
    outcome.facts = {
        {"hard_type", "Hard type",
         no_type ? unreadable(*no_type) : hexadecimal(type, other.hard_type ? "as given" : "this board's")},
        {"flash", "Start-up flash", flash(other)},
        {"family_type", "Product family", family_type(other)}};
    for (const Predicate &predicate : predicates)
        outcome.facts.push_back({predicate.name, predicate.name, asked(predicate)});
    outcome.facts.push_back({"MOX_IsSingleChlBoard", "MOX_IsSingleChlBoard", single_channel()});
    for (const HardTypeTest &test : tests)
        outcome.facts.push_back({test.name, test.name,
                                 no_type ? unreadable(internal_failure, hard_type_unread)
                                         : yes_or_no(test.holds(type) != 0, test.meaning)});
    if (no_type)
        outcome.error = "the board does not tell its hard type; --hard-type asks about any board";
    return outcome;
}

} // namespace moxctl
