// SPDX-License-Identifier: Apache-2.0
// moxctl workmode and start-flag: what a start finds and what it settles.
#include "library_lines.hpp"
#include "platform_variable.hpp"
#include "verbs.hpp"

#include <moxboot/work_mode.h>

namespace moxctl
{

namespace
{

constexpr const char *current_mode = "curworkmode";
constexpr const char *next_mode = "nextworkmode";
constexpr const char *reset_flag = "lcs_reset_flag";
constexpr const char *pack_type = "pack_type";
constexpr const char *flag_file = "/tmp/v8_start_flag";

Answer next_begins_with_ptn()
{
    std::uint8_t ptn = 0;
    drv_getptnmode(&ptn, next_mode);
    return yes_or_no(ptn != 0, "the next mode begins with \"ptn_iot\"");
}

Answer flag_answer(std::uint32_t flag)
{
    if (flag == MOX_START_FLAG_NONE)
        return {nullptr, "none", std::string(flag_file) + " is not there, or holds the number for none"};
    return hexadecimal(flag);
}

std::vector<Fact> start_flag_facts()
{
    const std::uint32_t flag = MOX_GetStartFlag();
    std::uint32_t reboot = 0;
    return {{"flag", "Start flag", flag_answer(flag)},
            {"reboot_needed", "Reboot needed", yes_or_no(MOX_PdtStartupCheck(&reboot) == 0)}};
}

} // namespace

// Settling writes the current mode, so it is done only when it is asked for.
Outcome work_mode(bool settle)
{
    Outcome outcome;
    if (settle) {
        std::uint8_t ptn = 0;
        LibraryLines lines;
        DrvBoot_PtnMode(&ptn, 0);
        outcome.facts.push_back(
            {"DrvBoot_PtnMode", "DrvBoot_PtnMode", yes_or_no(ptn != 0, "settled for this start")});
        // The library calls it done also where the environment takes nothing, and tells that in a line only.
        if (lines.take().find("set current workmode env") != std::string::npos)
            outcome.error = "the platform environment did not take the current work mode";
    }
    const std::vector<Fact> facts = {
        {"DrvBoot_GetWorkMode", "DrvBoot_GetWorkMode",
         yes_or_no(DrvBoot_GetWorkMode() == 0, "the work mode is exactly \"ptn_iot\"")},
        {"DrvBoot_IsPtnMode", "DrvBoot_IsPtnMode",
         yes_or_no(DrvBoot_IsPtnMode() == 0, "so it is, and the package type runs in it")},
        {"drv_getptnmode", "drv_getptnmode", next_begins_with_ptn()},
        {reset_flag, reset_flag, variable_answer(memory_variable(reset_flag))},
        {pack_type, pack_type, variable_answer(memory_variable(pack_type))},
        {current_mode, current_mode, variable_answer(platform_variable(current_mode))},
        {next_mode, next_mode, variable_answer(platform_variable(next_mode))},
    };
    outcome.facts.insert(outcome.facts.end(), facts.begin(), facts.end());
    return outcome;
}

Outcome start_flag()
{
    return {start_flag_facts()};
}

Outcome set_start_flag(std::uint32_t flag, bool check)
{
    std::uint32_t time = 0;
    if (MOX_SetPdtCheckMode(flag, check ? &time : nullptr) != 0)
        return failure(std::string("cannot write ") + flag_file);
    Outcome outcome{start_flag_facts()};
    if (check) {
        outcome.facts.push_back({"check_time", "Check time", number(time, "s")});
        if (outcome.facts.front().answer.value != flag && flag != MOX_START_FLAG_NONE)
            outcome.facts.front().answer.meaning = "was there already, and stays";
    } else {
        outcome.style = Style::silent;
    }
    return outcome;
}

} // namespace moxctl
