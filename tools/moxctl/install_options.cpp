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

constexpr std::uint32_t smallest_sample = 256; // so that a file's first lines fit
constexpr std::uint32_t largest_sample = 16 * 1024 * 1024;

std::string check_sample_size(const std::string &word)
{
    const std::string wrong = check_number(word);
    if (!wrong.empty())
        return wrong;
    const std::uint32_t size = parse_number(word).value();
    return size < smallest_sample || size > largest_sample
               ? "a sample boot file has " + std::to_string(smallest_sample) + " to " +
                     std::to_string(largest_sample) + " bytes"
               : std::string();
}

PackageOrder package_order(const Words &given)
{
    return {given.package, given.package_name, given.package_version};
}

void add_package(CommandLine &line)
{
    CLI::App *group = line.add_group(line.app(), "package", "Software packages");
    CLI::App *build =
        line.add_verb(*group, "build", "Make one out of files; an old one stays until it is whole");
    CLI::App *list = line.add_verb(*group, "list", "Tell what is in one, without reading it all");
    CLI::App *verify = line.add_verb(*group, "verify", "Read one to its end, and tell whether it is whole");
    CLI::App *sample =
        line.add_verb(*group, "sample", "Make one with every file that the library knows, for trials");
    Words &words = line.words();
    for (CLI::App *verb : {build, list, verify, sample})
        verb->add_option("PACKAGE", words.package, "the package's file")->required();
    build->add_option("RECIPE", words.recipe, "JSON file: name, version, files with id, name, path or text")
        ->required();
    for (CLI::App *verb : {build, sample}) {
        verb->add_option("--name", words.package_name, "name of the package");
        verb->add_option("--version", words.package_version, "its version");
    }
    line.may(sample, "--size", words.size, "bytes of each boot file (default: 4096)", check_sample_size);
    verify->add_flag("--quiet", words.quiet, "do not tell how far it has come");
    line.run(build, [](const Words &given) { return build_package(package_order(given), given.recipe); });
    line.run(list, [](const Words &given) { return list_package(given.package); });
    line.run_talking(verify, [](const Words &given, const Talk &talk) {
        return verify_package(given.package, given.quiet, talk);
    });
    line.run(sample, [](const Words &given) {
        constexpr std::uint32_t usual = 4096;
        return sample_package(package_order(given), parse_number(given.size).value_or(usual));
    });
}

void add_installation(CommandLine &line)
{
    CLI::App *verb =
        line.add_verb(line.app(), "install",
                      "Install a package on this board: verify it, unpack its run files beside the install\n"
                      "root, extract this board's boot files, make its links, write its start-up flash");
    Words &words = line.words();
    verb->add_option("PACKAGE", words.package, "the package's file")->required();
    line.need(verb, "--root", words.root, "install root, a directory; made when it is missing",
              check_install_root);
    line.may(verb, "--phase", words.phase, "phase of the installation, told to the library (default: 0)",
             check_number);
    verb->add_flag("--quiet", words.quiet, "do not tell how far it has come");
    line.run_talking(verb, [](const Words &given, const Talk &talk) {
        return install(
            {given.package, install_root(given.root), parse_number(given.phase).value_or(0), given.quiet},
            talk);
    });
}

} // namespace

void add_install_verbs(CommandLine &line)
{
    add_plan(line);
    add_package(line);
    add_installation(line);
}

} // namespace moxctl
