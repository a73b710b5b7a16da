// SPDX-License-Identifier: Apache-2.0
// The file tree of a running board, from power on through its resets.
#pragma once

#include "launcher/start_state.hpp"
#include "launcher/tree.hpp"
#include "model/board.hpp"

#include <optional>

namespace vboard
{

class BoardTree
{
  public:
    // Makes the tree the root directory of this process, as it is after power on.
    BoardTree(const OwnNamespace &proof, const TreePlan &plan, const Profile &profile);

    // Puts everything back that does not survive such a reset. No program may be running. The nodes of the
    // board's services in "/dev" are gone afterwards.
    void reset(Reset kind);

  private:
    const Profile &profile_;
    std::optional<StartState> start_;
};

} // namespace vboard
