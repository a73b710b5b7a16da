// SPDX-License-Identifier: Apache-2.0
// vboard run: a board for one command.
#include "cli/board_options.hpp"
#include "cli/command.hpp"
#include "cli/conversation.hpp"
#include "cli/verbs.hpp"
#include "launcher/mounts.hpp"
#include "launcher/program.hpp"

#include <array>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace vboard::cli
{

namespace fs = std::filesystem;

namespace
{

struct Options {
    BoardOptions board;
    std::string log;
    bool show_log = false;
};

void add_options(Arguments line, Options &options)
{
    add_board_options(line, options.board);
    line.text("--state", options.board.state, "keep the board in this directory (default: a temporary one)");
    line.text("--log", options.log, "afterwards, write the conversation with the driver to this file");
    line.flag("--show-log", options.show_log, "afterwards, show it on standard error");
}

constexpr std::array handed_on{SIGINT, SIGQUIT, SIGTERM, SIGHUP};

volatile sig_atomic_t board_process_id = 0;

// The terminal's signals reach the program directly and are its own business; others are handed on.
void hand_on(int signal)
{
    if (board_process_id > 0 && (signal == SIGTERM || signal == SIGHUP))
        kill(board_process_id, signal);
}

// The directory of a board that nobody named. What it holds lies in memory, in the board's own namespace; so
// nothing but the empty directory can ever be left behind.
fs::path make_temporary()
{
    // Not in "/tmp" if possible: the board has one of its own, where the directory would show.
    for (std::string path : {"/var/tmp/vboard-XXXXXX", "/tmp/vboard-XXXXXX"})
        if (mkdtemp(path.data()))
            return path;
    throw std::runtime_error(std::string("cannot make a temporary directory: ") + std::strerror(errno));
}

int run_board(const Options &options, const std::vector<std::string> &command, const fs::path &temporary)
{
    const OwnNamespace proof = enter_own_namespace();
    if (!temporary.empty())
        Mounts(proof).memory("vboard-state", temporary, "mode=0755");
    Prepared prepared(options.board, temporary.empty() ? fs::path(options.board.state) : temporary);
    if (const fs::path program = find_program(command.front()); !program.empty())
        prepared.keep_reachable(program);
    std::ofstream log;
    if (!options.log.empty()) {
        log.open(options.log);
        if (!log)
            throw std::runtime_error("cannot write " + options.log);
    }
    const std::vector<std::string> whole = runnable(command);
    const int status = run_for_program(proof, prepared.state(), prepared.plan(), [&] {
        set_board_environment(prepared.state().directory());
        return exec_program(whole);
    });

    if (log.is_open() || options.show_log) {
        const std::string text = conversation(prepared.state().directory());
        log << text << std::flush;
        if (options.show_log)
            std::fputs(text.c_str(), stderr);
    }
    return status;
}

// The process of the board, from the fork on.
int board_main(const Options &options, const std::vector<std::string> &command, const fs::path &temporary)
{
    for (const int signal : handed_on)
        std::signal(signal, SIG_DFL);
    // The board ends with the process that the user started, whatever ends that, and takes the program with
    // it.
    prctl(PR_SET_PDEATHSIG, SIGTERM);
    try {
        return run_board(options, command, temporary);
    } catch (const UsageError &error) {
        std::fprintf(stderr, "vboard: %s\n", error.what());
        return usage;
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

int run(const Options &options, const Call &call)
{
    const fs::path temporary = options.board.state.empty() ? make_temporary() : fs::path();
    for (const int signal : handed_on)
        std::signal(signal, hand_on);
    std::fflush(nullptr);
    const pid_t child = fork();
    if (child < 0)
        throw std::runtime_error("cannot start a process for the board");
    if (child == 0)
        _exit(board_main(options, call.command, temporary));
    board_process_id = child;
    const int status = wait_for(child);
    if (!temporary.empty())
        rmdir(temporary.c_str());
    return status;
}

} // namespace

void add_run(Arguments line, Call &call)
{
    add_verb<Options>(line, call, "run",
                      "Run a command on a board of its own: vboard run --board NAME -- COMMAND", add_options,
                      run, true);
}

} // namespace vboard::cli
