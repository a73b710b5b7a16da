// SPDX-License-Identifier: Apache-2.0
#include "daemon/signals.hpp"

#include <cstdint>
#include <stdexcept>
#include <sys/signalfd.h>
#include <sys/timerfd.h>
#include <unistd.h>

namespace vboard
{

Signals::Signals()
{
    sigset_t wanted;
    sigemptyset(&wanted);
    for (const int signal : {SIGCHLD, SIGTERM, SIGINT, SIGHUP, SIGQUIT})
        sigaddset(&wanted, signal);
    sigprocmask(SIG_BLOCK, &wanted, &before_);
    socket_ = Descriptor(signalfd(-1, &wanted, SFD_CLOEXEC | SFD_NONBLOCK));
    if (!socket_)
        throw std::runtime_error("cannot receive signals");
}

int Signals::next() const
{
    signalfd_siginfo info{};
    return read(socket_.get(), &info, sizeof info) == sizeof info ? static_cast<int>(info.ssi_signo) : 0;
}

void Signals::restore_mask() const
{
    sigprocmask(SIG_SETMASK, &before_, nullptr);
}

Ticker::Ticker(unsigned period_ms)
    : period_ms_(period_ms), timer_(timerfd_create(CLOCK_MONOTONIC, TFD_CLOEXEC | TFD_NONBLOCK))
{
    if (!timer_)
        throw std::runtime_error("cannot make a timer for the watchdog");
    restart();
}

bool Ticker::take() const
{
    std::uint64_t periods = 0;
    return read(timer_.get(), &periods, sizeof periods) == sizeof periods;
}

void Ticker::restart() const
{
    const timespec period{static_cast<time_t>(period_ms_ / 1000),
                          static_cast<long>(period_ms_ % 1000) * 1000000};
    const itimerspec setting{period, period};
    timerfd_settime(timer_.get(), 0, &setting, nullptr);
}

} // namespace vboard
