// SPDX-License-Identifier: Apache-2.0
#include "cli/board_options.hpp"

#include "cli/fault_options.hpp"
#include "cli/numbers.hpp"
#include "cli/places.hpp"
#include "cli/verbs.hpp"
#include "launcher/tree.hpp"
#include "model/items.hpp"
#include "model/profile.hpp"

#include <array>
#include <cerrno>
#include <cstring>
#include <fstream>
#include <sstream>
#include <stdlib.h>

namespace vboard::cli
{

namespace fs = std::filesystem;

namespace
{

constexpr const char *default_board = "qs3520-mpu";

fs::path make_temporary()
{
    // Not in "/tmp" if possible: the board has one of its own, where the directory would show.
    for (std::string path : {"/var/tmp/vboard-XXXXXX", "/tmp/vboard-XXXXXX"})
        if (mkdtemp(path.data()))
            return path;
    throw std::runtime_error(std::string("cannot make a temporary state directory: ") + std::strerror(errno));
}

std::string content(const fs::path &path)
{
    std::ifstream file(path, std::ios::binary);
    std::ostringstream text;
    text << file.rdbuf();
    if (!file)
        throw std::runtime_error("cannot read " + path.string());
    return text.str();
}

// Puts the profile into the state directory, which stays with the board that it was made for.
void settle_profile(const State &state, const std::string &board)
{
    const bool existing = fs::exists(state.profile());
    if (existing && board.empty())
        return;
    const std::string text =
        content(find_profile(board.empty() ? default_board : board, std::array{boards_directory()}));
    if (!existing)
        replace_file(state.profile(), text);
    else if (content(state.profile()) != text)
        throw std::runtime_error(state.directory().string() + " belongs to another board than " + board +
                                 "; give another --state, or none of --board");
}

} // namespace

void add_board_options(CLI::App &app, BoardOptions &options)
{
    app.add_option(
        "--board", options.board,
        "name of a board (see \"vboard boards\") or a profile file (default: the state's own, or " +
            std::string(default_board) + ")");
    app.add_option("--hard-type", options.hard_type, "make it a board of this hard type");
    app.add_option("--fault", options.faults,
                   "planned fault, as the words after \"fault add\" in one argument; may be repeated")
        ->take_all();
    app.add_option(
           "--keep", options.keep,
           "path of the host to keep reachable where the board has a directory of its own; may be repeated")
        ->take_all();
}

Prepared::Prepared(const BoardOptions &options, bool temporary)
{
    for (const std::string &fault : options.faults)
        plan_.faults.push_back(parse_fault(fault));
    std::optional<std::uint32_t> hard_type;
    if (!options.hard_type.empty())
        hard_type = number(options.hard_type, "hard type");
    for (const std::string &path : options.keep)
        plan_.keep.push_back(fs::canonical(path));
    plan_.keep.push_back(own_binary());
    plan_.shims = shims();

    fs::path directory = options.state;
    if (directory.empty())
        directory = temporary ? temporary_ = make_temporary() : default_state();
    try {
        state_ = std::make_unique<State>(directory);
        settle_profile(*state_, options.board);
        plan_.profile = load_profile(state_->profile());
        if (hard_type)
            state_->keep_item("/dev/board0", item_code::hard_type, hard_type);
        prepare_tree(state_->directory());
    } catch (...) {
        if (!temporary_.empty())
            fs::remove_all(temporary_);
        throw;
    }
}

Prepared::~Prepared()
{
    std::error_code error; // a program that still runs may hold on to something
    if (!temporary_.empty())
        fs::remove_all(temporary_, error);
}

void add_state_option(CLI::App &app, std::string &state)
{
    app.add_option("--state", state,
                   "the board's directory (default: $VBOARD_STATE or ~/.local/state/vboard/default)");
}

fs::path state_directory(const std::string &option)
{
    const fs::path directory = option.empty() ? default_state() : fs::path(option);
    std::error_code error;
    const fs::path real = fs::canonical(directory, error);
    if (error)
        throw std::runtime_error("there is no board in " + directory.string() + ": " + error.message());
    return real;
}

} // namespace vboard::cli
