// SPDX-License-Identifier: Apache-2.0
// board-seed PROFILE CAUSE: what the board finds in its file tree when it comes up after CAUSE ("none",
// "power-cut", "watchdog", "cold", "soft"). board-seed PROFILE closed: ends with 0 when the platform has
// closed soft reset.
#include "daemon/seed.hpp"
#include "model/profile.hpp"

#include <cstdio>
#include <exception>
#include <string_view>

int main(int argc, char **argv)
{
    if (argc != 3) {
        std::fprintf(stderr, "usage: board-seed PROFILE CAUSE|closed\n");
        return 2;
    }
    const std::string_view word = argv[2];
    if (word == "closed")
        return vboard::soft_reset_closed() ? 0 : 1;
    try {
        const vboard::Profile profile = vboard::load_profile(argv[1]);
        vboard::seed_lasting(profile);
        if (word != "soft")
            vboard::seed_ram_disk(profile);
        vboard::seed_volatile(profile);
        return 0;
    } catch (const std::exception &error) {
        std::fprintf(stderr, "board-seed: %s\n", error.what());
        return 1;
    }
}
