// SPDX-License-Identifier: Apache-2.0
#include "model/board.hpp"

#include "model/driver.hpp"
#include "model/faults.hpp"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <thread>

namespace vboard
{
namespace
{

Event make_event(Op op, const std::string &device, int pid)
{
    Event event;
    event.op = op;
    event.device = device;
    event.pid = pid;
    return event;
}

double now()
{
    using namespace std::chrono;
    return duration<double>(system_clock::now().time_since_epoch()).count();
}

} // namespace

Board::Board(Profile profile, std::shared_ptr<EnvStore> store)
    : profile_(std::move(profile)), store_(std::move(store))
{
    items_ = profile_.items;
    variables_ = store_ ? store_->load() : profile_.boot_env;
}

const Profile &Board::profile() const
{
    return profile_;
}

void Board::set_item(const std::string &device, std::uint32_t item, std::uint32_t value)
{
    std::lock_guard lock(mutex_);
    items_[device][item] = value;
}

void Board::remove_item(const std::string &device, std::uint32_t item)
{
    std::lock_guard lock(mutex_);
    items_[device].erase(item);
}

std::optional<std::uint32_t> Board::item(const std::string &device, std::uint32_t item) const
{
    std::lock_guard lock(mutex_);
    auto found = items_.find(device);
    if (found == items_.end())
        return std::nullopt;
    auto value = found->second.find(item);
    return value == found->second.end() ? std::nullopt : std::optional(value->second);
}

void Board::set_boot_env(const std::string &name, std::optional<std::string> value)
{
    std::lock_guard lock(mutex_);
    if (value)
        variables_[name] = *value;
    else
        variables_.erase(name);
}

std::optional<std::string> Board::boot_env(const std::string &name) const
{
    std::lock_guard lock(mutex_);
    auto found = variables_.find(name);
    return found == variables_.end() ? std::nullopt : std::optional(found->second);
}

void Board::add_fault(Fault fault)
{
    std::lock_guard lock(mutex_);
    faults_.push_back(std::move(fault));
}

void Board::clear_faults()
{
    std::lock_guard lock(mutex_);
    faults_.clear();
}

std::vector<Fault> Board::faults() const
{
    std::lock_guard lock(mutex_);
    return faults_;
}

std::vector<Event> Board::journal() const
{
    std::lock_guard lock(mutex_);
    return journal_;
}

void Board::clear_journal()
{
    std::lock_guard lock(mutex_);
    journal_.clear();
}

void Board::on_event(std::function<void(const Event &)> sink)
{
    std::lock_guard lock(mutex_);
    sink_ = std::move(sink);
}

bool Board::serves(const std::string &device) const
{
    std::lock_guard lock(mutex_);
    return device == environment_device || device == console_device || items_.count(device) != 0;
}

std::optional<Fault> Board::begin(Event &event)
{
    std::optional<Fault> fault;
    {
        std::lock_guard lock(mutex_);
        fault = take_fault(faults_, event);
    }
    event.faulted = fault.has_value();
    if (fault && fault->delay_ms != 0)
        std::this_thread::sleep_for(std::chrono::milliseconds(fault->delay_ms));
    return fault;
}

void Board::record(Event &event)
{
    event.number = ++events_;
    event.time = now();
    journal_.push_back(event);
    if (sink_)
        sink_(event);
}

int Board::open(const std::string &device, int, int pid)
{
    Event event = make_event(Op::open, device, pid);
    std::optional<Fault> fault = begin(event);
    if (!serves(device))
        event.error = ENOENT;
    if (fault && fault->error != 0)
        event.error = fault->error;
    event.result = event.error != 0 ? -1 : 0;
    std::lock_guard lock(mutex_);
    record(event);
    return event.error;
}

IoctlReply Board::ioctl(const IoctlCall &call)
{
    Event event = make_event(Op::ioctl, call.device, call.pid);
    event.request = call.request;
    decode_request(call, event);
    std::optional<Fault> fault = begin(event);

    std::lock_guard lock(mutex_);
    IoctlReply reply;
    // A request that fails has no effect.
    if (!fault || fault->error == 0) {
        Twist twist;
        if (fault)
            twist.code = fault->code;
        reply = call.device == environment_device ? answer_environment(call, variables_, store_.get(), event)
                                                  : answer_items(call, profile_, items_, twist, event);
    }
    if (fault)
        spoil(reply, call, *fault);
    event.result = reply.result;
    event.error = reply.error;
    record(event);
    return reply;
}

IoResult Board::read(const std::string &device, std::size_t, int pid)
{
    Event event = make_event(Op::read, device, pid);
    std::optional<Fault> fault = begin(event);
    IoResult done; // no device of today has anything to read: an end of file
    if (fault && fault->error != 0)
        done = {-1, fault->error, {}};
    event.result = done.result;
    event.error = done.error;
    std::lock_guard lock(mutex_);
    record(event);
    return done;
}

IoResult Board::write(const std::string &device, const Bytes &data, int pid)
{
    Event event = make_event(Op::write, device, pid);
    std::optional<Fault> fault = begin(event);
    IoResult done;
    if (device != console_device)
        done = {-1, EINVAL, {}};
    else if (fault && fault->error != 0)
        done = {-1, fault->error, {}};
    else
        done.result = static_cast<std::int64_t>(
            fault && fault->cut ? std::min<std::size_t>(*fault->cut, data.size()) : data.size());
    if (done.result > 0)
        event.value.assign(data.begin(), data.begin() + static_cast<std::ptrdiff_t>(done.result));
    event.result = done.result;
    event.error = done.error;
    std::lock_guard lock(mutex_);
    record(event);
    return done;
}

void Board::close(const std::string &, int)
{
    // Nothing is kept per open file, so there is nothing to let go of.
}

} // namespace vboard
