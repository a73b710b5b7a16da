// SPDX-License-Identifier: Apache-2.0
// What the preload asks of the platform, recorded, and answered as a test wants.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

// An updater's functions in the test program.
extern "C" {
std::uint32_t test_update_startup_file(std::uint32_t type, const char *path);
std::uint32_t test_delete_startup_file(std::uint32_t type, std::uint32_t zero, std::uint32_t one);
}

namespace test
{

// The calls in order: "update 256 /boot/name", "delete 256 0 1", "refresh nor".
extern std::vector<std::string> asked;

// The answers; none: 0, after the platform's own work for the NOR data area.
extern std::function<std::uint32_t(std::uint32_t type, const std::string &path)> on_update;
extern std::function<std::uint32_t()> on_delete;
extern std::function<std::uint32_t()> on_refresh;
// Takes a file out of a package; none: the platform does.
extern std::function<std::uint32_t(const std::string &destination)> on_extract;

// What was looked for in "/boot": "exists /boot/name", or the mode of another question.
extern std::vector<std::string> looked_for;

void forget_spies();

} // namespace test
