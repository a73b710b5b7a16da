// SPDX-License-Identifier: Apache-2.0
// Every board that the library knows, and what it makes of it: asked of the library's own tables and
// predicates.
#pragma once

#include "json.hpp"
#include "presumption.hpp"

#include <cstdint>
#include <string>
#include <vector>

namespace moxctl
{

// A board to ask about.
struct AtlasBoard {
    std::string name; // "gl6264-q2h", or a hard type in hexadecimal
    std::string description;
    bool named = false; // by a profile; else the plain board of a hard type
    Presumed presumed;
};

// The boards in a list of profiles ("vboard boards --json"). Throws std::runtime_error when it is none.
std::vector<AtlasBoard> listed_boards(const std::string &file);

// A plain board of each hard type that the library tells from any other one.
std::vector<AtlasBoard> known_hard_types();

// What the library makes of them. Rows of tables are given by their index in the lists that stand before the
// boards.
Json make_atlas(const std::vector<AtlasBoard> &boards);

// The page with it.
std::string atlas_page(Json atlas);

} // namespace moxctl
