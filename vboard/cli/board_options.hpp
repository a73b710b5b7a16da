// SPDX-License-Identifier: Apache-2.0
// Which board is meant, and everything that is found out about it before its process starts.
#pragma once

#include "cli/arguments.hpp"
#include "daemon/process.hpp"

#include <string>
#include <vector>

namespace vboard::cli
{

struct BoardOptions {
    std::string board, hard_type, state;
    std::vector<std::string> faults, keep;
};
void add_board_options(Arguments line, BoardOptions &options);

// The profile of the board that is asked for by name or file; empty: the state directory has one. Throws
// ProfileError when there is no such board.
std::filesystem::path profile_file(const std::filesystem::path &state, const std::string &board);

// A board's directory that is ready to start, and locked.
class Prepared
{
  public:
    // Throws std::runtime_error or UsageError.
    Prepared(const BoardOptions &options, const std::filesystem::path &directory);

    State &state()
    {
        return state_;
    }
    const BoardPlan &plan() const
    {
        return plan_;
    }
    void keep_reachable(const std::filesystem::path &path)
    {
        plan_.tree.keep.push_back(path);
    }

  private:
    BoardPlan plan_;
    State state_;
};

// The state directory that a verb on an existing board means.
void add_state_option(Arguments line, std::string &state);
std::filesystem::path state_directory(const std::string &option);

} // namespace vboard::cli
