// SPDX-License-Identifier: Apache-2.0
// Board profiles: TOML files that say what makes one board differ from another. A profile is complete in one
// file; what it does not say is as on the base board (base.toml, built in), which has every item.
#pragma once

#include "model/board.hpp"

#include <filesystem>
#include <span>
#include <stdexcept>

namespace vboard
{

// What is wrong with a profile, with file and line: "FILE:LINE: unknown key \"colour\"".
class ProfileError : public std::runtime_error
{
  public:
    using std::runtime_error::runtime_error;
};

// All throw ProfileError.
Profile load_profile(const std::filesystem::path &file);
// The profile in a text; `origin` stands for the file's name in errors.
Profile parse_profile(const std::string &text, const std::string &origin);

// The file of a board that is given by its name (looked for in the directories in turn) or as a file: a text
// with a slash in it or ending in ".toml".
std::filesystem::path find_profile(const std::string &name,
                                   std::span<const std::filesystem::path> directories);

// The names of the boards in a directory, in alphabetical order.
std::vector<std::string> list_profiles(const std::filesystem::path &directory);

// The same board with another hard type: any board that there is no profile for.
Profile with_hard_type(Profile profile, std::uint32_t hard_type);

} // namespace vboard
