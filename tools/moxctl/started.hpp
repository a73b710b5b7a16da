// SPDX-License-Identifier: Apache-2.0
// A shell command that a verb starts, on the real standard output and error.
#pragma once

#include "talk.hpp"

#include <string>

namespace moxctl
{

// Runs it and waits; empty when it ended with status 0, else what came of it, in words.
std::string run_command(const std::string &command, const Talk &talk);

} // namespace moxctl
