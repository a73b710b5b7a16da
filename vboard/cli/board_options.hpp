// SPDX-License-Identifier: Apache-2.0
// Which board is meant, and everything that is found out about it before its process starts.
#pragma once

#include "daemon/process.hpp"

#include <CLI/CLI.hpp>

#include <memory>
#include <string>
#include <vector>

namespace vboard::cli
{

struct BoardOptions {
    std::string board, hard_type, state;
    std::vector<std::string> faults, keep;
};
void add_board_options(CLI::App &app, BoardOptions &options);

// A board's directory that is ready to start, and locked. A temporary one goes with this object.
class Prepared
{
  public:
    // With `temporary`, a state directory is made when none is named; otherwise the default one is used.
    // Throws std::runtime_error or UsageError.
    Prepared(const BoardOptions &options, bool temporary);
    ~Prepared();
    Prepared(const Prepared &) = delete;
    Prepared &operator=(const Prepared &) = delete;

    State &state()
    {
        return *state_;
    }
    const BoardPlan &plan() const
    {
        return plan_;
    }
    void keep_reachable(const std::filesystem::path &path)
    {
        plan_.keep.push_back(path);
    }

  private:
    std::filesystem::path temporary_;
    std::unique_ptr<State> state_;
    BoardPlan plan_;
};

// The state directory that a verb on an existing board means.
void add_state_option(CLI::App &app, std::string &state);
std::filesystem::path state_directory(const std::string &option);

} // namespace vboard::cli
