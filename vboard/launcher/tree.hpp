// SPDX-License-Identifier: Apache-2.0
// The board's file tree: the host's root directory, with the places that a board has for itself put over it.
#pragma once

#include "launcher/namespace.hpp"

#include <filesystem>
#include <string>
#include <vector>

namespace vboard
{

// A library that programs find by its name alone, each kind of program its own: `folder` is what the dynamic
// linker of that kind puts for "$LIB".
struct Library {
    std::string folder, name;
    std::filesystem::path file; // of the host
};
constexpr const char *library_place = "/dev/vboard/$LIB";

struct TreePlan {
    // The board's directory; its subdirectory "tree" keeps the board's files. Empty: they live in memory
    // only.
    std::filesystem::path state;
    // Files and directories of the host that must stay reachable under their names, even where the board has
    // a directory of its own: the project, the program to run. The working directory is always kept.
    std::vector<std::filesystem::path> keep;
    std::vector<Library> libraries;
    // What stands at "/sbin/reboot" and in place of the commands beside it.
    std::filesystem::path reboot;
};

// Makes the directories of STATE/tree that are missing.
void prepare_tree(const std::filesystem::path &state);

// Makes the tree the root directory of this process. The working directory stays the same by name.
void enter_tree(const OwnNamespace &proof, const TreePlan &plan);

// The links in "/dev" that every board has. What is in their place goes.
void make_device_links();

} // namespace vboard
