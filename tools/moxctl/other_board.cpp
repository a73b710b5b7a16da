// SPDX-License-Identifier: Apache-2.0
#include "other_board.hpp"

#include "platform_variable.hpp"
#include "question.hpp"
#include "variable.hpp"

#include <moxboot/board.h>
#include <moxboot/families.h>
#include <moxboot/work_mode.h>

#include <cstdlib>
#include <iterator>

namespace moxctl
{

namespace
{

constexpr const char *as_given = "as given";
constexpr const char *flash_variable = "BOOTMEDIA";
constexpr const char *family_variable = "product_family_type";
constexpr const char *service_variable = "product_service_type";
constexpr const char *pack_variable = "pack_type";

// Predicates that ask for an attribute that is not to be had give no answer, which links take for a yes.
constexpr const char *rows_apply = "; rows apply as they do then";

// In the order of the library's numbers.
struct Flash {
    const char *name;
    const char *stored; // in the boot variable
};
constexpr Flash flashes[] = {{"nor", "NOR"}, {"nand", "NAND"}, {"spi", "SFC"}};

// How a boot variable's text was come by.
std::string source(const char *name, const Variable &variable)
{
    const std::string boot_variable = std::string("boot variable \"") + name + '"';
    return variable.value ? boot_variable + " is \"" + *variable.value + '"' : boot_variable + " is not set";
}

// As the library reads it.
std::uint32_t number_in(const std::string &text)
{
    return static_cast<std::uint32_t>(std::strtoul(text.c_str(), nullptr, 10));
}

Answer boot_number(const char *name, const std::optional<std::uint32_t> &given, const char *consequence = "")
{
    if (given)
        return number(*given, as_given);
    const Variable variable = read_variable(name);
    if (variable.value)
        return number(number_in(*variable.value), source(name, variable));
    Answer answer = learnt_from(variable, {nullptr, "none", source(name, variable) + consequence});
    if (answer.failure)
        answer.failure->reason += consequence;
    return answer;
}

Answer pack_type(const OtherBoard &other)
{
    if (other.pack_type)
        return number(*other.pack_type, as_given);
    const auto text = memory_variable(pack_variable);
    if (!text)
        return {nullptr, "none", "memory variable \"pack_type\" is not set or cannot be read: of no type"};
    return number(number_in(*text), "memory variable \"pack_type\" is \"" + *text + '"');
}

Answer logic_id(const OtherBoard &other)
{
    std::uint32_t id = 0;
    if (const std::uint32_t result = MOX_GetSelfEncapLogicId(&id); result != 0) {
        Failure failure = channel_failure(result);
        failure.reason = "the logic id could not be read: " + failure.reason + rows_apply;
        return unreadable(failure);
    }
    return hexadecimal(id, other.logic_id ? as_given : "this board's");
}

Answer ptn_mode(const OtherBoard &other)
{
    std::uint8_t is_ptn = 0;
    const std::uint32_t result = DrvBoot_PtnMode(&is_ptn, 0);
    if (result != 0)
        return unreadable(result, "the work mode could not be told");
    return yes_or_no(is_ptn != 0, other.ptn ? as_given : "by the platform's work mode");
}

} // namespace

std::vector<std::string> flash_names()
{
    std::vector<std::string> names;
    for (const Flash &flash : flashes)
        names.emplace_back(flash.name);
    return names;
}

Presumed presume(const OtherBoard &other)
{
    Presumed presumed{other.hard_type, other.logic_id, {}, {}, {}};
    for (const Flash &flash : flashes)
        if (other.flash == flash.name)
            presumed.boot[flash_variable] = flash.stored;
    if (other.family_type)
        presumed.boot[family_variable] = std::to_string(*other.family_type);
    if (other.service_type)
        presumed.boot[service_variable] = std::to_string(*other.service_type);
    if (other.pack_type)
        presumed.memory[pack_variable] = std::to_string(*other.pack_type);
    if (other.ptn) {
        // The mode that is next and the current one, so that it does not matter whether a reset keeps it.
        const char *const mode = *other.ptn ? "ptn_iot" : "base";
        presumed.platform = {{"nextworkmode", mode}, {"curworkmode", mode}};
        presumed.memory["lcs_reset_flag"] = "0";
    }
    return presumed;
}

Fact hard_type_fact(const OtherBoard &other)
{
    std::uint32_t type = 0;
    const bool known = MOX_GetBoardHardType(&type) != 0; // inverted: 1 is success
    return {"hard_type", "Hard type",
            known ? hexadecimal(type, other.hard_type ? as_given : "this board's")
                  : unreadable(why(item_hard_type, internal_failure))};
}

Fact flash_fact(const OtherBoard &other)
{
    const std::uint32_t type = DrvBootGetFlashType();
    const std::string name = type < std::size(flashes) ? flashes[type].name : std::to_string(type);
    Answer answer = words(name);
    if (!other.flash.empty()) {
        answer.meaning = as_given;
    } else {
        // The library takes a variable that it cannot read for NOR.
        const Variable variable = read_variable(flash_variable);
        answer.meaning = source(flash_variable, variable);
        answer = learnt_from(variable, answer);
    }
    return {"flash", "Start-up flash", std::move(answer)};
}

Fact family_type_fact(const OtherBoard &other)
{
    return {"family_type", "Product family", boot_number(family_variable, other.family_type)};
}

std::vector<Fact> model_facts(const OtherBoard &other)
{
    return {{"pack_type", "Package type", pack_type(other)},
            {"service_type", "Service type", boot_number(service_variable, other.service_type, rows_apply)},
            {"logic_id", "Logic id", logic_id(other)},
            {"ptn", "Ptn mode", ptn_mode(other)}};
}

} // namespace moxctl
