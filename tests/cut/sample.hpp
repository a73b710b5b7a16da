// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

namespace cut
{

// A package with every file that the installation tables name. Where boot files share an id it has the one
// that the board asks for. The contents tell file and generation.
void make_sample(const std::string &package, unsigned generation);

} // namespace cut
