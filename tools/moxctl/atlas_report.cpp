// SPDX-License-Identifier: Apache-2.0
// moxctl atlas: every board on one page.
#include "atlas.hpp"
#include "verbs.hpp"
#include "whole_file.hpp"

#include <filesystem>
#include <iterator>

namespace moxctl
{

namespace
{

namespace fs = std::filesystem;

// Beside this program, in a build folder as well as installed; empty where there is none.
std::string own_list()
{
    std::error_code error;
    const fs::path program = fs::read_symlink("/proc/self/exe", error);
    const fs::path list = program.parent_path().parent_path() / "share/moxboot/boards.json";
    return !error && fs::exists(list, error) ? list.string() : std::string();
}

} // namespace

Outcome atlas(const AtlasOrder &order)
{
    const std::string list = order.boards.empty() ? own_list() : order.boards;
    std::vector<AtlasBoard> boards;
    if (!list.empty())
        boards = listed_boards(list);
    const std::size_t named = boards.size();
    for (AtlasBoard &board : known_hard_types())
        boards.push_back(std::move(board));
    Json data = make_atlas(boards);
    const std::size_t plain = boards.size() - named;
    Outcome outcome{{{"named_boards", "Named boards", number(named)},
                     {"hard_types", "Hard types", number(plain)},
                     {"atlas", "Atlas", {data, {}, {}}}}};
    std::string page = atlas_page(std::move(data));
    if (order.output.empty()) {
        outcome.facts.back().answer.text = std::move(page);
        outcome.style = Style::raw;
        return outcome;
    }
    write_whole_file(order.output, page);
    outcome.facts.back().answer.text = "written to " + order.output;
    return outcome;
}

} // namespace moxctl
