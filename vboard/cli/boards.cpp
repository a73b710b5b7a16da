// SPDX-License-Identifier: Apache-2.0
// vboard boards: what boards there are.
#include "cli/numbers.hpp"
#include "cli/places.hpp"
#include "cli/verbs.hpp"
#include "model/items.hpp"
#include "model/profile.hpp"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <cstdio>
#include <optional>

namespace vboard::cli
{

namespace
{

struct Options {
    bool json = false;
};

using nlohmann::json;

std::optional<std::uint32_t> item(const Profile &profile, const std::string &device, std::uint32_t code)
{
    const auto items = profile.items.find(device);
    if (items == profile.items.end())
        return std::nullopt;
    const auto item = items->second.find(code);
    return item == items->second.end() ? std::nullopt : std::optional(item->second);
}

std::uint32_t hard_type(const Profile &profile)
{
    return item(profile, "/dev/board0", item_code::hard_type).value_or(0);
}

// That of the slot in which the board itself is.
json logic_id(const Profile &profile)
{
    const std::uint32_t slot = item(profile, "/dev/board0", item_code::slot).value_or(0);
    const auto id = item(profile, "/dev/slot" + std::to_string(slot), item_code::logic_id);
    return id ? json(hex(*id)) : json(nullptr);
}

// All that decides what the board is taken for and what an installation does to it.
json described(const Profile &profile)
{
    return {{"name", profile.name},
            {"hard_type", hex(hard_type(profile))},
            {"description", profile.description},
            {"logic_id", logic_id(profile)},
            {"boot_env", profile.boot_env},
            {"platform_env", profile.platform_env},
            {"memory_env", profile.memory_env},
            {"crl_module", profile.crl_module},
            {"tpm2", profile.tpm2}};
}

void add_options(Arguments line, Options &options)
{
    line.flag("--json", options.json, "as JSON");
}

int boards(const Options &options, const Call &)
{
    std::vector<Profile> profiles;
    std::size_t width = 0;
    for (const std::string &name : list_profiles(boards_directory())) {
        profiles.push_back(load_profile(boards_directory() / (name + ".toml")));
        width = std::max(width, name.size());
    }
    json list = json::array();
    for (const Profile &profile : profiles) {
        const std::string type = hex(hard_type(profile));
        if (options.json)
            list.push_back(described(profile));
        else
            std::printf("%-*s  %-10s  %s\n", static_cast<int>(width), profile.name.c_str(), type.c_str(),
                        profile.description.c_str());
    }
    if (options.json)
        std::printf("%s\n", list.dump(2).c_str());
    return done;
}

} // namespace

void add_boards(Arguments line, Call &call)
{
    add_verb<Options>(line, call, "boards", "List the boards that there are", add_options, boards);
}

} // namespace vboard::cli
