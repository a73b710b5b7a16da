// SPDX-License-Identifier: Apache-2.0
// What a board holds, and how an operation on it runs. Private to the model.
#pragma once

#include "model/board.hpp"
#include "model/fault_plan.hpp"
#include "model/item_request.hpp"
#include "model/reset_notice.hpp"

#include <deque>

namespace vboard
{

// Keeps the events in order. Has a lock of its own, so that a sink that writes to a disk holds up nobody who
// only looks at the board.
class Journal
{
  public:
    // Numbers and keeps the event. `before` is released as soon as the event's place in the order is taken.
    void record(Event event, std::unique_lock<std::mutex> before);
    std::vector<Event> events() const;
    void clear();
    void on_event(std::function<void(const Event &)> sink);

  private:
    mutable std::mutex mutex_;
    std::deque<Event> events_;
    std::uint64_t last_number_ = 0;
    std::function<void(const Event &)> sink_;
};

struct Board::State {
    Profile profile;
    std::shared_ptr<EnvStore> store;
    Journal journal;

    mutable std::mutex mutex; // guards what follows
    std::map<std::string, std::map<std::uint32_t, Bytes>> items;
    std::map<std::string, std::string> env;   // in memory
    std::map<std::string, std::string> saved; // with no store: what was saved last
    std::optional<ResetNotice> notice;        // given, and not followed by a reset yet
    Watchdog watchdog;
    FaultPlan faults;
    std::string console;
    Bytes crl;
    std::function<bool(const Bytes &)> keep_crl;
    std::uint64_t open_files = 0;

    State(Profile profile_, std::shared_ptr<EnvStore> store_);
    bool serves(const std::string &device) const;
    bool is_crl(const std::string &device) const; // the module's device, on a board that has it
    void load_env();

    // The fault that bites on an operation, its delay waited for.
    std::optional<Fault> begin(const Operation &operation);

    // The lock is held, from here on.
    void power_on();                                                  // items as the profile has them
    void start_watchdog();                                            // as it is after any reset
    void item_was_set(const std::string &device, std::uint32_t code); // what the new value sets off
    int wdt_command(const DrvbootWdtCommand &command);                // 0 or an errno
    void print(const std::string &text);                              // on the console
    Bytes part_of_crl(std::int64_t from, std::size_t count) const;
    int replace_crl(Bytes list); // 0 or an errno
    std::int64_t sought(std::int64_t offset, int whence, std::int64_t position) const;

    // The driver proper (driver.cpp).
    IoctlReply answer_items(const IoctlCall &call, const std::vector<ItemValue> &asked,
                            std::optional<std::uint32_t> forced_code);
    IoctlReply answer_notice(const ResetNotice &given, std::optional<std::uint32_t> forced_code);
    IoctlReply answer_environment(const IoctlCall &call);
};

Event start_event(Op op, const std::string &device, int pid);

// The command in a write to the watchdog service; nullopt when it has another size.
std::optional<DrvbootWdtCommand> decode_wdt(const Bytes &data);
const char *wdt_command_name(std::uint32_t command); // "unknown" for any that there is not

// The text in a buffer; nullopt when it is not terminated.
std::optional<std::string> text_in(const Bytes &buffer);

} // namespace vboard
