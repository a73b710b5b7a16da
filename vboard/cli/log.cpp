// SPDX-License-Identifier: Apache-2.0
// vboard log: the conversation between programs and the driver.
#include "cli/board_options.hpp"
#include "cli/conversation.hpp"
#include "cli/verbs.hpp"

#include <chrono>
#include <cstdio>
#include <fstream>
#include <thread>

namespace vboard::cli
{

namespace
{

struct Options {
    std::string state;
    bool json = false;
    bool follow = false;
};

void add_options(Arguments line, Options &options)
{
    add_state_option(line, options.state);
    line.flag("--json", options.json, "one JSON object a line");
    line.flag("-f,--follow", options.follow, "go on with what comes, until interrupted");
}

// Prints the whole lines that the file has beyond what was read before. What has no end yet waits for it,
// unless nothing more is to be expected.
void print_new(std::ifstream &file, std::string &rest, const Options &options)
{
    file.clear();
    char part[4096];
    while (file.read(part, sizeof part), file.gcount() > 0)
        rest.append(part, static_cast<std::size_t>(file.gcount()));
    if (!options.follow && !rest.empty() && rest.back() != '\n')
        rest.push_back('\n');
    std::size_t start = 0;
    for (std::size_t end; (end = rest.find('\n', start)) != std::string::npos; start = end + 1)
        std::printf("%s\n", journal_line(rest.substr(start, end - start), options.json).c_str());
    rest.erase(0, start);
    std::fflush(stdout);
}

int log(const Options &options, const Call &)
{
    const std::filesystem::path journal = state_directory(options.state) / "journal.jsonl";
    std::ifstream file(journal, std::ios::binary);
    if (!file)
        throw std::runtime_error("there is no journal " + journal.string());
    std::string rest;
    print_new(file, rest, options);
    while (options.follow) {
        if (std::ferror(stdout))
            return failed;
        std::this_thread::sleep_for(std::chrono::milliseconds(100));
        print_new(file, rest, options);
    }
    return done;
}

} // namespace

void add_log(Arguments line, Call &call)
{
    add_verb<Options>(line, call, "log", "Show what programs asked the driver and what it answered",
                      add_options, log);
}

} // namespace vboard::cli
