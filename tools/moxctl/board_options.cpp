// SPDX-License-Identifier: Apache-2.0
// The verbs about the board itself: who it is, what it keeps.
#include "command_line.hpp"
#include "verbs.hpp"
#include "words.hpp"

namespace moxctl
{

namespace
{

constexpr unsigned most_steps = 1000;

void add_reports(CommandLine &line)
{
    CLI::App &app = line.app();
    line.run(line.add_verb(app, "info", "Tell who this board is, as far as its driver tells"),
             [](const Words &) { return board_information(); });

    CLI::App *verb = line.add_verb(app, "time", "Tell run times, clock and the steps of the start");
    verb->add_option("--steps", line.words().steps, "most steps of the start to show")
        ->check(CLI::Range(1u, most_steps))
        ->capture_default_str();
    line.run(verb, [](const Words &words) { return times(words.steps); });

    line.run(line.add_verb(app, "mcu", "Tell whether the board's MCU is online, and its die id"),
             [](const Words &) { return mcu(); });
}

void add_families(CommandLine &line)
{
    CLI::App *verb =
        line.add_verb(line.app(), "families",
                      "Tell which board families this board belongs to, by all of the library's predicates;\n"
                      "with the options: another board, and what is not given is this board's");
    Words &words = line.words();
    line.may(verb, "--hard-type", words.hard_type, "hard type of the board, decimal or 0x...", check_number);
    verb->add_option("--flash", words.flash, "its start-up flash")->check(CLI::IsMember(flash_names()));
    line.may(verb, "--family-type", words.family_type,
             "number of its product family, \"product_family_type\"", check_number);
    line.run(verb, [](const Words &given) {
        OtherBoard other;
        other.hard_type = parse_number(given.hard_type);
        other.flash = given.flash;
        other.family_type = parse_number(given.family_type);
        return families(other);
    });
}

void add_env(CommandLine &line)
{
    CLI::App *env = line.add_group(line.app(), "env", "Boot environment: variables that the board keeps");
    CLI::App *get = line.add_verb(*env, "get", "Print a variable's value");
    CLI::App *set = line.add_verb(*env, "set", "Set a variable until the next reset; save makes it last");
    CLI::App *clear =
        line.add_verb(*env, "clear", "Delete a variable until the next reset; save makes it last");
    for (CLI::App *verb : {get, set, clear})
        line.need(verb, "NAME", line.words().name, "name of the variable", check_variable_name);
    line.need(set, "VALUE", line.words().value, "its value", check_variable_value);
    line.run(get, [](const Words &words) { return get_variable(words.name); });
    line.run(set, [](const Words &words) { return set_variable(words.name, words.value); });
    line.run(clear, [](const Words &words) { return clear_variable(words.name); });
    line.run(line.add_verb(*env, "save", "Save all variables to non-volatile storage"),
             [](const Words &) { return save_variables(); });
}

void add_item(CommandLine &line)
{
    CLI::App *item = line.add_group(line.app(), "item", "Items of the board driver: one 32-bit value each");
    CLI::App *get = line.add_verb(*item, "get", "Print an item's value");
    CLI::App *set = line.add_verb(*item, "set", "Set an item");
    for (CLI::App *verb : {get, set}) {
        line.need(verb, "DEVICE", line.words().device, "board0, chassis0, slot1 to slot32, or a path",
                  check_device);
        line.need(verb, "CODE", line.words().code, "the item's code, decimal or 0x...", check_number);
    }
    line.need(set, "VALUE", line.words().value, "its new value, decimal or 0x...", check_number);
    line.run(get, [](const Words &words) {
        return get_item(device_path(words.device), parse_number(words.code).value());
    });
    line.run(set, [](const Words &words) {
        return set_item(device_path(words.device), parse_number(words.code).value(),
                        parse_number(words.value).value());
    });
}

void add_backup(CommandLine &line)
{
    CLI::App *backup = line.add_group(line.app(), "backup", "Second copies of the board's directories");
    CLI::App *state = line.add_verb(*backup, "state", "Tell, or with a word set, whether they are ready");
    line.may(state, "STATE", line.words().value, "0 or ready, 1 or unready", check_backup_state);
    line.run(state, [](const Words &words) {
        return words.value.empty() ? get_backup_state()
                                   : set_backup_state(parse_backup_state(words.value).value());
    });
    line.run(line.add_verb(*backup, "paths", "Tell for each directory where its second copy lies"),
             [](const Words &) { return backup_paths(); });
}

} // namespace

void add_board_verbs(CommandLine &line)
{
    add_reports(line);
    add_families(line);
    add_env(line);
    add_item(line);
    add_backup(line);
}

} // namespace moxctl
