// SPDX-License-Identifier: Apache-2.0
// What the library said during a call, through all four of its destinations, and what it should have said.
#pragma once

#include <condition_variable>
#include <cstdint>
#include <functional>
#include <mutex>
#include <ostream>
#include <string>
#include <thread>
#include <vector>

namespace test
{

struct TraceLine {
    std::uint32_t code;
    std::uint32_t level;
    std::string text;
    bool operator==(const TraceLine &) const = default;
};

struct Said {
    std::vector<TraceLine> trace;    // the start-up step trace's store
    std::vector<std::string> syslog; // texts that arrived at "/dev/log"
    std::string out;                 // standard output
    std::string err;                 // standard error
    bool operator==(const Said &) const = default;
    Said operator+(const Said &next) const;
};
void PrintTo(const Said &said, std::ostream *out);

// A line of drvboot_message() of at most 126 characters.
Said message(std::int32_t level, const std::string &text);
// A line of the step trace alone.
Said trace(std::uint32_t level, const std::string &text, std::uint32_t code = 0);
// Trace level 4 and message level 3; trace level 1 and message level 3.
Said failure(const std::string &text);
Said information(const std::string &text);
// Silence.
Said nothing();

// Listens at all four destinations while `action` runs. One at a time; needs a file tree of the test's own.
class Listener
{
  public:
    Listener();
    ~Listener();
    Listener(const Listener &) = delete;
    Listener &operator=(const Listener &) = delete;
    Said during(const std::function<void()> &action);

  private:
    std::vector<std::string> syslog_so_far();

    int log_ = -1; // the datagram socket at "/dev/log"
    // The kernel queues only a few datagrams and then blocks the sender, so a thread takes them off.
    std::thread collector_;
    std::mutex mutex_;
    std::condition_variable marked_;
    std::vector<std::string> texts_;
    std::size_t markers_ = 0;
};

// printf into a string.
[[gnu::format(printf, 1, 2)]] std::string text(const char *format, ...);

} // namespace test
