// SPDX-License-Identifier: Apache-2.0
// vboard machine build, boot, run, test: the board as a whole machine in a system emulator.
#include "machine/machine.hpp"

#include "cli/verbs.hpp"
#include "launcher/program.hpp"
#include "machine/builder.hpp"
#include "machine/places.hpp"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <unistd.h>

namespace vboard::cli
{

namespace fs = std::filesystem;
using machine::Outcome;

namespace
{

constexpr std::uintmax_t largest_archive = 16ULL * 1024 * 1024;
constexpr int exit_time_over = 124;
constexpr int exit_reset = 137; // as "vboard run" ends when its board is reset

struct NoOptions {
};

struct Options {
    std::string board = "qs3540-mpu", directory, results;
    std::vector<std::string> put, programs;
    unsigned cycles = 1, seconds = 120;
};

// A machine's directory: the one named, or one that is gone afterwards.
class Directory
{
  public:
    explicit Directory(const std::string &named) : path_(named), temporary_(named.empty())
    {
        std::string made = "/var/tmp/vboard-machine-XXXXXX";
        if (!temporary_)
            return;
        if (!mkdtemp(made.data()))
            throw std::runtime_error(std::string("cannot make a temporary directory: ") +
                                     std::strerror(errno));
        path_ = made;
    }
    ~Directory()
    {
        std::error_code error;
        if (temporary_)
            fs::remove_all(path_, error);
    }
    Directory(const Directory &) = delete;
    Directory &operator=(const Directory &) = delete;
    const fs::path &path() const
    {
        return path_;
    }

  private:
    fs::path path_;
    bool temporary_;
};

void add_no_options(Arguments, NoOptions &) {}

void add_boot_options(Arguments line, Options &options)
{
    line.text("--board", options.board, "name of a board (see \"vboard boards\")").shows_default();
    line.text("--dir", options.directory,
              "keep the machine's disk and what it shares in this directory (default: a temporary one)");
    line.texts("--put", options.put, "file that the machine finds in /share; may be repeated");
}

void add_run_options(Arguments line, Options &options)
{
    add_boot_options(line, options);
    line.number(
        "--cycles", options.cycles, 1, 100,
        "how often the machine may start; the command runs after each, and $MACHINE_START counts them");
    line.number("--timeout", options.seconds, 1, 3600, "seconds until the power is taken away");
}

void add_test_options(Arguments line, Options &options)
{
    add_run_options(line, options);
    line.texts("programs", options.programs,
               "ARM programs of the host (default: those that lie on the machine)");
    line.text("--results", options.results, "folder for the results as XML (default: none is kept)");
}

int build_machine(const NoOptions &, const Call &)
{
    const machine::Built built = machine::build();
    for (const std::string &one : built.lacking)
        std::fprintf(stderr, "vboard: left out: %s\n", one.c_str());
    std::printf("kernel   %s\n", machine::fetched_kernel().release.c_str());
    std::printf("files    %s, %.1f MB\n", machine::initial_files().c_str(),
                static_cast<double>(built.size) / (1024 * 1024));
    if (built.size <= largest_archive)
        return done;
    std::fprintf(stderr, "vboard: the machine's files take more than 16 MB\n");
    return failed;
}

int boot(const Options &options, const Call &)
{
    const Directory directory(options.directory);
    machine::Machine board(directory.path(), options.board);
    for (const std::string &file : options.put)
        board.share().put(file);
    std::fprintf(stderr,
                 "vboard: starting; \"exit\" switches the machine off, Ctrl-A X takes its power away\n");
    return board.shell();
}

int status_of(const Outcome &outcome, const machine::Machine &board, const Options &options)
{
    switch (outcome.how) {
    case Outcome::exited:
        return outcome.status;
    case Outcome::reset:
        std::fprintf(stderr, "vboard: the machine was reset (%zu starts)\n", outcome.boots.size());
        return exit_reset;
    case Outcome::timed_out:
        std::fprintf(stderr, "vboard: not done within %u seconds; the power was taken away\n",
                     options.seconds);
        return exit_time_over;
    default:
        break;
    }
    std::fprintf(stderr, "vboard: the machine went away; the end of what it said:\n%s\n",
                 board.last_words().c_str());
    return exit_launch_failed;
}

int run_on_machine(const Options &options, const Call &call)
{
    const Directory directory(options.directory);
    machine::Machine board(directory.path(), options.board);
    for (const std::string &file : options.put)
        board.share().put(file);
    const Outcome outcome =
        board.run(machine::quoted(call.command), {options.cycles, std::chrono::seconds(options.seconds)});
    std::fputs(outcome.output.c_str(), stdout);
    std::fputs(outcome.errors.c_str(), stderr);
    return status_of(outcome, board, options);
}

int test_on_machine(const Options &options, const Call &)
{
    const Directory directory(options.directory);
    machine::Machine board(directory.path(), options.board);
    std::string script = "ended=0\n";
    for (const std::string &file : options.put)
        board.share().put(file);
    std::vector<std::string> programs;
    for (const std::string &program : options.programs) {
        board.share().put(program);
        programs.push_back("/share/" + fs::path(program).filename().string());
    }
    if (programs.empty())
        programs.emplace_back("/usr/bin/contract_test");
    script += "mkdir -p /share/results\n";
    for (const std::string &program : programs)
        script += machine::quoted({program}) + " --gtest_output=xml:" +
                  machine::quoted({"/share/results/" + fs::path(program).filename().string() + ".xml"}) +
                  " || ended=1\n";
    script += "exit $ended";
    const Outcome outcome = board.run(script, {options.cycles, std::chrono::seconds(options.seconds)});
    std::fputs(outcome.output.c_str(), stdout);
    std::fputs(outcome.errors.c_str(), stderr);
    if (!options.results.empty()) {
        fs::create_directories(options.results);
        for (const char *name : {"journal.jsonl", "trace.jsonl", "syslog"})
            if (board.share().has(name))
                fs::copy_file(board.share().directory() / name, fs::path(options.results) / name,
                              fs::copy_options::overwrite_existing);
        if (board.share().has("results"))
            fs::copy(board.share().directory() / "results", options.results,
                     fs::copy_options::overwrite_existing | fs::copy_options::recursive);
    }
    return status_of(outcome, board, options);
}

} // namespace

void add_machine(Arguments line, Call &call)
{
    Arguments verbs = line.group("machine", "The board as a whole machine in a system emulator");
    add_verb<NoOptions>(verbs, call, "build",
                        "Put the machine together: kernel, library, tools, start-up files", add_no_options,
                        build_machine);
    add_verb<Options>(verbs, call, "boot", "Start it, with a shell on the board", add_boot_options, boot);
    add_verb<Options>(verbs, call, "run", "Run a command on it: vboard machine run -- COMMAND",
                      add_run_options, run_on_machine, true);
    add_verb<Options>(verbs, call, "test", "Run test programs on it", add_test_options, test_on_machine);
}

} // namespace vboard::cli
