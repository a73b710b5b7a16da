// SPDX-License-Identifier: Apache-2.0
#include "options.hpp"

#include "verbs.hpp"
#include "words.hpp"

#include <CLI/CLI.hpp>

#include <memory>
#include <sstream>

namespace moxctl
{

namespace
{

constexpr const char *examples = R"(Examples:
  moxctl info                                who this board is
  moxctl --json info | jq .hard_type         the same for a program
  moxctl env get backup_state                a boot variable's value
  moxctl env set mode fast && moxctl env save
  moxctl env set options -- --quiet          a value that begins with a dash
  moxctl time --steps 4                      run times and the first steps of the start
  moxctl item get board0 0x8000001           one item of the board driver
  moxctl item set slot3 0x10002202 1

Exit status: 0 done; 1 failed, told on standard error (info and time: nothing at all could
be read, or what was read could not be written); 2 wrong usage.
)";

// Words of the command line as they were given.
struct Words {
    std::string name, value, device, code;
    unsigned steps = 16;
};

constexpr unsigned most_steps = 1000;

using Action = std::function<Outcome(const Words &)>;

// Adds a verb. Global options may also stand behind it.
CLI::App *add_verb(CLI::App &parent, const char *name, const char *help)
{
    CLI::App *verb = parent.add_subcommand(name, help);
    verb->fallthrough();
    return verb;
}

CLI::App *add_group(CLI::App &parent, const char *name, const char *help)
{
    CLI::App *group = add_verb(parent, name, help);
    group->require_subcommand(1);
    return group;
}

class CommandLine
{
  public:
    explicit CommandLine(Request &request) : request_(request)
    {
        app_.require_subcommand(1);
        app_.footer(examples);
        app_.set_version_flag("--version", "moxctl " MOXCTL_VERSION);
        app_.add_flag("--json", request.json, "print one JSON object in place of a table");
        app_.add_flag("-v,--verbose", request.verbose, "let the library's own lines out on standard error");
        add_reports();
        add_env();
        add_item();
    }

    CLI::App &app()
    {
        return app_;
    }

  private:
    void run(CLI::App *verb, Action action)
    {
        verb->callback([this, action = std::move(action)] {
            request_.action = [words = words_, action] { return action(*words); };
        });
    }

    static void need(CLI::App *verb, const char *name, std::string &word, const char *help,
                     std::string (*check)(const std::string &))
    {
        verb->add_option(name, word, help)
            ->required()
            ->check(CLI::Validator([check](const std::string &given) { return check(given); }, ""));
    }

    void add_reports()
    {
        run(add_verb(app_, "info", "Tell who this board is, as far as its driver tells"),
            [](const Words &) { return board_information(); });

        CLI::App *verb = add_verb(app_, "time", "Tell run times, clock and the steps of the start");
        verb->add_option("--steps", words_->steps, "most steps of the start to show")
            ->check(CLI::Range(1u, most_steps))
            ->capture_default_str();
        run(verb, [](const Words &words) { return times(words.steps); });
    }

    void add_env()
    {
        CLI::App *env = add_group(app_, "env", "Boot environment: variables that the board keeps");
        CLI::App *get = add_verb(*env, "get", "Print a variable's value");
        CLI::App *set = add_verb(*env, "set", "Set a variable until the next reset; save makes it last");
        CLI::App *clear =
            add_verb(*env, "clear", "Delete a variable until the next reset; save makes it last");
        for (CLI::App *verb : {get, set, clear})
            need(verb, "NAME", words_->name, "name of the variable", check_variable_name);
        need(set, "VALUE", words_->value, "its value", check_variable_value);
        run(get, [](const Words &words) { return get_variable(words.name); });
        run(set, [](const Words &words) { return set_variable(words.name, words.value); });
        run(clear, [](const Words &words) { return clear_variable(words.name); });
        run(add_verb(*env, "save", "Save all variables to non-volatile storage"),
            [](const Words &) { return save_variables(); });
    }

    void add_item()
    {
        CLI::App *item = add_group(app_, "item", "Items of the board driver: one 32-bit value each");
        CLI::App *get = add_verb(*item, "get", "Print an item's value");
        CLI::App *set = add_verb(*item, "set", "Set an item");
        for (CLI::App *verb : {get, set}) {
            need(verb, "DEVICE", words_->device, "board0, chassis0, slot1 to slot32, or a path",
                 check_device);
            need(verb, "CODE", words_->code, "the item's code, decimal or 0x...", check_number);
        }
        need(set, "VALUE", words_->value, "its new value, decimal or 0x...", check_number);
        run(get, [](const Words &words) {
            return get_item(device_path(words.device), parse_number(words.code).value());
        });
        run(set, [](const Words &words) {
            return set_item(device_path(words.device), parse_number(words.code).value(),
                            parse_number(words.value).value());
        });
    }

    Request &request_;
    std::shared_ptr<Words> words_ = std::make_shared<Words>(); // outlives the parser, for the action
    CLI::App app_{"Asks the board that it runs on, through the boot driver library.", "moxctl"};
};

} // namespace

Request parse(int argc, char **argv)
{
    Request request;
    CommandLine line(request);
    try {
        line.app().parse(argc, argv);
    } catch (const CLI::ParseError &error) {
        // Help and version are such an "error" too, with a status of 0.
        std::ostringstream out;
        std::ostringstream ignored;
        request.action = nullptr;
        if (line.app().exit(error, out, ignored) == 0) {
            request.out = out.str();
        } else {
            // A verb that nobody knows shows as a missing one; the word itself says more.
            const std::vector<std::string> unknown = line.app().remaining(true);
            const std::string words =
                unknown.empty() ? error.what() : "\"" + unknown.front() + "\" is not understood here";
            request.status = exit_usage;
            request.err = "moxctl: " + words + "\nTry \"moxctl --help\".\n";
        }
    }
    return request;
}

} // namespace moxctl
