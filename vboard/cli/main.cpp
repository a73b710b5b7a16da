// SPDX-License-Identifier: Apache-2.0
// The vboard command: finds the verb and runs it.
#include "cli/verbs.hpp"

#include <algorithm>
#include <cstdio>
#include <exception>

namespace vboard::cli
{

void check_command(const Call &call, bool wanted)
{
    if (wanted && call.command.empty())
        throw UsageError("no command given; it stands after \"--\"");
    if (!wanted && call.has_command)
        throw UsageError("this verb runs no command, so nothing may follow \"--\"");
}

} // namespace vboard::cli

namespace
{

constexpr vboard::cli::Program program = {
    "vboard",
    "A virtual MOX board: makes one, runs programs on it, looks at it and disturbs it from outside.",
    "Exit status: 0 done, 1 failed, 2 wrong usage; run, exec and tree hand on the command's own."};

int parse_and_run(int argc, char **argv)
{
    using namespace vboard::cli;
    Call call;
    // What stands after "--" belongs to somebody else's command line and is not looked at.
    char **const end = argv + argc;
    char **const dashes = std::find_if(argv, end, [](const char *word) { return std::string(word) == "--"; });
    call.has_command = dashes != end;
    if (call.has_command)
        call.command.assign(dashes + 1, end);

    const auto add = [&call](Arguments line) {
        for (const auto add_verbs : {add_boards, add_run, add_tree, add_up_and_down, add_resets, add_values,
                                     add_faults, add_log, add_report, add_machine})
            add_verbs(line, call);
    };
    const Parsed parsed = parse(program, static_cast<int>(dashes - argv), argv, add);
    if (parsed != Parsed::taken)
        return parsed == Parsed::helped ? done : usage;
    try {
        return call.action();
    } catch (const UsageError &error) {
        std::fprintf(stderr, "vboard: %s\n", error.what());
        return usage;
    }
}

} // namespace

int main(int argc, char **argv)
{
    try {
        return parse_and_run(argc, argv);
    } catch (const std::exception &error) {
        std::fprintf(stderr, "vboard: %s\n", error.what());
    }
    return vboard::cli::failed;
}
