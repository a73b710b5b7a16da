// SPDX-License-Identifier: Apache-2.0
// What an installation really did: noted down where the library hands its work on, and by the links before
// and after.
#pragma once

#include "observed.hpp"
#include "progress.hpp"

#include "package/package.hpp"

#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace moxctl
{

struct ExtractedFile {
    std::string path;
    std::uint32_t id;
    std::string failure; // in words; empty: written
};

struct FlashedFile {
    std::string path;
    std::uint32_t type;
    std::uint32_t result;
    bool there; // the file to be written
};

// A link as it lies on the disk; two that compare equal are one and the same, not made anew.
struct LinkState {
    std::string target; // empty: no link
    std::uint64_t inode = 0;
    std::int64_t seconds = 0, nanoseconds = 0;

    bool operator==(const LinkState &) const = default;
};
using LinkStates = std::map<std::string, LinkState>; // by destination, relative to the install root

// Of every destination of the library's tables.
LinkStates look_at_links(const std::string &root);

// Destinations in the tables' order, each once.
std::vector<std::string> link_destinations();

struct InstallRecord {
    package::Manifest package;
    std::string root;
    std::size_t run_files = 0; // unpacked
    std::vector<ExtractedFile> extracted;
    std::map<std::string, bool> sources; // looked for, as the library names them; whether they were there
    LinkStates before, after;
    std::vector<FlashedFile> flashed;
    std::optional<std::uint32_t> bios_deleted; // the updater's result
    std::optional<std::uint32_t> refreshed;    // the NOR flash data area, its result
    std::int32_t extraction_result = 0, links_result = 0;
    std::uint32_t flash_result = 0;
};

// Notes into `record`, as long as both live.
Observer noting(InstallRecord &record, Progress &progress);

} // namespace moxctl
