// SPDX-License-Identifier: Apache-2.0
#include "daemon/board_tree.hpp"

#include "daemon/seed.hpp"

namespace vboard
{

BoardTree::BoardTree(const OwnNamespace &proof, const TreePlan &plan, const Profile &profile)
    : profile_(profile)
{
    enter_tree(proof, plan);
    start_.emplace(proof);
    reset(Reset::power_cut); // the state may hold what programs left in "/tmp" when the board went down
}

void BoardTree::reset(Reset kind)
{
    start_->restore();
    make_device_links();
    seed_lasting(profile_);
    if (kind != Reset::soft) {
        empty_directory(ram_disk);
        seed_ram_disk(profile_);
    }
    seed_volatile(profile_);
}

} // namespace vboard
