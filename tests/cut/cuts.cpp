// SPDX-License-Identifier: Apache-2.0
// The whole sweep over one installation, board by board: vboard tree -- cuts [options] PROFILE...
#include "cut/installation.hpp"

#include <CLI/CLI.hpp>

#include <cstdio>

namespace
{

struct Words {
    std::vector<std::string> profiles;
    std::string program;
    std::string preload;
    bool verbose = false;
    cut::Options options;
};

// Whether there was no violation.
bool sweep_one(const std::string &board, const char *start, const cut::Tree &before,
               const cut::Subject &subject, const Words &words)
{
    const cut::Result result = cut::sweep(before, subject, words.options);
    std::printf("%-18s %-10s %8zu %8zu %8zu %8zu %8zu %10zu %8.1f\n", board.c_str(), start, result.changes,
                result.flushes, result.kills, result.power_cuts, result.states, result.violations.size(),
                result.seconds);
    constexpr std::size_t enough = 10;
    for (std::size_t i = 0; i < result.violations.size() && (words.verbose || i < enough); ++i)
        std::printf("  %s\n", result.violations[i].c_str());
    std::fflush(stdout);
    return result.violations.empty();
}

int sweep_all(const Words &words)
{
    std::printf("%-18s %-10s %8s %8s %8s %8s %8s %10s %8s\n", "board", "start", "changes", "flushes", "kills",
                "power", "states", "violations", "seconds");
    bool good = true;
    for (const std::string &profile : words.profiles) {
        const cut::Installation installation(profile);
        const cut::Subject subject = words.program.empty()
                                         ? installation.subject()
                                         : installation.subject(words.program, words.preload);
        std::string board = profile.substr(profile.rfind('/') + 1);
        board.resize(board.rfind(".toml"));
        good = sweep_one(board, "fresh", installation.fresh(), subject, words) && good;
        good = sweep_one(board, "installed", installation.installed(), subject, words) && good;
    }
    return good ? 0 : 1;
}

} // namespace

int main(int argc, char **argv)
{
    Words words;
    CLI::App app("Cuts an installation short after every change, by kills and by power cuts.");
    app.add_option("PROFILE", words.profiles, "boards, by their profiles' files")->required();
    app.add_option("--every", words.options.every, "only at each such change")->check(CLI::PositiveNumber);
    app.add_option("--first", words.options.first, "from this change on");
    app.add_option("--chances", words.options.chances, "random power cuts at each change");
    app.add_option("--seed", words.options.seed, "of the random ones");
    CLI::Option *preload = app.add_option("--preload", words.preload, "the rig as a library");
    app.add_option("--program", words.program, "install by this moxctl")->needs(preload);
    app.add_flag("--verbose", words.verbose, "print every violation");
    CLI11_PARSE(app, argc, argv);
    cut::must_be_on_a_board();
    try {
        return sweep_all(words);
    } catch (const std::exception &error) {
        std::fprintf(stderr, "cuts: %s\n", error.what());
        return 3;
    }
}
