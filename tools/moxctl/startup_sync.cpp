// SPDX-License-Identifier: Apache-2.0
// moxctl sync-info and sync-match: the start-up file that two boards of different models keep in step.
#include "platform_variable.hpp"
#include "question.hpp"
#include "reason.hpp"
#include "verbs.hpp"

#include <moxboot/board.h>
#include <moxboot/startup_sync.h>

#include <utility>

namespace moxctl
{

namespace
{

constexpr const char *no_variable = "the variable is not set, cannot be read, or is too long";

Answer own_type()
{
    std::uint32_t type = 0;
    if (MOX_GetBoardHardType(&type) == 0) // inverted: 1 is success
        return unreadable(why(item_hard_type, internal_failure));
    return hexadecimal(type);
}

Answer peer_type()
{
    const std::uint32_t type = drvboot_impl_get_peer_board_type();
    return type != 0 ? hexadecimal(type)
                     : Answer{nullptr, "none", "the platform variable \"peertype\" holds no type"};
}

Answer pair()
{
    return yes_or_no(drvboot_impl_is_isomerism_pkg() == 0, "the two models that exchange a start-up file");
}

Fact pair_fact()
{
    return {"pair", "Pair", pair()};
}

} // namespace

Outcome sync_info()
{
    Outcome outcome{{{"hard_type", "Hard type", own_type()},
                     {"peer_type", "Peer's hard type", peer_type()},
                     pair_fact()}};
    MoxStartupFileSync record = {};
    const std::uint32_t name = drvboot_impl_get_update_filename(&record);
    outcome.facts.push_back(
        {"file_name", "File", name == 0 ? words(record.file_name) : unreadable(name, no_variable)});
    const std::uint32_t version = drvboot_impl_get_update_filever(&record);
    outcome.facts.push_back(
        {"version", "Version", version == 0 ? words(record.version) : unreadable(version, no_variable)});
    // Without a name the library would measure the directory.
    const std::uint32_t length = name == 0 ? drvboot_impl_get_update_filelen(&record) : name;
    outcome.facts.push_back({"length", "Length",
                             length == 0
                                 ? number(record.length, "bytes")
                                 : unreadable(length, "there is no such file in /opt/moxv8bak/home/")});
    if (MOX_PdtGetStartupFileSyncInfo(&record) != 0)
        outcome.error = "there is no start-up file to offer to the other board";
    return outcome;
}

Outcome sync_match(const std::string &peer_version)
{
    MoxStartupFileSync local = {};
    MoxStartupFileSync remote = {};
    if (const std::uint32_t result = drvboot_impl_get_update_filever(&local); result != 0)
        return failure("the version of this board's start-up file cannot be told (" +
                       describe({result, no_variable}) + ")");
    peer_version.copy(remote.version, sizeof remote.version - 1);
    Outcome outcome{{{"match", "Match", yes_or_no(MOX_PdtIsStartupFileMatch(&remote, &local) == 1)},
                     pair_fact(),
                     {"version", "Version", words(local.version)},
                     {"peer_version", "Peer's version", words(peer_version)}}};
    for (const auto &[name, title] :
         {std::pair{"out_version", "Software version"}, {"peer_out_version", "Peer's software version"}})
        outcome.facts.push_back({name, title, variable_answer(platform_variable(name))});
    return outcome;
}

} // namespace moxctl
