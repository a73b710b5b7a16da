// SPDX-License-Identifier: Apache-2.0
// The saved boot environment, as the boot loader keeps it: an image with two copies, of which a save
// overwrites the one that is not in use. So a save that is cut off at any instant leaves the environment as
// it was.
#pragma once

#include "model/board.hpp"

namespace vboard
{

constexpr const char *env_image_name = "uboot-env.bin";
constexpr const char *env_config_name = "fw_env.config"; // for fw_printenv -c

// The store in a board's directory, which must exist. Makes the files when they are missing, the image with
// the profile's variables of a factory-new board. Works also after the process has left for a file tree where
// the directory cannot be seen ("/proc" is needed there). Throws std::runtime_error.
std::shared_ptr<EnvStore> make_env_store(const std::filesystem::path &directory, const Profile &profile);

} // namespace vboard
