// SPDX-License-Identifier: Apache-2.0
// What programs leave behind in a board's tree, and getting rid of it.
#pragma once

#include "launcher/mounts.hpp"

#include <filesystem>
#include <set>
#include <string>

namespace vboard
{

// Removes what is in the directory and can be removed. Goes into nothing that is mounted there: that belongs
// to somebody else (the user's project, the machine's devices).
void empty_directory(const std::filesystem::path &directory);

class StartState
{
  public:
    // To be made when the tree is complete: what is mounted now belongs to it.
    explicit StartState(const OwnNamespace &proof);

    // Undoes all mounts that have come since, and empties the places that hold nothing over a reset: "/tmp",
    // the locks, and "/dev" but for what is mounted there.
    void restore() const;

  private:
    void undo_mounts() const;
    Mounts mounts_;
    std::set<std::string> own_mounts_; // by their numbers
};

} // namespace vboard
