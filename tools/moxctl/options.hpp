// SPDX-License-Identifier: Apache-2.0
// The command line.
#pragma once

#include "facts.hpp"
#include "talk.hpp"

#include <functional>
#include <string>

namespace moxctl
{

constexpr int exit_done = 0;
constexpr int exit_failed = 1;
constexpr int exit_usage = 2;

// What a command line asks for: a verb to run, or (no action) a text to print and the status to end with.
struct Request {
    bool json = false;
    bool verbose = false;
    std::function<Outcome(const Talk &)> action;
    int status = exit_done;
    std::string out;
    std::string err;
};

Request parse(int argc, char **argv);

} // namespace moxctl
