// SPDX-License-Identifier: Apache-2.0
// A board whose devices are this machine's own.
#pragma once

#include "cli/board_options.hpp"

namespace vboard::cli
{

// Starts it in the background. Exit status of the verb; throws as the others do.
int up_as_devices(const BoardOptions &options, const std::filesystem::path &state);

} // namespace vboard::cli
