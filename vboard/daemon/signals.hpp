// SPDX-License-Identifier: Apache-2.0
// What the board's main loop waits for besides sockets: signals, and the watchdog's periods.
#pragma once

#include "daemon/descriptor.hpp"

#include <csignal>

namespace vboard
{

// Signals come as something to read, so that the loop handles them in between. A program gets the old mask
// back.
class Signals
{
  public:
    Signals();
    int listener() const
    {
        return socket_.get();
    }
    int next() const; // 0: none
    void restore_mask() const;

  private:
    sigset_t before_{};
    Descriptor socket_;
};

// Readable once each period.
class Ticker
{
  public:
    explicit Ticker(unsigned period_ms);
    int listener() const
    {
        return timer_.get();
    }
    // Whether a period has passed. Several count for one: in time that the board's process did not get,
    // programs could not feed the watchdog either.
    bool take() const;
    void restart() const;

  private:
    unsigned period_ms_;
    Descriptor timer_;
};

} // namespace vboard
