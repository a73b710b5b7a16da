// SPDX-License-Identifier: Apache-2.0
// vboard tree: the board's file tree without a driver behind it.
#include "cli/verbs.hpp"

#include "launcher/program.hpp"
#include "launcher/tree.hpp"

#include <cstdio>
#include <memory>

namespace vboard::cli
{

namespace fs = std::filesystem;

namespace
{

struct Options {
    std::string state;
    std::vector<std::string> keep;
};

int tree(const Options &options, const std::vector<std::string> &command)
{
    try {
        TreePlan plan;
        if (!options.state.empty()) {
            prepare_tree(options.state);
            plan.state = fs::canonical(options.state);
        }
        for (const std::string &path : options.keep)
            plan.keep.push_back(fs::canonical(path));
        if (const fs::path program = find_program(command.front()); !program.empty())
            plan.keep.push_back(program);
        plan.keep.push_back(fs::read_symlink("/proc/self/exe")); // a test may start vboard once more, in the tree
        enter_tree(enter_own_namespace(), plan);
    } catch (const std::exception &error) {
        std::fprintf(stderr, "vboard: %s\n", error.what());
        return exit_launch_failed;
    }
    return exec_program(command);
}

} // namespace

void check_command(const Call &call, bool wanted)
{
    if (wanted && call.command.empty())
        throw UsageError("no command given; it stands after \"--\"");
    if (!wanted && call.has_command)
        throw UsageError("this verb runs no command, so nothing may follow \"--\"");
}

void add_tree(CLI::App &app, Call &call)
{
    auto options = std::make_shared<Options>();
    CLI::App *verb = app.add_subcommand(
        "tree", "Run a command in a board's file tree, with no driver: vboard tree -- COMMAND");
    verb->add_option("--state", options->state,
                     "keep the board's files in this directory (default: in memory)");
    verb->add_option("--keep", options->keep,
                     "a path of the host to keep reachable although the board has its own directory there");
    verb->callback([options, &call] {
        call.action = [options, &call] {
            check_command(call, true);
            return tree(*options, call.command);
        };
    });
}

} // namespace vboard::cli
