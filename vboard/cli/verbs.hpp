// SPDX-License-Identifier: Apache-2.0
// The verbs of the vboard command. A verb adds its options to the command line and says what to do when it is
// the one asked for; each group of verbs has a file of its own.
#pragma once

#include <CLI/CLI.hpp>

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

void add_boards(CLI::App &app, Call &call);
void add_tree(CLI::App &app, Call &call);
void add_run(CLI::App &app, Call &call);
void add_up_and_down(CLI::App &app, Call &call); // up, down, exec, status
void add_resets(CLI::App &app, Call &call);      // reset, power-cut
void add_values(CLI::App &app, Call &call);      // get, set, getenv, setenv
void add_faults(CLI::App &app, Call &call);
void add_log(CLI::App &app, Call &call);
void add_report(CLI::App &app, Call &call);
void add_machine(CLI::App &app, Call &call); // machine build, boot, run, test

// Refuses a missing command (`wanted`) or one that the verb has no use for.
void check_command(const Call &call, bool wanted);

// Adds a verb: `add_options` fills its command line, `action` gets what was given. A verb that wants a
// command finds it in the call; the others are refused one.
template <class Options>
void add_verb(CLI::App &app, Call &call, const char *name, const char *help,
              void (*add_options)(CLI::App &, Options &), int (*action)(const Options &, const Call &),
              bool wants_command = false)
{
    auto options = std::make_shared<Options>();
    CLI::App *verb = app.add_subcommand(name, help);
    add_options(*verb, *options);
    verb->callback([options, action, wants_command, &call] {
        call.action = [options, action, wants_command, &call] {
            check_command(call, wants_command);
            return action(*options, call);
        };
    });
}

} // namespace vboard::cli
