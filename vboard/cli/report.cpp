// SPDX-License-Identifier: Apache-2.0
// vboard report: a board's life on one page.
#include "report/report.hpp"
#include "cli/board_options.hpp"
#include "cli/verbs.hpp"
#include "daemon/control.hpp"
#include "daemon/state.hpp"
#include "model/profile.hpp"

#include <chrono>
#include <cstdio>

namespace vboard::cli
{

namespace fs = std::filesystem;

namespace
{

struct Options {
    std::string state, output;
    bool json = false;
};

void add_options(Arguments line, Options &options)
{
    line.text("--state,DIRECTORY", options.state,
              "the board's directory (default: $VBOARD_STATE or ~/.local/state/vboard/default)");
    line.text("-o,--output", options.output, "write it to this file (default: standard output)");
    line.flag("--json", options.json, "the page's data, not the page");
}

bool is_running(const fs::path &state)
{
    try {
        ask_board(state, {{"do", "ready"}});
        return true;
    } catch (const std::exception &) {
        return false;
    }
}

// A page is there whole or not at all.
void deliver(const std::string &text, const std::string &output)
{
    if (!output.empty()) {
        replace_file(fs::absolute(output), text);
        return;
    }
    if (std::fwrite(text.data(), 1, text.size(), stdout) != text.size() || std::fflush(stdout) != 0)
        throw std::runtime_error("the page could not be written");
}

int report(const Options &options, const Call &)
{
    const fs::path state = state_directory(options.state);
    if (!fs::exists(state / "profile.toml"))
        throw std::runtime_error("there is no board in " + state.string() + ": it has no profile.toml");
    report::Subject subject;
    subject.state = state;
    subject.profile = load_profile(state / "profile.toml");
    subject.running = is_running(state);
    using namespace std::chrono;
    subject.now = duration<double>(system_clock::now().time_since_epoch()).count();
    const nlohmann::json facts = report::facts(subject);
    deliver(options.json ? facts.dump(2, ' ', false, nlohmann::json::error_handler_t::replace) + "\n"
                         : report::markup(facts),
            options.output);
    return done;
}

} // namespace

void add_report(Arguments line, Call &call)
{
    add_verb<Options>(
        line, call, "report",
        "Write a page of the board's life: boots, resets, driver traffic, faults, installations", add_options,
        report);
}

} // namespace vboard::cli
