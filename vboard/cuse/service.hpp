// SPDX-License-Identifier: Apache-2.0
// A board whose devices are this machine's: everything of it, put together in the order in which one needs
// the other, and the main loop.
#pragma once

#include "cuse/arrival.hpp"
#include "cuse/device.hpp"
#include "daemon/control.hpp"
#include "daemon/resets.hpp"
#include "daemon/signals.hpp"
#include "daemon/state.hpp"

#include <shared_mutex>

namespace vboard
{

struct ServicePlan {
    unsigned mode = 0666; // permissions of the nodes
    Cause cause = Cause::automatic;
    std::string bite; // command that resets the machine when the watchdog bites; empty: only the records tell
    std::string watchdog; // file of the machine's own watchdog that is told 1 or 0; empty: there is none
};

class CuseService
{
  public:
    // Returns when all nodes are there. Throws std::runtime_error.
    CuseService(State &state, const Profile &profile, const ServicePlan &plan);
    ~CuseService();

    // Serves until it is told to end.
    void serve();

  private:
    void make_devices();
    void reset(Reset kind);
    void bite();
    void switch_watchdog();

    Signals signals_; // first: the threads of all others leave the signals to it
    State &state_;
    ServicePlan plan_;
    Board board_;
    Resets resets_;
    std::shared_mutex gate_;
    std::optional<DriverKeeper> keeper_;
    std::vector<std::unique_ptr<CuseDevice>> devices_;
    Descriptor stop_;
    Ticker ticker_;
    std::mutex watchdog_; // guards what follows
    std::optional<bool> watchdog_on_;
    std::optional<ControlServer> control_;
};

} // namespace vboard
