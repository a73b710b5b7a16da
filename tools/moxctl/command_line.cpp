// SPDX-License-Identifier: Apache-2.0
#include "command_line.hpp"

#include <utility>

namespace moxctl
{

CommandLine::CommandLine(Request &request) : request_(request)
{
    app_.require_subcommand(1);
    app_.set_version_flag("--version", "moxctl " MOXCTL_VERSION);
    app_.add_flag("--json", request.json, "print one JSON object in place of a table");
    app_.add_flag("-v,--verbose", request.verbose, "let the library's own lines out on standard error");
}

CLI::App *CommandLine::add_verb(CLI::App &parent, const char *name, const char *help)
{
    CLI::App *verb = parent.add_subcommand(name, help);
    verb->fallthrough();
    return verb;
}

CLI::App *CommandLine::add_group(CLI::App &parent, const char *name, const char *help)
{
    CLI::App *group = add_verb(parent, name, help);
    group->require_subcommand(1);
    return group;
}

void CommandLine::run(CLI::App *verb, Action action)
{
    run_talking(verb,
                [action = std::move(action)](const Words &words, const Talk &) { return action(words); });
}

void CommandLine::run_talking(CLI::App *verb, TalkingAction action)
{
    verb->callback([this, action = std::move(action)] {
        request_.action = [words = words_, action](const Talk &talk) { return action(*words, talk); };
    });
}

CLI::Option *CommandLine::may(CLI::App *verb, const char *name, std::string &word, const char *help,
                              Check check)
{
    return verb->add_option(name, word, help)
        ->check(CLI::Validator([check](const std::string &given) { return check(given); }, ""));
}

void CommandLine::need(CLI::App *verb, const char *name, std::string &word, const char *help, Check check)
{
    may(verb, name, word, help, check)->required();
}

} // namespace moxctl
