// SPDX-License-Identifier: Apache-2.0
// The process of a running board: its file tree, its devices, its records, and the program that it was made
// for.
#pragma once

#include "daemon/seed.hpp"
#include "daemon/state.hpp"
#include "launcher/namespace.hpp"
#include "model/board.hpp"

#include <filesystem>
#include <functional>
#include <vector>

namespace vboard
{

struct BoardPlan {
    Profile profile;
    std::vector<Fault> faults;
    std::vector<std::filesystem::path> keep; // see TreePlan
    std::vector<Shim> shims;
};

// Both run in a process of their own, which has one thread when they are called, and return its exit status.

// Runs the board while `program`, called in a child, runs; its exit status is the result.
int run_for_program(const OwnNamespace &proof, State &state, const BoardPlan &plan,
                    const std::function<int()> &program);

// Runs the board until it is told to go down. `ready` is called when programs can use it.
int run_until_down(const OwnNamespace &proof, State &state, const BoardPlan &plan,
                   const std::function<void()> &ready);

} // namespace vboard
