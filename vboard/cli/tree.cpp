// SPDX-License-Identifier: Apache-2.0
// vboard tree: the board's file tree without a driver behind it.
#include "launcher/tree.hpp"
#include "cli/command.hpp"
#include "cli/places.hpp"
#include "cli/verbs.hpp"
#include "launcher/program.hpp"

#include <cstdio>

namespace vboard::cli
{

namespace fs = std::filesystem;

namespace
{

struct Options {
    std::string state;
    std::vector<std::string> keep;
};

void add_options(Arguments line, Options &options)
{
    line.text("--state", options.state, "keep the board's files in this directory (default: in memory)");
    line.texts(
        "--keep", options.keep,
        "path of the host to keep reachable where the board has a directory of its own; may be repeated");
}

int tree(const Options &options, const Call &call)
{
    try {
        TreePlan plan;
        if (!options.state.empty()) {
            prepare_tree(options.state);
            plan.state = fs::canonical(options.state);
        }
        for (const std::string &path : options.keep)
            plan.keep.push_back(fs::canonical(path));
        if (const fs::path program = find_program(call.command.front()); !program.empty())
            plan.keep.push_back(program);
        plan.libraries = libraries();
        plan.reboot = reboot_program();
        plan.keep.push_back(own_binary()); // a test may start vboard once more, in the tree
        enter_tree(enter_own_namespace(), plan);
    } catch (const std::exception &error) {
        std::fprintf(stderr, "vboard: %s\n", error.what());
        return exit_launch_failed;
    }
    const std::vector<std::string> command = runnable(call.command);
    set_library_path();
    return exec_program(command);
}

} // namespace

void add_tree(Arguments line, Call &call)
{
    add_verb<Options>(line, call, "tree",
                      "Run a command in a board's file tree, with no driver: vboard tree -- COMMAND",
                      add_options, tree, true);
}

} // namespace vboard::cli
