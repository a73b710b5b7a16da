// SPDX-License-Identifier: Apache-2.0
// What an installation would do on a board, told from the library's own tables and predicates, without doing
// any of it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace moxctl
{

// What a package delivers.
struct Delivered {
    std::set<std::uint32_t> ids;
    std::set<std::string> names;
};

// Where sources are looked for: in a package, below an install root, in both, or (with neither) all are
// there.
struct Sources {
    std::optional<Delivered> package;
    std::string root; // empty: none

    bool all_there() const
    {
        return !package && root.empty();
    }
};

struct PlannedFile {
    std::string name;
    std::uint32_t id;
    bool delivered;
};

enum class Table { predicate, logic_id };

struct TableRow {
    Table table;
    std::size_t index;
    std::string source;      // relative to the install root, or absolute
    std::string destination; // relative to the install root
};

const char *table_name(Table table);
std::string row_name(const TableRow &row); // "logic id 12"

struct Loser {
    TableRow row;
    std::string reason;
};

// All applicable rows for one destination.
struct Destination {
    std::string path;
    std::optional<TableRow> winner;
    std::string kept; // what a link that is there already names, when it stays; else empty
    std::vector<Loser> losers;
};

struct PlannedWrite {
    std::string path;
    std::uint32_t type;
    std::string obstacle; // why it will not be written; empty: it will
};

struct Plan {
    std::vector<PlannedFile> extract;
    std::vector<Destination> destinations; // in the order in which rows come to them
    bool file_by_file;                     // the start-up flash; else the NOR flash data area is refreshed
    std::vector<PlannedWrite> preload;
};

// For the board as it is presumed to be. Nothing is written.
Plan make_plan(const Sources &sources);

} // namespace moxctl
