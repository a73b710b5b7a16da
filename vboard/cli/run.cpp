// SPDX-License-Identifier: Apache-2.0
// vboard run: a board for one command.
#include "cli/board_options.hpp"
#include "cli/command.hpp"
#include "cli/conversation.hpp"
#include "cli/verbs.hpp"
#include "launcher/program.hpp"

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <fstream>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace vboard::cli
{

namespace
{

struct Options {
    BoardOptions board;
    std::string log;
    bool show_log = false;
};

void add_options(CLI::App &app, Options &options)
{
    add_board_options(app, options.board);
    app.add_option("--state", options.board.state,
                   "keep the board in this directory (default: a temporary one)");
    app.add_option("--log", options.log, "afterwards, write the conversation with the driver to this file");
    app.add_flag("--show-log", options.show_log, "afterwards, show it on standard error");
}

volatile sig_atomic_t board_process_id = 0;

// The terminal's signals reach the program directly and are its own business; others are handed on.
void hand_on(int signal)
{
    if (board_process_id > 0 && (signal == SIGTERM || signal == SIGHUP))
        kill(board_process_id, signal);
}

int run_board(Prepared &prepared, const std::vector<std::string> &command)
{
    // The board ends with this process, whatever ends it, and takes the program with it.
    prctl(PR_SET_PDEATHSIG, SIGTERM);
    try {
        return run_for_program(prepared.state(), prepared.plan(), [&] {
            set_board_environment(prepared.state().directory());
            return exec_program(command);
        });
    } catch (const std::exception &error) {
        std::fprintf(stderr, "vboard: %s\n", error.what());
    }
    return exit_launch_failed;
}

int wait_for(pid_t child)
{
    int status = 0;
    while (waitpid(child, &status, 0) < 0)
        if (errno != EINTR)
            return exit_launch_failed;
    return exit_status(status);
}

int start(const Options &options, const Call &call)
{
    Prepared prepared(options.board, true);
    if (const auto program = find_program(call.command.front()); !program.empty())
        prepared.keep_reachable(program);
    std::ofstream log;
    if (!options.log.empty()) {
        log.open(options.log);
        if (!log)
            throw std::runtime_error("cannot write " + options.log);
    }
    const std::vector<std::string> command = runnable(call.command);
    for (const int signal : {SIGINT, SIGQUIT, SIGTERM, SIGHUP})
        std::signal(signal, hand_on);
    std::fflush(nullptr);
    const pid_t child = fork();
    if (child < 0)
        throw std::runtime_error("cannot start a process for the board");
    if (child == 0)
        _exit(run_board(prepared, command));
    board_process_id = child;
    const int status = wait_for(child);

    if (log.is_open() || options.show_log) {
        const std::string text = conversation(prepared.state().directory());
        log << text;
        if (options.show_log)
            std::fputs(text.c_str(), stderr);
    }
    return status;
}

int run(const Options &options, const Call &call)
{
    try {
        return start(options, call);
    } catch (const UsageError &) {
        throw;
    } catch (const std::exception &error) {
        std::fprintf(stderr, "vboard: %s\n", error.what());
    }
    return exit_launch_failed;
}

} // namespace

void add_run(CLI::App &app, Call &call)
{
    add_verb<Options>(app, call, "run",
                      "Run a command on a board of its own: vboard run --board NAME -- COMMAND", add_options,
                      run, true);
}

} // namespace vboard::cli
