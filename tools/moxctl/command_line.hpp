// SPDX-License-Identifier: Apache-2.0
// The parser that the verbs are added to.
#pragma once

#include "options.hpp"

#include <CLI/CLI.hpp>

#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace moxctl
{

// Words of the command line as they were given; empty: not given.
struct Words {
    std::string name, value, device, code;
    unsigned steps = 16;
    std::string hard_type, flash, family_type;
    std::string reason, time;
    bool soft = false, prepare = false;
    std::string module = "moxctl", command, mode_file;
    unsigned timeout = 0; // seconds; 0: none
    unsigned count = 1, every = 1000;
    std::string size, offset, length, file, view = "hex";
    std::optional<std::string> text;
    bool resize = false, settle = false, check = false;
    std::string pack_type, service_type, logic_id, package, root;
    bool ptn = false, no_ptn = false, quiet = false;
    bool hex = false, raw = false, base64 = false;
    std::string recipe, phase;
    std::string format = "perfetto", journal, trace, output, boards;
    std::optional<std::string> package_name, package_version;
};

class CommandLine
{
  public:
    using Action = std::function<Outcome(const Words &)>;
    using TalkingAction = std::function<Outcome(const Words &, const Talk &)>;

    explicit CommandLine(Request &request);

    CLI::App &app()
    {
        return app_;
    }
    Words &words()
    {
        return *words_;
    }

    // Adds a verb. Global options may also stand behind it.
    static CLI::App *add_verb(CLI::App &parent, const char *name, const char *help);
    static CLI::App *add_group(CLI::App &parent, const char *name, const char *help);
    void run(CLI::App *verb, Action action);
    void run_talking(CLI::App *verb, TalkingAction action);

    // A check tells in words what is wrong with a word.
    using Check = std::string (*)(const std::string &);
    static CLI::Option *may(CLI::App *verb, const char *name, std::string &word, const char *help,
                            Check check);
    static void need(CLI::App *verb, const char *name, std::string &word, const char *help, Check check);

  private:
    Request &request_;
    std::shared_ptr<Words> words_ = std::make_shared<Words>(); // outlives the parser, for the action
    CLI::App app_{"Asks the board that it runs on, through the boot driver library.", "moxctl"};
};

void add_board_verbs(CommandLine &line);
void add_reset_verbs(CommandLine &line);
void add_store_verbs(CommandLine &line);
void add_install_verbs(CommandLine &line);
void add_trust_verbs(CommandLine &line);
void add_picture_verbs(CommandLine &line);

} // namespace moxctl
