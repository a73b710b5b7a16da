// SPDX-License-Identifier: Apache-2.0
#include "daemon/running.hpp"

#include "daemon/programs.hpp"
#include "daemon/requests.hpp"
#include "daemon/seed.hpp"
#include "model/env_store.hpp"
#include "model/faults.hpp"
#include "model/request_kind.hpp"
#include "platform/root_proxy.hpp"

#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <stdexcept>
#include <sys/eventfd.h>

namespace vboard
{

namespace
{

TreePlan with_state(TreePlan plan, const State &state)
{
    plan.state = state.directory();
    return plan;
}

} // namespace

Running::Running(const OwnNamespace &proof, State &state, const BoardPlan &plan)
    : proof_(proof), state_(state), environment_(plan.environment),
      board_(plan.profile, make_env_store(state.directory(), plan.profile)),
      tree_(proof, with_state(plan.tree, state), board_.profile()),
      devices_(board_,
               [this](const std::string &device, const Bytes &text) {
                   if (device == console_device)
                       state_.append_console(text);
               }),
      stop_(eventfd(0, EFD_CLOEXEC)), ticker_(plan.profile.watchdog_period_ms)
{
    state.restore_items(board_);
    board_.set_crl(state.crl());
    board_.keep_crl([this](const Bytes &list) { return state_.keep_crl(list); });
    state_.append_life("up", {{"board", plan.profile.name}});
    for (const Fault &fault : plan.faults) {
        board_.add_fault(fault);
        state_.append_life("fault", {{"fault", to_json(fault)}});
    }
    board_.on_event([this](const Event &event) {
        state_.append_journal(event);
        resets_.note(event);
    });

    make_services();
    const RequestContext context{board_,
                                 state_,
                                 devices_.devices(),
                                 [this] { eventfd_write(stop_.get(), 1); },
                                 resets_,
                                 [this] { return reboot_kind(); },
                                 gate_,
                                 "tree",
                                 {}};
    control_.emplace(control_path(state.directory()),
                     [context](const nlohmann::json &request) { return fulfil(context, request); });
    // Last: until here a signal just ends the process.
    signals_.emplace();
}

Running::~Running()
{
    state_.append_life("down", nlohmann::json::object());
    // A socket without a listener would tell programs of a later board otherwise than no socket.
    std::error_code error;
    std::filesystem::remove(platform::root_proxy_socket, error);
}

// Everything that stands in the tree, at the start and again after each reset.
void Running::make_services()
{
    devices_.make_nodes();
    log_.emplace([this](const std::string &line) { state_.append_syslog(line); });
    reboot_.emplace([this] { resets_.want(reboot_kind()); });
    root_proxy_.emplace(environment_);
}

Reset Running::reboot_kind() const
{
    const Reset kind = board_.reboot_kind();
    return kind == Reset::soft && soft_reset_closed() ? Reset::cold : kind;
}

void Running::reset(Reset kind)
{
    const std::unique_lock gate(gate_);
    if (!end_programs(proof_))
        std::fprintf(stderr, "vboard: a program did not end; the board is reset all the same\n");
    devices_.settle(); // what programs had sent before, the driver was still asked
    devices_.hang_up();
    log_->take_waiting();
    root_proxy_->settle();
    board_.reset(kind);
    if (kind == Reset::power_cut)
        state_.restore_items(board_); // what was set from outside is the board's make
    tree_.reset(kind);
    make_services();
    ticker_.restart();
    resets_.over();
}

Running::Happened Running::serve()
{
    for (;;) {
        std::vector<pollfd> waiting = devices_.listeners();
        const std::size_t first = waiting.size();
        for (const int fd :
             {signals_->listener(), stop_.get(), resets_.listener(), ticker_.listener(), log_->listener(),
              control_->listener(), reboot_->listener(), root_proxy_->listener()})
            waiting.push_back({fd, POLLIN, 0});
        if (poll(waiting.data(), waiting.size(), -1) < 0) {
            if (errno != EINTR)
                throw std::runtime_error("cannot wait for programs");
            continue;
        }
        const auto ready = [&](std::size_t i) { return waiting[first + i].revents != 0; };
        if (ready(4))
            log_->take_waiting();
        if (ready(5))
            control_->accept_waiting();
        if (ready(6))
            reboot_->accept_waiting();
        if (ready(7))
            root_proxy_->accept_waiting();
        devices_.accept_waiting(waiting);
        if (const int signal = ready(0) ? signals_->next() : 0; signal != 0)
            return {.signal = signal};
        if (eventfd_t count = 0; ready(1) && eventfd_read(stop_.get(), &count) == 0)
            return {.going_down = true};
        if (ready(3) && ticker_.take() && board_.watchdog_tick())
            resets_.want(Reset::watchdog);
        if (const std::optional<Reset> kind = resets_.take()) {
            reset(*kind);
            return {.reset = true};
        }
    }
}

void Running::go_down()
{
    settle();
    end_programs(proof_);
    settle();
}

void Running::settle()
{
    devices_.settle();
    log_->take_waiting();
    control_->settle();
}

} // namespace vboard
