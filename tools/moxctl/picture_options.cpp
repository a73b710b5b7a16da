// SPDX-License-Identifier: Apache-2.0
// The verbs that make something to look at: timelines and pages.
#include "command_line.hpp"
#include "verbs.hpp"

namespace moxctl
{

namespace
{

void add_trace(CommandLine &line)
{
    CLI::App *group = line.add_group(line.app(), "trace", "What happened on a board");
    CLI::App *verb =
        line.add_verb(*group, "export", "Turn the step trace and a virtual board's journal into a timeline");
    Words &words = line.words();
    verb->add_option("--format", words.format, "as which viewers read it")
        ->check(CLI::IsMember({"perfetto"}))
        ->capture_default_str();
    verb->add_option("--journal", words.journal,
                     "journal of a virtual board (default: that of $VBOARD_STATE)");
    verb->add_option("--trace", words.trace, "step trace (default: that of this board)");
    verb->add_option("-o,--output", words.output, "write it to this file (default: standard output)");
    line.run(verb, [](const Words &given) {
        return export_trace({given.journal, given.trace, given.output});
    });
}

void add_atlas(CommandLine &line)
{
    CLI::App *verb =
        line.add_verb(line.app(), "atlas",
                      "Write a page of all boards: families, OS type, boot files, links, start-up\n"
                      "flash, trust; with a filter, and what changes from one board to another");
    Words &words = line.words();
    verb->add_option(
        "--boards", words.boards,
        "list of named boards, as \"vboard boards --json\" gives it (default: the one installed)");
    verb->add_option("-o,--output", words.output, "write it to this file (default: standard output)");
    line.run(verb, [](const Words &given) { return atlas({given.boards, given.output}); });
}

} // namespace

void add_picture_verbs(CommandLine &line)
{
    add_trace(line);
    add_atlas(line);
}

} // namespace moxctl
