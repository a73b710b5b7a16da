// SPDX-License-Identifier: Apache-2.0
// vboard reset, power-cut: what takes a board down and lets it come up again.
#include "cli/board_options.hpp"
#include "cli/verbs.hpp"
#include "daemon/control.hpp"

#include <cstdio>

namespace vboard::cli
{

namespace
{

struct Options {
    std::string state;
    bool cold = false;
};

void add_cut_options(Arguments line, Options &options)
{
    add_state_option(line, options.state);
}

void add_reset_options(Arguments line, Options &options)
{
    add_state_option(line, options.state);
    line.flag("--cold", options.cold, "a cold reset, also where the board can do a soft one");
}

int ask(const Options &options, const nlohmann::json &request)
{
    const nlohmann::json answer = ask_board(state_directory(options.state), request);
    std::printf("%s\n", answer.at("reset").get<std::string>().c_str());
    return done;
}

int reset(const Options &options, const Call &)
{
    return ask(options, {{"do", "reset"}, {"cold", options.cold}});
}

int cut(const Options &options, const Call &)
{
    return ask(options, {{"do", "power-cut"}});
}

} // namespace

void add_resets(Arguments line, Call &call)
{
    add_verb<Options>(line, call, "reset",
                      "Reset the board as its own reboot command does, and say which kind of reset it was",
                      add_reset_options, reset);
    add_verb<Options>(line, call, "power-cut",
                      "Take the board's power away and give it back: what is not in a file is lost",
                      add_cut_options, cut);
}

} // namespace vboard::cli
