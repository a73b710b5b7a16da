// SPDX-License-Identifier: Apache-2.0
#include "cuse/service.hpp"

#include "daemon/device_nodes.hpp"
#include "daemon/requests.hpp"
#include "model/env_store.hpp"
#include "model/request_kind.hpp"

#include <moxboot/driver.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <poll.h>
#include <stdexcept>
#include <sys/eventfd.h>

namespace vboard
{

namespace
{

// The console, the watchdog service and the clock are the machine's own. A name with a slash in it is none
// that the kernel takes.
bool is_served(const std::string &device)
{
    return device != console_device && device.starts_with("/dev/") &&
           device.find('/', std::string_view("/dev/").size()) == std::string::npos;
}

} // namespace

CuseService::CuseService(State &state, const Profile &profile, const ServicePlan &plan)
    : state_(state), plan_(plan), board_(profile, make_env_store(state.directory(), profile)),
      stop_(eventfd(0, EFD_CLOEXEC)), ticker_(profile.watchdog_period_ms)
{
    check_cuse();
    board_.keep_crl([this](const Bytes &list) { return state_.keep_crl(list); });
    board_.on_event([this](const Event &event) {
        state_.append_journal(event);
        resets_.note(event);
    });
    state_.append_life("up", {{"board", profile.name}});
    arrive(board_, state_, plan_.cause);
    keeper_.emplace(board_, state_.directory());
    switch_watchdog();
    make_devices();

    std::vector<std::string> names;
    for (const auto &device : devices_)
        names.push_back(device->path());
    const RequestContext context{board_,
                                 state_,
                                 names,
                                 [this] { eventfd_write(stop_.get(), 1); },
                                 resets_,
                                 [this] { return board_.reboot_kind(); },
                                 gate_,
                                 "cuse",
                                 [this] { keeper_->changed(); }};
    control_.emplace(control_path(state_.directory()),
                     [context](const nlohmann::json &request) { return fulfil(context, request); });
}

CuseService::~CuseService()
{
    state_.append_life("down", nlohmann::json::object());
}

void CuseService::make_devices()
{
    const auto asked = [this](std::uint32_t request) {
        if (request == DRVBOOT_CMD_SET) {
            keeper_->changed();
            switch_watchdog();
        }
        // Who has given notice may reset the machine at once.
        if (request == DRVBOOT_CMD_SELF_RESET)
            keeper_->keep();
    };
    for (const std::string &device : driver_devices(board_))
        if (is_served(device))
            devices_.push_back(std::make_unique<CuseDevice>(board_, device, plan_.mode, asked));
}

// Through the driver the watchdog is switched on and off; that which counts, and bites, may be the machine's
// own.
void CuseService::switch_watchdog()
{
    if (plan_.watchdog.empty())
        return;
    const std::lock_guard lock(watchdog_);
    const bool on = board_.watchdog().enabled;
    if (watchdog_on_ == on)
        return;
    std::ofstream file(plan_.watchdog);
    file << (on ? "1" : "0") << std::flush;
    if (!file)
        std::fprintf(stderr, "vboard-devices: cannot write %s\n", plan_.watchdog.c_str());
    watchdog_on_ = on;
}

// The board alone: the machine, its programs and its files are reset by who runs them.
void CuseService::reset(Reset kind)
{
    const std::unique_lock gate(gate_);
    board_.reset(kind);
    if (kind == Reset::power_cut)
        state_.restore_items(board_); // what was set from outside is the board's make
    switch_watchdog();
    keeper_->keep();
    ticker_.restart();
    resets_.over();
}

// A board that is bitten is gone at once. What its driver keeps is on the disk by then, with the word of what
// did it; when the machine does not go down after all, the board goes on as after the reset.
void CuseService::bite()
{
    reset(Reset::watchdog);
    if (!plan_.bite.empty() && std::system(plan_.bite.c_str()) != 0)
        std::fprintf(stderr, "vboard-devices: the watchdog bites, but \"%s\" failed\n", plan_.bite.c_str());
}

void CuseService::serve()
{
    for (;;) {
        pollfd waiting[] = {{signals_.listener(), POLLIN, 0},
                            {stop_.get(), POLLIN, 0},
                            {resets_.listener(), POLLIN, 0},
                            {ticker_.listener(), POLLIN, 0},
                            {control_->listener(), POLLIN, 0}};
        if (poll(waiting, std::size(waiting), -1) < 0) {
            if (errno != EINTR)
                throw std::runtime_error("cannot wait for requests");
            continue;
        }
        const auto ready = [&](std::size_t i) { return waiting[i].revents != 0; };
        const int signal = ready(0) ? signals_.next() : 0;
        if (ready(4))
            control_->accept_waiting();
        if (signal == SIGTERM || signal == SIGINT || signal == SIGHUP || signal == SIGQUIT || ready(1))
            break;
        if (ready(3) && ticker_.take() && board_.watchdog_tick())
            bite();
        if (const std::optional<Reset> kind = resets_.take())
            reset(*kind);
    }
    control_->settle();
    devices_.clear();
    keeper_->end();
}

} // namespace vboard
