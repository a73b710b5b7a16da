// SPDX-License-Identifier: Apache-2.0
// The process of a running board: its file tree, its devices, its records, and the program that it was made
// for.
#pragma once

#include "daemon/state.hpp"
#include "launcher/namespace.hpp"
#include "launcher/tree.hpp"
#include "model/board.hpp"

#include <functional>
#include <string>
#include <vector>

namespace vboard
{

struct BoardPlan {
    Profile profile;
    std::vector<Fault> faults;
    TreePlan tree;                        // its state is the board's
    std::vector<std::string> environment; // of the commands that the board's root proxy runs
};

// The exit status for a program that a reset of its board ended, which it does as SIGKILL does.
constexpr int exit_by_reset = 128 + 9;

// Both run in a process of their own, which has one thread when they are called, and return its exit status.

// Runs the board while `program`, called in a child, runs; its exit status is the result. A reset of the
// board ends it.
int run_for_program(const OwnNamespace &proof, State &state, const BoardPlan &plan,
                    const std::function<int()> &program);

// Runs the board until it is told to go down. `ready` is called when programs can use it.
int run_until_down(const OwnNamespace &proof, State &state, const BoardPlan &plan,
                   const std::function<void()> &ready);

} // namespace vboard
