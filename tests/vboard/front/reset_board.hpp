// SPDX-License-Identifier: Apache-2.0
// What the tests of resets have in common.
#pragma once

#include "vboard_runner.hpp"

namespace reset_board
{

// A board that resets softly, and one that cannot.
constexpr const char *soft = "qs3520-mpu";
constexpr const char *soft_item = "0x1100aaaa";

// The standard output of a command that has to succeed.
std::string out(const front::Outcome &outcome);
// Runs a script on the board and gives what it printed.
std::string sh(const front::Up &board, const std::string &script);
// Number of resets since power on, and the name of the last one.
std::string resets(const front::Up &board);

// Runs "/sbin/reboot" with the given words before it ("setpriv --reuid=1"), after a look that this is a
// board's own namespace and the board's own command. Exits with 99 and does not run it otherwise.
std::string reboot_script(const std::string &before = "", const std::string &command = "/sbin/reboot");

// Whether the process runs; one that has ended and waits for its parent does not.
bool runs(int pid);

// Waits until the board says what is expected; what it said last.
std::string await_resets(const front::Up &board, const std::string &expected);
// Waits until the file holds a line at least.
void await_line(const std::filesystem::path &file);

} // namespace reset_board
