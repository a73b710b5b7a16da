// SPDX-License-Identifier: Apache-2.0
// moxctl soft-reset: the switch of soft resets, and what else decides about them.
#include "platform_variable.hpp"
#include "question.hpp"
#include "reason.hpp"
#include "verbs.hpp"

#include <moxboot/board.h>
#include <moxboot/reset.h>

namespace moxctl
{

namespace
{

constexpr const char *switch_variable = "package_set_flag";
constexpr Item item_disabled = {"/dev/board0", 0x1000299f};

// What the library writes, as the memory environment keeps it.
std::optional<std::string> stored_switch()
{
    return memory_variable(switch_variable);
}

std::string switch_text(bool open)
{
    return std::to_string(open ? MOX_SOFT_RESET_OPEN : MOX_SOFT_RESET_CLOSED);
}

Answer switch_position()
{
    const auto text = stored_switch();
    if (!text)
        return {nullptr, "not set", "or the memory environment cannot be read"};
    Answer answer = words(*text);
    for (const bool open : {true, false})
        if (*text == switch_text(open))
            answer.meaning = open ? "open" : "closed";
    return answer;
}

Answer active_state()
{
    constexpr std::uint32_t active = 1;
    constexpr std::uint32_t active_role = 1;
    std::uint32_t state = 0;
    if (const std::uint32_t result = MOX_GetBoardSoftActiveState(&state); result != 0)
        return unreadable(why(item_board_role, result));
    if (state == active)
        return number(state, "active");
    // The library's answer also for a role that it could not read.
    return confirmed(number(state, "not active"), item_board_role,
                     [](std::uint32_t role) { return role != active_role; });
}

// The library can set the flag and never tells it, so it is read as it is.
Answer disabled()
{
    Answer answer = item_as_it_is(item_disabled);
    if (!answer.failure)
        answer.meaning = answer.value == 0 ? "soft activation possible" : "soft activation disabled";
    return answer;
}

} // namespace

Outcome switch_soft_reset(bool open)
{
    const std::string action = open ? "open" : "close";
    // Without support the library writes nothing and calls that done.
    const Answer supported = soft_reset_supported();
    if (supported.failure)
        return failure("cannot " + action + " soft reset: whether the system supports it cannot be read (" +
                       describe(*supported.failure) + ")");
    if (supported.value != true)
        return failure("cannot " + action + " soft reset: the system does not support it");
    const std::uint32_t result = open ? MOX_Open_SoftReset() : MOX_Close_SoftReset();
    if (result != 0 || stored_switch() != switch_text(open))
        return failure("cannot " + action + " soft reset: the memory environment did not take it");
    return {{{"switch", "Switch", switch_position()}}, Style::silent};
}

Outcome soft_reset_status()
{
    Outcome outcome{{{"supported", "Soft reset supported", soft_reset_supported()},
                     {"switch", "Switch", switch_position()},
                     {"active_state", "Soft active state", active_state()},
                     {"disabled", "Disable flag", disabled()}}};
    if (outcome.facts[0].answer.failure && outcome.facts[2].answer.failure && outcome.facts[3].answer.failure)
        outcome.error = "nothing could be read from the board driver";
    return outcome;
}

} // namespace moxctl
