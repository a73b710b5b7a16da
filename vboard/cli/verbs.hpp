// SPDX-License-Identifier: Apache-2.0
// The verbs of the vboard command. A verb adds its options to the command line and says what to do when it is
// the one asked for; each group of verbs has a file of its own.
#pragma once

#include "cli/arguments.hpp"

#include <functional>
#include <memory>
#include <stdexcept>
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

void add_boards(Arguments line, Call &call);
void add_tree(Arguments line, Call &call);
void add_run(Arguments line, Call &call);
void add_up_and_down(Arguments line, Call &call); // up, down, exec, status
void add_resets(Arguments line, Call &call);      // reset, power-cut
void add_values(Arguments line, Call &call);      // get, set, getenv, setenv
void add_faults(Arguments line, Call &call);
void add_log(Arguments line, Call &call);
void add_report(Arguments line, Call &call);
void add_machine(Arguments line, Call &call); // machine build, boot, run, test

// Refuses a missing command (`wanted`) or one that the verb has no use for.
void check_command(const Call &call, bool wanted);

// Adds a verb: `add_options` fills its command line, `action` gets what was given. A verb that wants a
// command finds it in the call; the others are refused one.
template <class Options>
void add_verb(Arguments line, Call &call, const char *name, const char *help,
              void (*add_options)(Arguments, Options &), int (*action)(const Options &, const Call &),
              bool wants_command = false)
{
    auto options = std::make_shared<Options>();
    const auto act = [options, action, wants_command, &call] {
        check_command(call, wants_command);
        return action(*options, call);
    };
    add_options(line.verb(name, help, [act, &call] { call.action = act; }), *options);
}

} // namespace vboard::cli
