// SPDX-License-Identifier: Apache-2.0
// What the driver holds, written down as it changes: a board whose devices are the machine's own goes down
// with the machine, and what its driver keeps over a reset has to be there afterwards.
#pragma once

#include "model/board.hpp"

#include <condition_variable>
#include <thread>

namespace vboard
{

// What lies in a board's directory.
struct KeptDriver {
    DriverState state;
    std::string boot;   // the kernel's name for the time between two starts of the machine
    bool ended = false; // the board was switched off, and not torn away
};

// Nothing when the board was never up. Throws std::runtime_error for a damaged file.
std::optional<KeptDriver> kept_driver(const std::filesystem::path &directory);

std::string boot_id(); // empty when the kernel does not tell

class DriverKeeper
{
  public:
    // Writes down what the board holds now.
    DriverKeeper(const Board &board, std::filesystem::path directory);
    ~DriverKeeper();
    DriverKeeper(const DriverKeeper &) = delete;
    DriverKeeper &operator=(const DriverKeeper &) = delete;

    // Something has changed. It is written soon: many changes at once are one.
    void changed();
    // The same, and returns when it is on the disk.
    void keep();
    // The board is switched off.
    void end();

  private:
    void run();
    void write(bool ended) const;

    const Board &board_;
    std::filesystem::path directory_;
    std::mutex mutex_; // guards what follows
    std::condition_variable wake_, written_;
    std::uint64_t changes_ = 0, kept_ = 0;
    bool hurry_ = false, stop_ = false;
    std::thread thread_;
};

} // namespace vboard
