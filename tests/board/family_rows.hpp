// SPDX-License-Identifier: Apache-2.0
// The board families as the tests know them: a copy of its own, so that a slip in the library's lists shows.
#pragma once

#include <cstdint>
#include <optional>
#include <ostream>
#include <set>
#include <string>
#include <vector>

namespace test
{

extern const std::vector<std::uint32_t> ng_boards, ng_3540_boards, qs3540, qs3540_original_bios,
    qs3540_exclude_ng, a53le, qs3520, qs3520_nextg, qs3540_next_gen_bios, sfc_3540, single_backup_boards,
    fixed_box_boards;

using Flashes = std::set<std::uint32_t>;

struct FamilyRow {
    const char *name;
    std::uint32_t (*function)(std::uint8_t *flag, std::uintptr_t argument);
    std::vector<std::uint32_t> types;
    std::optional<Flashes> flashes; // flash types with which a board of the family counts; none: not asked
    std::vector<std::string> asked; // what each of its questions for the hard type says when it fails
    std::string own;                // what a predicate that builds upon others then says itself
};

inline void PrintTo(const FamilyRow &row, std::ostream *out)
{
    *out << row.name;
}

// In the order of the header.
extern const std::vector<FamilyRow> family_rows;

// All listed types, what lies beside them, and misreadings.
std::set<std::uint32_t> family_candidates();

bool holds(const std::vector<std::uint32_t> &types, std::uint32_t type);

} // namespace test
