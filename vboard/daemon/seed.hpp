// SPDX-License-Identifier: Apache-2.0
// What a board finds in its file tree when it comes up: the stores of the platform, the files that it starts
// from, the start-up footprint, and places that only some boards have.
#pragma once

#include "model/board.hpp"

namespace vboard
{

constexpr const char *ram_disk = "/opt/moxv8/SoftResetData";

// Each fills a part of the tree that is the root directory now. They throw std::runtime_error.
void seed_lasting(const Profile &profile);  // what stays for good: only where it is missing
void seed_ram_disk(const Profile &profile); // what survives a soft reset only
void seed_volatile(const Profile &profile); // what is new with each start

// Whether the platform has closed soft reset, in the memory environment.
bool soft_reset_closed();

} // namespace vboard
