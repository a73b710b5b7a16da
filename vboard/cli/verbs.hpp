// SPDX-License-Identifier: Apache-2.0
// The verbs of the vboard command. A verb adds its options to the command line and says what to do when it is
// the one asked for; each group of verbs has a file of its own.
#pragma once

#include <CLI/CLI.hpp>

#include <functional>
#include <string>
#include <vector>

namespace vboard::cli
{

// What is common to one call of the command.
struct Call {
    std::vector<std::string> command; // what stands after "--"
    bool has_command = false;         // there was a "--"
    std::function<int()> action;      // of the verb asked for; its result is the exit status
};

// Exit statuses of the verbs that start no program.
constexpr int done = 0;
constexpr int failed = 1;
constexpr int usage = 2;

// A mistake in the command line that shows only after parsing.
struct UsageError : std::runtime_error {
    using std::runtime_error::runtime_error;
};

void add_tree(CLI::App &app, Call &call);

// Refuses a missing command (`wanted`) or one that the verb has no use for.
void check_command(const Call &call, bool wanted);

} // namespace vboard::cli
