// SPDX-License-Identifier: Apache-2.0
// The atlas as a page: a table that can be read as it stands, which the script makes searchable.
#include "atlas.hpp"

#include "page/page.hpp"

#include <string_view>

namespace moxctl
{

extern const std::string_view atlas_css, atlas_js;

namespace
{

std::string count_of(Json &object, const char *list)
{
    return std::to_string(object[list].size());
}

std::string figures(Json &atlas)
{
    std::size_t named = 0;
    Json &boards = atlas["boards"];
    for (const Json &board : boards.parts())
        named += Json(board)["named"] == Json(true) ? 1 : 0;
    return page::figures({{"named_boards", std::to_string(named), "named boards"},
                          {"hard_types", std::to_string(boards.size() - named), "hard types"},
                          {"families", count_of(atlas, "families"), "families asked for"},
                          {"boot_files", count_of(atlas, "boot_files"), "boot files"},
                          {"links", count_of(atlas, "links"), "rows of links"},
                          {"preload", count_of(atlas, "preload"), "rows of the start-up flash"}});
}

std::string boards_table(Json &atlas)
{
    page::Table table{"boards-table",
                      "All boards",
                      {{"Board"},
                       {"Hard type"},
                       {"Role"},
                       {"OS type"},
                       {"Flash"},
                       {"Families", true},
                       {"Boot files", true},
                       {"Links", true},
                       {"Start-up flash", true}},
                      {},
                      "There are no boards."};
    for (const Json &part : atlas["boards"].parts()) {
        Json board = part;
        table.rows.push_back({board["name"].text(),
                              {board["hard_type"].text(), "code"},
                              board["role"].text(),
                              std::to_string(board["os_type"].number()),
                              board["flash"].text(),
                              count_of(board, "families"),
                              count_of(board, "boot_files"),
                              count_of(board, "links"),
                              count_of(board, "preload")});
    }
    return page::table(table);
}

// Filled by the script, without which there is nothing to operate.
constexpr std::string_view controls = "<div id=\"controls\" class=\"controls\"></div>\n";
constexpr std::string_view comparison =
    "<div id=\"comparison\"></div>\n"
    "<noscript><p class=\"none\">The comparison needs scripting.</p></noscript>\n";

} // namespace

std::string atlas_page(Json atlas)
{
    page::Document document;
    document.title = "Atlas of boards";
    document.kicker = "MOX boot driver library " + atlas["version"].text();
    document.lead =
        "What the library makes of every board that it knows: families, boot files, links, start-up flash "
        "and "
        "trust, asked of its own tables and predicates. Named boards have their variables; a hard type "
        "stands for a board of it whose variables say as little as they can.";
    document.body = figures(atlas) +
                    page::section("compare", "What changes between two boards", "Only what differs is shown.",
                                  comparison) +
                    page::section("boards", "Boards", "", std::string(controls) + boards_table(atlas));
    document.data = atlas.dump();
    document.style = atlas_css;
    document.script = atlas_js;
    return page::document(document);
}

} // namespace moxctl
