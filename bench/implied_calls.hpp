// SPDX-License-Identifier: Apache-2.0
// The calls that an installation walk cannot do without, worked out from what its tables ask and from what
// lies on the disk.
#pragma once

#include "thin_board.hpp"

#include <string>

namespace bench
{

// Of a walk over all links below an install root as it lies there now, by predicate and by logic id; of all
// boot files. On the board of be().
Counts implied_by_links(const std::string &install_root);
Counts implied_by_extraction();

} // namespace bench
