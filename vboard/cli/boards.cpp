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

namespace vboard::cli
{

namespace
{

struct Options {
    bool json = false;
};

std::uint32_t hard_type(const Profile &profile)
{
    const auto device = profile.items.find("/dev/board0");
    if (device == profile.items.end())
        return 0;
    const auto item = device->second.find(item_code::hard_type);
    return item == device->second.end() ? 0 : item->second;
}

void add_options(CLI::App &app, Options &options)
{
    app.add_flag("--json", options.json, "as JSON");
}

int boards(const Options &options, const Call &)
{
    std::vector<Profile> profiles;
    std::size_t width = 0;
    for (const std::string &name : list_profiles(boards_directory())) {
        profiles.push_back(load_profile(boards_directory() / (name + ".toml")));
        width = std::max(width, name.size());
    }
    nlohmann::json list = nlohmann::json::array();
    for (const Profile &profile : profiles) {
        const std::string type = hex(hard_type(profile));
        if (options.json)
            list.push_back(
                {{"name", profile.name}, {"hard_type", type}, {"description", profile.description}});
        else
            std::printf("%-*s  %-10s  %s\n", static_cast<int>(width), profile.name.c_str(), type.c_str(),
                        profile.description.c_str());
    }
    if (options.json)
        std::printf("%s\n", list.dump(2).c_str());
    return done;
}

} // namespace

void add_boards(CLI::App &app, Call &call)
{
    add_verb<Options>(app, call, "boards", "List the boards that there are", add_options, boards);
}

} // namespace vboard::cli
