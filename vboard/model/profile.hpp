// SPDX-License-Identifier: Apache-2.0
// Board profiles: TOML files that say what makes one board differ from another. A profile is complete in one
// file; what it does not say is as on the base board (base.toml, built in), which has every item but those
// about the TPM and secure boot: a board that lacks these cannot be asked. The keys:
//
//   name, description, footprint        texts
//   address                             "00:1b:63:84:45:e6"
//   occupied-slots, logic-id            [1, 2], 0x6001
//   watchdog-period-ms, -threshold      at least 1
//   mcu-die-id                          1 to 32 bytes, two hexadecimal digits each
//   crl-module                          true: there is a "/dev/module_crl"
//   tpm2                                true: there is a "/dev/tpm0", an empty node
//   cgroup                              true: there is a directory "/cgroup1"
//   boot-files                          ["Image-5.10", ...]: what lies in a new board's "/boot"
//   [reset]                             reason and date of the last reset
//   [items."DEVICE"]                    items by name ("tpm active", "tpm online", "secure boot", ...) or
//   code [boot-env], [platform-env], [memory-env]   variables
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

// What one of the profile's boot files holds: a line that says which file of which board it is.
std::string boot_file_content(const Profile &profile, const std::string &name);

// The same board with another hard type: any board that there is no profile for.
Profile with_hard_type(Profile profile, std::uint32_t hard_type);

} // namespace vboard
