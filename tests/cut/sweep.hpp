// SPDX-License-Identifier: Apache-2.0
// Cuts a program short after every system call that changes something on the board's storage, by a kill and
// by a power cut, and judges what is left and what a repetition makes of it.
#pragma once

#include "cut/rig.hpp"
#include "cut/tree.hpp"

#include <chrono>
#include <functional>
#include <string>
#include <vector>

namespace cut
{

struct Subject {
    // Runs in a child process, which ends with the result, 0 being success. Arms the rig with the plan, or
    // becomes a program that does.
    std::function<int(const Plan &plan)> run;
    // Whether a path must hold its file at every instant, and the new one for good once the program has
    // ended.
    std::function<bool(const std::string &path)> lasting = [](const std::string &) { return true; };
    // What a run leaves when it starts from `start`, given what it left the first time.
    std::function<Tree(const Tree &start, const Tree &first)> repeated = [](const Tree &, const Tree &first) {
        return first;
    };
};

struct Options {
    std::size_t every = 1; // cuts at each such change only, this one among them:
    std::size_t first = 0;
    unsigned chances = 3; // power cuts of which some of what was not flushed has arrived, at each
    std::uint32_t seed = 20240501;
    std::chrono::steady_clock::duration most = std::chrono::hours(24); // then it leaves off
};

struct Result {
    std::size_t changes = 0; // of a whole run
    std::size_t flushes = 0; // of them
    std::size_t kills = 0;
    std::size_t power_cuts = 0;
    std::size_t states = 0; // different ones among what the power cuts left
    // In words; those of one cut share their beginning.
    std::vector<std::string> violations;
    double seconds = 0;
    Tree after; // what a whole run leaves
};

// Starts from `before` each time. Throws std::runtime_error when the program fails or its record does not
// tell all that it did.
Result sweep(const Tree &before, const Subject &subject, const Options &options);

// A subject that is a function: the child runs it with the rig armed.
Subject function_subject(std::function<int()> function);

} // namespace cut
