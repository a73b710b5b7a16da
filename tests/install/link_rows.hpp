// SPDX-License-Identifier: Apache-2.0
// The link tables as the tests know them: a copy of its own, so that a slip in the library's rows shows.
#pragma once

#include <moxboot/link.h>

#include <string>
#include <utility>
#include <vector>

namespace test
{

struct LinkRow {
    const char *source;      // directory and file
    const char *destination; // directory and file
    DrvBootPredicate predicate;
};
extern const std::vector<LinkRow> link_rows;

// Rows of one source that follow one another.
struct EncapRun {
    unsigned first;                       // row number
    const char *source;                   // below the installed package
    const char *destination;              // directory and file
    std::vector<std::uint32_t> logic_ids; // without their common first half
};
extern const std::vector<EncapRun> encap_runs;

struct EncapRow {
    std::uint32_t logic_id;
    std::string source;
    std::string destination;
};
std::vector<EncapRow> encap_rows();

// Directory and file.
inline std::pair<std::string, std::string> split(const std::string &path)
{
    const std::size_t slash = path.rfind('/');
    return {path.substr(0, slash), path.substr(slash + 1)};
}

} // namespace test
