// SPDX-License-Identifier: Apache-2.0
// vboard-devices: a board whose devices are this machine's character devices, for as long as it runs.
#include "cuse/service.hpp"
#include "daemon/background.hpp"
#include "daemon/own_profile.hpp"
#include "model/profile.hpp"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <cstdio>
#include <functional>
#include <stdexcept>
#include <string>

namespace
{

namespace fs = std::filesystem;

constexpr int failed = 1, usage = 2;

struct Options {
    std::string board, state, cause = "auto", bite, watchdog, mode = "0666";
    bool foreground = false;
};

int parse(int argc, char **argv, Options &options)
{
    CLI::App app(
        "Serves the devices of a virtual MOX board as character devices of this machine (CUSE). Says "
        "\"ready\" when all are there; \"vboard --state DIR\" talks to it then.",
        "vboard-devices");
    app.add_option("--board", options.board, "profile of the board (default: the one that the state has)");
    app.add_option("--state", options.state, "the board's directory: what of it lasts")->required();
    app.add_flag("--foreground", options.foreground, "stay in the foreground");
    app.add_option(
        "--reset", options.cause,
        "what took the board down last: auto, none, soft, cold, watchdog, power-cut (default: auto, "
        "which tells it from the state)");
    app.add_option("--bite", options.bite,
                   "command that resets the machine when the watchdog that is fed through items bites");
    app.add_option(
        "--watchdog", options.watchdog,
        "file of the machine's own watchdog: it is written 1 when a program switches the watchdog on "
        "through its item, 0 when off");
    app.add_option("--mode", options.mode, "permissions of the devices, in octal digits (default: 0666)");
    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError &error) {
        return app.exit(error) == 0 ? 0 : usage;
    }
    return -1;
}

unsigned permissions(const std::string &text)
{
    if (text.empty() || text.size() > 4 || text.find_first_not_of("01234567") != std::string::npos)
        throw std::runtime_error("\"" + text + "\" are no permissions");
    return static_cast<unsigned>(std::stoul(text, nullptr, 8));
}

// The board's process, from here to its end. `ready` is called once.
void serve(const Options &options, vboard::State &state, const vboard::Profile &profile,
           const std::function<void()> &ready)
{
    vboard::CuseService service(
        state, profile,
        {permissions(options.mode), vboard::cause_by_name(options.cause), options.bite, options.watchdog});
    ready();
    service.serve();
}

void say_ready()
{
    std::printf("ready\n");
    std::fflush(stdout);
}

void run(const Options &options)
{
    permissions(options.mode);
    vboard::cause_by_name(options.cause);
    const fs::path file = options.board.empty() ? fs::path() : vboard::find_profile(options.board, {});
    vboard::check_cuse(); // before anything is written
    vboard::State state(options.state);
    const vboard::Profile profile = vboard::settle_profile(state, file);
    if (options.foreground) {
        serve(options, state, profile, say_ready);
        return;
    }
    vboard::stay_in_background(state.directory() / "daemon.log", [&](const std::function<void()> &ready) {
        serve(options, state, profile, ready);
        return 0;
    });
    say_ready();
}

} // namespace

int main(int argc, char **argv)
{
    try {
        Options options;
        const int status = parse(argc, argv, options);
        if (status < 0)
            run(options);
        return std::max(status, 0);
    } catch (const std::exception &error) {
        std::fprintf(stderr, "vboard-devices: %s\n", error.what());
    }
    return failed;
}
