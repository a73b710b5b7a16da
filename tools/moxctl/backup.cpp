// SPDX-License-Identifier: Apache-2.0
// moxctl backup: where second copies lie, and whether they are ready.
#include "question.hpp"
#include "reason.hpp"
#include "verbs.hpp"

#include <moxboot/backup.h>

#include <algorithm>
#include <array>

namespace moxctl
{

namespace
{

constexpr const char *directories[] = {
    "/opt/moxv8/home",       "/opt/moxv8/data",    "/opt/moxv8/private",
    "/opt/moxv8bak/private", "/opt/moxv8bak/home", "/opt/moxv8/home/rootbak",
};

const char *state_name(std::uint32_t state)
{
    if (state == MOX_BACKUP_READY)
        return "ready";
    return state == MOX_BACKUP_UNREADY ? "unready" : "";
}

Answer stored_state()
{
    constexpr std::uint16_t presets[] = {0, 1};
    std::array<std::uint16_t, 2> state = {presets[0], presets[1]};
    for (std::uint16_t &value : state) {
        const std::uint32_t result = MOX_GetBackupState(&value);
        if (result == internal_failure)
            return unreadable(result, "the platform variable \"backup_state\" is empty");
        if (result != 0)
            return unreadable(result, "the platform variable \"backup_state\" is not set or cannot be read");
    }
    // A text that is no number is no failure to the library: it leaves what was there.
    if (state[0] != state[1])
        return unreadable(0, "the platform variable \"backup_state\" holds no number");
    return number(state[0], state_name(state[0]));
}

} // namespace

Outcome get_backup_state()
{
    Outcome outcome{{{"state", "Backup state", stored_state()}}};
    if (outcome.facts.front().answer.value.is_null())
        outcome.error = "the backup state cannot be read";
    return outcome;
}

Outcome set_backup_state(std::uint32_t state)
{
    const auto result = static_cast<std::uint32_t>(MOX_SetBackupState(state));
    // The library goes on when the environment fails; whether it did is read back.
    const Answer stored = stored_state();
    if (stored.value != state)
        return failure("cannot keep the backup state in the platform environment" +
                       (stored.failure ? " (" + describe(*stored.failure) + ")" : std::string()));
    if (result != 0)
        return failure("the backup state is kept in the platform environment, but the board driver did not "
                       "take it");
    return {{{"state", "Backup state", stored}}, Style::silent};
}

Outcome backup_paths()
{
    Outcome outcome;
    std::array<char, 256> path{};
    for (const char *directory : directories) {
        Answer answer = {nullptr, "none", "the library refuses it"};
        if (MOX_GetSysBackupPath(directory, path.data(), path.size()) == 0)
            answer = words(path.data());
        else if (std::uint32_t type = 0; MOX_GetBoardHardType(&type) == 0) // inverted: 1 is success
            answer = unreadable(why(item_hard_type, internal_failure));
        outcome.facts.push_back({directory, directory, std::move(answer)});
    }
    return outcome;
}

} // namespace moxctl
