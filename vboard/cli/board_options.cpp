// SPDX-License-Identifier: Apache-2.0
#include "cli/board_options.hpp"

#include "cli/command.hpp"
#include "cli/fault_options.hpp"
#include "cli/numbers.hpp"
#include "cli/places.hpp"
#include "cli/verbs.hpp"
#include "daemon/own_profile.hpp"
#include "launcher/tree.hpp"
#include "model/items.hpp"
#include "model/profile.hpp"

#include <array>

namespace vboard::cli
{

namespace fs = std::filesystem;

namespace
{

constexpr const char *default_board = "qs3520-mpu";

// What is wrong with the command line is found before the directory is touched.
BoardPlan plan_of(const BoardOptions &options)
{
    BoardPlan plan;
    for (const std::string &fault : options.faults)
        plan.faults.push_back(parse_fault(fault));
    if (!options.hard_type.empty())
        number(options.hard_type, "hard type");
    for (const std::string &path : options.keep)
        plan.tree.keep.push_back(fs::canonical(path));
    plan.tree.keep.push_back(own_binary());
    plan.tree.libraries = libraries();
    plan.tree.reboot = reboot_program();
    return plan;
}

} // namespace

void add_board_options(Arguments line, BoardOptions &options)
{
    line.text("--board", options.board,
              "name of a board (see \"vboard boards\") or a profile file (default: the state's own, or " +
                  std::string(default_board) + ")");
    line.text("--hard-type", options.hard_type, "make it a board of this hard type");
    line.texts("--fault", options.faults,
               "planned fault, as the words after \"fault add\" in one argument; may be repeated");
    line.texts(
        "--keep", options.keep,
        "path of the host to keep reachable where the board has a directory of its own; may be repeated");
}

fs::path profile_file(const fs::path &state, const std::string &board)
{
    if (board.empty() && fs::exists(state / "profile.toml"))
        return {};
    return find_profile(board.empty() ? default_board : board, std::array{boards_directory()});
}

Prepared::Prepared(const BoardOptions &options, const fs::path &directory)
    : plan_(plan_of(options)), state_(directory)
{
    plan_.profile = settle_profile(state_, profile_file(state_.directory(), options.board));
    if (!options.hard_type.empty())
        state_.keep_item("/dev/board0", item_code::hard_type, number(options.hard_type, "hard type"));
    plan_.environment = service_environment(state_.directory());
    prepare_tree(state_.directory());
}

void add_state_option(Arguments line, std::string &state)
{
    line.text("--state", state,
              "the board's directory (default: $VBOARD_STATE or ~/.local/state/vboard/default)");
}

fs::path state_directory(const std::string &option)
{
    const fs::path directory = option.empty() ? default_state() : fs::path(option);
    std::error_code error;
    fs::path real = fs::canonical(directory, error);
    if (error)
        throw std::runtime_error("there is no board in " + directory.string() + ": " + error.message());
    return real;
}

} // namespace vboard::cli
