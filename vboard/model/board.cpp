// SPDX-License-Identifier: Apache-2.0
// The board as it is seen from outside: by a test, or by the vboard command.
#include "model/board.hpp"

#include "model/request_kind.hpp"
#include "model/state.hpp"
#include "model/tlv.hpp"

#include <moxboot/driver.h>

#include <chrono>
#include <thread>

namespace vboard
{

namespace
{

constexpr std::size_t kept_events = 65536;

} // namespace

void Journal::record(Event event, std::unique_lock<std::mutex> before)
{
    using namespace std::chrono;
    const std::lock_guard lock(mutex_);
    before.unlock();
    event.number = ++last_number_;
    event.time = duration<double>(system_clock::now().time_since_epoch()).count();
    if (event.asked != steady_clock::time_point())
        event.duration = duration<double>(steady_clock::now() - event.asked).count();
    events_.push_back(std::move(event));
    if (events_.size() > kept_events)
        events_.pop_front();
    if (sink_)
        sink_(events_.back());
}

std::vector<Event> Journal::events() const
{
    const std::lock_guard lock(mutex_);
    return {events_.begin(), events_.end()};
}

void Journal::clear()
{
    const std::lock_guard lock(mutex_);
    events_.clear();
}

void Journal::on_event(std::function<void(const Event &)> sink)
{
    const std::lock_guard lock(mutex_);
    sink_ = std::move(sink);
}

Board::State::State(Profile profile_, std::shared_ptr<EnvStore> store_)
    : profile(std::move(profile_)), store(std::move(store_)), saved(profile.boot_env)
{
    power_on();
    if (!profile.reset_reason_record.empty())
        items[std::string(board_device)][DRVBOOT_ITEM_RESET_REASON_RECORD] = profile.reset_reason_record;
    start_watchdog();
    load_env();
}

void Board::State::load_env()
{
    env = store ? store->load() : saved;
}

bool Board::State::serves(const std::string &device) const
{
    return device == board_device || device == "/dev/chassis0" || device == environment_device ||
           device == console_device || device == watchdog_device || device == clock_device ||
           slot_number(device) != 0 || is_crl(device) || profile.items.contains(device);
}

std::optional<Fault> Board::State::begin(const Operation &operation)
{
    std::optional<Fault> fault;
    {
        const std::lock_guard lock(mutex);
        fault = faults.take(operation);
    }
    if (fault && fault->delay_ms != 0)
        std::this_thread::sleep_for(std::chrono::milliseconds(fault->delay_ms));
    return fault;
}

Board::Board(Profile profile, std::shared_ptr<EnvStore> store)
    : state_(std::make_unique<State>(std::move(profile), std::move(store)))
{
}

Board::~Board() = default;

const Profile &Board::profile() const
{
    return state_->profile;
}

void Board::set_item(const std::string &device, std::uint32_t item, std::uint32_t value)
{
    const std::lock_guard lock(state_->mutex);
    Bytes &bytes = state_->items[device][item];
    // An item of more than a word (the hardware address) keeps what lies behind its first word.
    bytes.resize(std::max(bytes.size(), sizeof value));
    std::memcpy(bytes.data(), &value, sizeof value);
    state_->item_was_set(device, item);
}

void Board::remove_item(const std::string &device, std::uint32_t item)
{
    const std::lock_guard lock(state_->mutex);
    if (const auto found = state_->items.find(device); found != state_->items.end())
        found->second.erase(item);
}

std::optional<std::uint32_t> Board::item(const std::string &device, std::uint32_t item) const
{
    const std::lock_guard lock(state_->mutex);
    const auto values = state_->items.find(device);
    if (values == state_->items.end())
        return std::nullopt;
    const auto value = values->second.find(item);
    return value == values->second.end() ? std::nullopt : std::optional(word_of(value->second));
}

void Board::set_boot_env(const std::string &name, std::optional<std::string> value)
{
    const std::lock_guard lock(state_->mutex);
    if (value)
        state_->env[name] = std::move(*value);
    else
        state_->env.erase(name);
}

std::optional<std::string> Board::boot_env(const std::string &name) const
{
    const std::lock_guard lock(state_->mutex);
    const auto found = state_->env.find(name);
    return found == state_->env.end() ? std::nullopt : std::optional(found->second);
}

void Board::add_fault(Fault fault)
{
    const std::lock_guard lock(state_->mutex);
    state_->faults.add(std::move(fault));
}

void Board::clear_faults()
{
    const std::lock_guard lock(state_->mutex);
    state_->faults.clear();
}

std::vector<Fault> Board::faults() const
{
    const std::lock_guard lock(state_->mutex);
    return state_->faults.faults();
}

std::vector<Event> Board::journal() const
{
    return state_->journal.events();
}

void Board::clear_journal()
{
    state_->journal.clear();
}

void Board::on_event(std::function<void(const Event &)> sink)
{
    state_->journal.on_event(std::move(sink));
}

std::string Board::console() const
{
    const std::lock_guard lock(state_->mutex);
    return state_->console;
}

std::uint64_t Board::open_files() const
{
    const std::lock_guard lock(state_->mutex);
    return state_->open_files;
}

bool Board::serves(const std::string &device) const
{
    return state_->serves(device);
}

} // namespace vboard
