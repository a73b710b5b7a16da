// SPDX-License-Identifier: Apache-2.0
// vboard up, exec, down, status: a board that stays.
#include "cli/board_options.hpp"
#include "cli/command.hpp"
#include "cli/devices.hpp"
#include "cli/places.hpp"
#include "cli/verbs.hpp"
#include "daemon/background.hpp"
#include "daemon/control.hpp"
#include "launcher/namespace.hpp"
#include "launcher/program.hpp"

#include <cstdio>
#include <unistd.h>

namespace vboard::cli
{

namespace fs = std::filesystem;

namespace
{

struct StateOptions {
    std::string state;
    bool json = false;
};

void add_state_options(Arguments line, StateOptions &options)
{
    add_state_option(line, options.state);
}

void add_status_options(Arguments line, StateOptions &options)
{
    add_state_option(line, options.state);
    line.flag("--json", options.json, "as JSON");
}

struct UpOptions {
    BoardOptions board;
    bool cuse = false;
};

void add_up_options(Arguments line, UpOptions &options)
{
    add_board_options(line, options.board);
    add_state_option(line, options.board.state);
    line.flag(
        "--cuse", options.cuse,
        "make the board's devices character devices of this machine (takes a kernel with CUSE, and root)");
}

int up(const UpOptions &options, const Call &)
{
    const fs::path state = options.board.state.empty() ? default_state() : fs::path(options.board.state);
    if (options.cuse)
        return up_as_devices(options.board, state);
    Prepared prepared(options.board, state);
    prepared.keep_reachable(fs::current_path()); // "vboard exec" comes from there, as a rule
    stay_in_background(prepared.state().directory() / "daemon.log", [&](const std::function<void()> &ready) {
        return run_until_down(enter_own_namespace(), prepared.state(), prepared.plan(), ready);
    });
    return done;
}

int down(const StateOptions &options, const Call &)
{
    const fs::path directory = state_directory(options.state);
    ask_board(directory, {{"do", "down"}});
    wait_until_down(directory);
    return done;
}

std::string last_reset(const nlohmann::json &status)
{
    const nlohmann::json &last = status.at("last_reset");
    return last.is_null() ? "" : " since power on; the last thing was a " + last.get<std::string>();
}

int status(const StateOptions &options, const Call &)
{
    const nlohmann::json answer = ask_board(state_directory(options.state), {{"do", "status"}});
    if (options.json) {
        std::printf("%s\n", answer.dump(2).c_str());
        return done;
    }
    std::printf("board    %s (%s)\n", answer.at("board").get<std::string>().c_str(),
                answer.at("description").get<std::string>().c_str());
    std::printf("state    %s\n", answer.at("state").get<std::string>().c_str());
    std::printf("process  %d\n", answer.at("pid").get<int>());
    std::printf("resets   %u%s\n", answer.at("resets").get<unsigned>(), last_reset(answer).c_str());
    std::printf("events   %zu\n", answer.at("events").get<std::size_t>());
    std::printf("faults   %zu\n", answer.at("faults").get<std::size_t>());
    if (const nlohmann::json &crl = answer.at("crl_bytes"); !crl.is_null())
        std::printf("crl      %zu bytes\n", crl.get<std::size_t>());
    std::printf("devices ");
    for (const nlohmann::json &device : answer.at("devices"))
        std::printf(" %s", device.get<std::string>().c_str());
    std::printf("\n");
    return done;
}

int execute(const StateOptions &options, const Call &call)
{
    try {
        const fs::path state = state_directory(options.state);
        const fs::path directory = fs::current_path();
        const std::vector<std::string> command = runnable(call.command);
        if (ask_board(state, {{"do", "status"}}).at("front") == "cuse")
            throw std::runtime_error("the board's devices are this machine's own: start " + command.front() +
                                     " like any other program");
        join_namespaces(board_process(state));
        if (chdir(directory.c_str()) != 0)
            throw std::runtime_error("the working directory " + directory.string() +
                                     " is out of reach on the board; start it with --keep " +
                                     directory.string());
        set_board_environment(state);
        return exec_program(command);
    } catch (const std::exception &error) {
        std::fprintf(stderr, "vboard: %s\n", error.what());
    }
    return exit_launch_failed;
}

} // namespace

void add_up_and_down(Arguments line, Call &call)
{
    add_verb<UpOptions>(line, call, "up", "Start a board that stays", add_up_options, up);
    add_verb<StateOptions>(line, call, "exec",
                           "Run a command on the board that is up: vboard exec -- COMMAND", add_state_options,
                           execute, true);
    add_verb<StateOptions>(line, call, "down", "Switch the board off", add_state_options, down);
    add_verb<StateOptions>(line, call, "status", "Tell about the board that is up", add_status_options,
                           status);
}

} // namespace vboard::cli
