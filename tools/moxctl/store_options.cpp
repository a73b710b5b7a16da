// SPDX-License-Identifier: Apache-2.0
// The verbs about what lasts over a reset, and what a start finds.
#include "command_line.hpp"
#include "verbs.hpp"
#include "words.hpp"

#include <moxboot/blackbox.h>

#include <map>

namespace moxctl
{

namespace
{

std::uint32_t number_or(const std::string &word, std::uint32_t otherwise)
{
    return parse_number(word).value_or(otherwise);
}

void add_box_names(CommandLine &line, const std::vector<CLI::App *> &verbs)
{
    for (CLI::App *verb : verbs)
        line.need(verb, "NAME", line.words().name, "name of the box, without \"_blackbox\"", check_box_name);
}

void add_box_contents(CommandLine &line, CLI::App *read, CLI::App *write)
{
    Words &words = line.words();
    for (CLI::App *verb : {read, write})
        line.may(verb, "--offset", words.offset, "where to begin (default: 0)", check_number);
    line.may(read, "--length", words.length, "how many bytes (default: to the end)", check_number);
    read->add_option("--view", words.view, "hex, text, or raw (the bytes themselves)")
        ->check(CLI::IsMember({"hex", "text", "raw"}))
        ->capture_default_str();
    read->add_option("--out", words.file, "file to write the bytes to, in place of showing them");
    line.run(read, [](const Words &given) {
        static const std::map<std::string, View> views = {
            {"hex", View::hex}, {"text", View::text}, {"raw", View::raw}};
        return read_box(given.name, {number_or(given.offset, 0), parse_number(given.length), given.file,
                                     views.at(given.view)});
    });
    CLI::Option *text = write->add_option("--text", words.text, "what to write");
    write->add_option("--from", words.file, "file to write from (default: -, standard input)")
        ->excludes(text);
    line.run(write, [](const Words &given) {
        return write_box(given.name, number_or(given.offset, 0),
                         given.text
                             ? *given.text
                             : read_file(given.file.empty() ? "-" : given.file, MOX_BLACKBOX_MAX_SIZE));
    });
}

void add_blackbox(CommandLine &line)
{
    CLI::App *group =
        line.add_group(line.app(), "blackbox", "Black boxes: records that modules keep across restarts");
    CLI::App *list = line.add_verb(*group, "list", "List them");
    list->add_option("--match", line.words().value, "only those whose file names contain this");
    line.run(list, [](const Words &words) { return list_boxes(words.value); });

    CLI::App *create = line.add_verb(*group, "create", "Make one, full of zeros");
    CLI::App *read = line.add_verb(*group, "read", "Show what one holds");
    CLI::App *write = line.add_verb(*group, "write", "Write into one; its size stays");
    CLI::App *remove = line.add_verb(*group, "remove", "Remove one");
    add_box_names(line, {create, read, write, remove});
    line.need(create, "SIZE", line.words().size, "its size in bytes, decimal or 0x..., at most 0x100000",
              check_box_size);
    create->add_flag("--resize", line.words().resize,
                     "also one that has another size: what is beyond is cut");
    line.run(create, [](const Words &words) {
        return create_box(words.name, parse_number(words.size).value(), words.resize);
    });
    add_box_contents(line, read, write);
    line.run(remove, [](const Words &words) { return remove_box(words.name); });
}

void add_memory(CommandLine &line)
{
    CLI::App *group = line.add_group(line.app(), "rsvmem", "Reserved memory, which survives a soft reset");
    CLI::App *map = line.add_verb(
        *group, "map", "Map a memory, made when there is none, and tell whether it survived from before");
    Words &words = line.words();
    line.need(map, "NAME", words.name, "name of the memory", check_memory_name);
    line.need(map, "SIZE", words.size, "its size in bytes, decimal or 0x...", check_memory_size);
    map->add_flag("--resize", words.resize, "also when it is larger now: what is beyond is cut");
    map->add_option("--put", words.value, "text to put at its beginning");
    line.run(map, [](const Words &given) {
        return map_reserved_memory({given.name, parse_number(given.size).value(), given.resize, given.value});
    });
    line.run(line.add_verb(line.app(), "memfs", "List the mounted file systems that lie in memory"),
             [](const Words &) { return memory_file_systems(); });
}

void add_start(CommandLine &line)
{
    Words &words = line.words();
    CLI::App *mode = line.add_verb(line.app(), "workmode",
                                   "Tell what the questions for the work mode answer, and the variables "
                                   "they look at");
    mode->add_flag("--settle", words.settle, "settle it first, as a start does: WRITES the current mode");
    line.run(mode, [](const Words &given) { return work_mode(given.settle); });

    CLI::App *flag =
        line.add_verb(line.app(), "start-flag", "Tell, or set, whether the board must be rebooted");
    CLI::Option *set =
        line.may(flag, "--set", words.value, "the flag, decimal or 0x...; 1 and 2: no reboot", check_number);
    flag->add_flag("--check", words.check, "as the start-up check does: a flag that is there already stays")
        ->needs(set);
    line.run(flag, [](const Words &given) {
        return given.value.empty() ? start_flag()
                                   : set_start_flag(parse_number(given.value).value(), given.check);
    });
}

void add_files(CommandLine &line)
{
    Words &words = line.words();
    CLI::App *paths = line.add_verb(line.app(), "paths", "Tell where product files lie");
    paths->add_option("--package", words.value, "also where this package is kept");
    line.run(paths, [](const Words &given) { return product_paths(given.value); });

    line.run(line.add_verb(line.app(), "sync-info",
                           "Tell which start-up file this board offers to a paired one of another model"),
             [](const Words &) { return sync_info(); });
    CLI::App *match = line.add_verb(line.app(), "sync-match",
                                    "Tell whether the start-up files of this board and its peer match");
    line.need(match, "VERSION", words.value, "version of the peer's file, by its own sync-info",
              check_file_version);
    line.run(match, [](const Words &given) { return sync_match(given.value); });
}

} // namespace

void add_store_verbs(CommandLine &line)
{
    add_blackbox(line);
    add_memory(line);
    add_start(line);
    add_files(line);
}

} // namespace moxctl
