// SPDX-License-Identifier: Apache-2.0
#include "machine/machine.hpp"

#include "machine/disk.hpp"
#include "machine/places.hpp"

#include <fstream>
#include <iterator>
#include <stdexcept>
#include <thread>
#include <utility>

namespace vboard::machine
{

namespace fs = std::filesystem;

namespace
{

fs::path made(const fs::path &directory)
{
    if (const std::string why = why_not_startable(); !why.empty())
        throw std::runtime_error(why);
    fs::create_directories(directory);
    return fs::canonical(directory);
}

} // namespace

Machine::Machine(const fs::path &directory, std::string board)
    : directory_(made(directory)), board_(std::move(board)), share_(directory_ / "share")
{
    if (!fs::exists(boards_directory() / (board_ + ".toml")))
        throw std::runtime_error("there is no board \"" + board_ + "\"; \"vboard boards\" lists them");
    make_disk(directory_ / "disk.img");
}

fs::path Machine::console() const
{
    return directory_ / "console.log";
}

std::string Machine::last_words() const
{
    constexpr std::size_t most = 2000;
    std::string words;
    for (const fs::path &path : {directory_ / "emulator.log", console()}) {
        std::ifstream file(path, std::ios::binary);
        words.append(std::istreambuf_iterator<char>(file), {});
    }
    return words.size() > most ? words.substr(words.size() - most) : words;
}

Setting Machine::setting(bool job, unsigned cycles) const
{
    return {directory_ / "disk.img", share_.directory(), job ? console() : fs::path(), board_, job, cycles};
}

int Machine::shell()
{
    return run_at_terminal(command_line(setting(false, 1)));
}

Outcome Machine::run(const std::string &script, const Limits &limits)
{
    begin(script, limits.cycles);
    return end(limits.time);
}

void Machine::begin(const std::string &script, unsigned cycles)
{
    emulator_.reset();
    share_.place(script);
    emulator_.emplace(setting(true, cycles));
}

Outcome Machine::end(std::chrono::milliseconds limit)
{
    const bool ended = emulator_ && emulator_->ends_within(limit);
    emulator_.reset();
    Outcome outcome = share_.outcome();
    if (outcome.how == Outcome::lost && !ended)
        outcome.how = Outcome::timed_out;
    return outcome;
}

bool Machine::wait_for(const std::string &name, std::chrono::milliseconds limit)
{
    const auto end = std::chrono::steady_clock::now() + limit;
    while (!share_.has(name)) {
        if (std::chrono::steady_clock::now() > end || !emulator_ || !emulator_->runs())
            return false;
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
    return true;
}

void Machine::cut()
{
    emulator_.reset();
}

} // namespace vboard::machine
