// SPDX-License-Identifier: Apache-2.0
// A running board: everything of it, put together in the order in which one needs the other, and the main
// loop.
#pragma once

#include "daemon/board_tree.hpp"
#include "daemon/control.hpp"
#include "daemon/device_server.hpp"
#include "daemon/process.hpp"
#include "daemon/reboot_service.hpp"
#include "daemon/resets.hpp"
#include "daemon/root_proxy_service.hpp"
#include "daemon/signals.hpp"
#include "daemon/syslog_socket.hpp"

#include <shared_mutex>

namespace vboard
{

class Running
{
  public:
    Running(const OwnNamespace &proof, State &state, const BoardPlan &plan);
    ~Running();

    // Serves until something happens that is not the loop's own business.
    struct Happened {
        int signal = 0;          // one came
        bool going_down = false; // the board was told to
        bool reset = false;      // the board was reset, and is up again
    };
    Happened serve();

    // Ends what still runs; what programs have sent is in the records when this returns.
    void go_down();
    // The same for the records alone.
    void settle();

    const Signals &signals() const
    {
        return *signals_;
    }
    std::string last_reset() const
    {
        return resets_.history().last;
    }

  private:
    void make_services();
    Reset reboot_kind() const;
    void reset(Reset kind);

    OwnNamespace proof_;
    State &state_;
    std::vector<std::string> environment_;
    Board board_;
    BoardTree tree_;
    DeviceServer devices_;
    Descriptor stop_;
    Resets resets_;
    std::shared_mutex gate_; // shared by requests, which wait while the board is reset
    Ticker ticker_;
    std::optional<SyslogSocket> log_;
    std::optional<RebootService> reboot_;
    std::optional<RootProxyService> root_proxy_;
    std::optional<ControlServer> control_;
    std::optional<Signals> signals_;
};

} // namespace vboard
