// SPDX-License-Identifier: Apache-2.0
// The emulator, with a machine in it.
#pragma once

#include "machine/process.hpp"

#include <chrono>
#include <filesystem>
#include <string>

namespace vboard::machine
{

struct Setting {
    std::filesystem::path disk, share;
    std::filesystem::path console; // what the machine prints goes there; empty: to the terminal
    std::string board;
    bool job = false; // what is on the share is run; otherwise there is a shell
    unsigned cycles = 1;
};

Words command_line(const Setting &setting);

// Runs from its making on. Its end is a power cut, unless the machine has switched itself off.
class Emulator
{
  public:
    explicit Emulator(const Setting &setting);
    ~Emulator();
    Emulator(const Emulator &) = delete;
    Emulator &operator=(const Emulator &) = delete;

    bool runs();
    // Whether it has ended by itself within the time.
    bool ends_within(std::chrono::milliseconds limit);
    // Takes the power away: what the machine has not written to its disk is lost.
    void cut();

  private:
    pid_t process_;
};

} // namespace vboard::machine
