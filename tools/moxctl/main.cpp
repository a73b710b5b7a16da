// SPDX-License-Identifier: Apache-2.0
#include "console.hpp"
#include "options.hpp"
#include "output.hpp"

#include <csignal>
#include <cstring>
#include <exception>

namespace
{

using namespace moxctl;

void complain(const Console &console, const std::string &words)
{
    (void)console.err("moxctl: " + words + "\n"); // there is nobody else to tell
}

// A result that did not reach its reader is a failure.
int print(const Console &console, const std::string &text, int status)
{
    const int error = console.out(text);
    if (error == 0)
        return status;
    complain(console, std::string("cannot write the result: ") + std::strerror(error));
    return exit_failed;
}

Talk talk_through(const Console &console, bool json)
{
    const auto tell = [&console, json](const Outcome &outcome) {
        return print(console, json ? as_json_line(outcome) : as_text(outcome), exit_done) == exit_done;
    };
    // What a program prints must not come between the objects.
    return {tell, json ? console.err_fd() : console.out_fd(), console.err_fd()};
}

int run(const Console &console, const Request &request)
{
    const Outcome outcome = request.action(talk_through(console, request.json));
    int status = exit_done;
    if (!outcome.error.empty()) {
        complain(console, outcome.error);
        status = exit_failed;
    }
    return print(console, request.json ? as_json(outcome) : as_text(outcome), status);
}

} // namespace

int main(int argc, char **argv)
{
    Console console;
    std::signal(SIGPIPE, SIG_IGN); // a reader that has gone is told by its status, like any other failure
    try {
        const Request request = parse(argc, argv);
        if (!request.action) {
            (void)console.err(request.err);
            return print(console, request.out, request.status);
        }
        console.redirect_library(request.verbose);
        return run(console, request);
    } catch (const std::exception &error) {
        complain(console, error.what());
    }
    return exit_failed;
}
