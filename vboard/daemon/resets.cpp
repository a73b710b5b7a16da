// SPDX-License-Identifier: Apache-2.0
#include "daemon/resets.hpp"

#include <algorithm>
#include <stdexcept>
#include <sys/eventfd.h>
#include <utility>

namespace vboard
{

Resets::Resets() : wake_(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK))
{
    if (!wake_)
        throw std::runtime_error("cannot wait for resets");
}

std::future<std::string> Resets::want(Reset kind)
{
    const std::lock_guard lock(mutex_);
    wanted_ = wanted_ ? std::max(*wanted_, kind) : kind;
    std::future<std::string> over = waiting_.emplace_back().get_future();
    eventfd_write(wake_.get(), 1);
    return over;
}

std::optional<Reset> Resets::take()
{
    const std::lock_guard lock(mutex_);
    eventfd_t count = 0;
    eventfd_read(wake_.get(), &count);
    taken_ = std::exchange(waiting_, {});
    power_cut_ = wanted_ == Reset::power_cut;
    return std::exchange(wanted_, std::nullopt);
}

void Resets::note(const Event &event)
{
    if (event.op != Op::reset)
        return;
    const std::lock_guard lock(mutex_);
    history_.last = event.what;
    history_.since_power_on = power_cut_ ? 0 : history_.since_power_on + 1;
}

void Resets::over()
{
    const std::lock_guard lock(mutex_);
    for (std::promise<std::string> &one : std::exchange(taken_, {}))
        one.set_value(history_.last);
}

Resets::History Resets::history() const
{
    const std::lock_guard lock(mutex_);
    return history_;
}

} // namespace vboard
