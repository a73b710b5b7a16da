// SPDX-License-Identifier: Apache-2.0
// A machine in a directory: its disk, which stays, and the folder that it shares with the host.
#pragma once

#include "machine/emulator.hpp"
#include "machine/share.hpp"

#include <optional>

namespace vboard::machine
{

struct Limits {
    unsigned cycles = 1; // starts that a job may take
    std::chrono::seconds time{120};
};

class Machine
{
  public:
    // The directory is made when it is missing; a new board is made where it holds none.
    Machine(const std::filesystem::path &directory, std::string board);

    const Share &share() const
    {
        return share_;
    }
    std::filesystem::path console() const;
    // The end of what the machine, or the emulator, printed.
    std::string last_words() const;

    // A shell on the board, at this terminal. The exit status of the emulator.
    int shell();
    // Runs a script to its end.
    Outcome run(const std::string &script, const Limits &limits = {});
    // The same in pieces: between the two the host may do something.
    void begin(const std::string &script, unsigned cycles = 1);
    Outcome end(std::chrono::milliseconds limit);
    // Waits until the machine has put a file of this name on the share.
    bool wait_for(const std::string &name, std::chrono::milliseconds limit);
    // Takes the power away.
    void cut();

  private:
    Setting setting(bool job, unsigned cycles) const;
    std::filesystem::path directory_;
    std::string board_;
    Share share_;
    std::optional<Emulator> emulator_;
};

} // namespace vboard::machine
