// SPDX-License-Identifier: Apache-2.0
// The verbs about software packages and their installation.
#include "command_line.hpp"
#include "install_root.hpp"
#include "verbs.hpp"
#include "words.hpp"

namespace moxctl
{

namespace
{

void add_plan(CommandLine &line)
{
    CLI::App *verb = line.add_verb(
        line.app(), "plan",
        "Tell what an installation would do, without touching anything: boot files, links, and\n"
        "start-up flash of this board; with the options: of another one, and what is not given\n"
        "is this board's. Sources of links are taken to be there, unless a package or a\n"
        "directory is named");
    Words &words = line.words();
    line.may(verb, "--hard-type", words.hard_type, "hard type of the board, decimal or 0x...", check_number);
    verb->add_option("--flash", words.flash, "its start-up flash")->check(CLI::IsMember(flash_names()));
    line.may(verb, "--pack-type", words.pack_type, "its package type", check_number);
    line.may(verb, "--service-type", words.service_type, "its product service type", check_number);
    line.may(verb, "--logic-id", words.logic_id, "its logic id", check_number);
    CLI::Option *ptn = verb->add_flag("--ptn", words.ptn, "it runs in ptn mode");
    verb->add_flag("--no-ptn", words.no_ptn, "it does not")->excludes(ptn);
    verb->add_option("--package", words.package, "only what this package delivers is there");
    line.may(verb, "--root", words.root,
             "install root: also what lies there on the disk; links that are there are seen",
             check_install_root);
    line.run(verb, [](const Words &given) {
        OtherBoard other;
        other.hard_type = parse_number(given.hard_type);
        other.flash = given.flash;
        other.pack_type = parse_number(given.pack_type);
        other.service_type = parse_number(given.service_type);
        other.logic_id = parse_number(given.logic_id);
        if (given.ptn || given.no_ptn)
            other.ptn = given.ptn;
        return plan_installation(other, given.package, given.root.empty() ? "" : install_root(given.root));
    });
}

} // namespace

void add_install_verbs(CommandLine &line)
{
    add_plan(line);
}

} // namespace moxctl
