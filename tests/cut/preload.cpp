// SPDX-License-Identifier: Apache-2.0
// Put in front of a program: a board of its own and the rig, both as the environment says.
#include "cut/rig.hpp"
#include "vboard/front/inprocess.hpp"
#include "vboard/model/profile.hpp"

#include <cstdlib>

namespace
{

// The board is never taken away: the program may ask it until its very end.
[[gnu::constructor]] void start()
{
    const char *const profile = std::getenv("CUT_BOARD");
    if (profile == nullptr)
        return;
    vboard::attach(new vboard::Board(vboard::load_profile(profile)));
    unsetenv("LD_PRELOAD"); // for programs that this one starts
    cut::arm(cut::plan_of_environment());
}

} // namespace
