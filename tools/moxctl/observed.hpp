// SPDX-License-Identifier: Apache-2.0
// What an installation does, seen where the library hands its work on: moxctl puts definitions in front of
// the functions that take files out of a package, look for sources, and write the start-up flash.
#pragma once

#include <moxboot/preload.h>

#include <cstdint>
#include <functional>
#include <string>

namespace moxctl
{

struct Extraction {
    std::string package;
    std::string path; // of the file to write
    std::uint32_t id;
    std::uint32_t mode;
};

// Each is called in place of the function; `carry_out` is that function. None may throw.
struct Observer {
    using CarryOut = std::function<std::uint32_t()>;
    std::function<std::uint32_t(const Extraction &, const CarryOut &carry_out)> extract;
    std::function<void(const std::string &path, bool present)> source;
    std::function<std::uint32_t(std::uint32_t type, const std::string &path, const CarryOut &carry_out)>
        update;
    std::function<std::uint32_t(std::uint32_t type, const CarryOut &carry_out)> remove;
    std::function<std::uint32_t(const CarryOut &carry_out)> refresh; // the NOR flash data area
};

// While it lives, the observer is called. One at a time; a function that the observer leaves out is as ever.
class Observation
{
  public:
    explicit Observation(const Observer &observer);
    ~Observation();
    Observation(const Observation &) = delete;
    Observation &operator=(const Observation &) = delete;
};

// Takes down what the step trace is told of failures while it lives; the trace is told all the same. One at a
// time.
class TraceListener
{
  public:
    TraceListener();
    ~TraceListener();
    TraceListener(const TraceListener &) = delete;
    TraceListener &operator=(const TraceListener &) = delete;

    const std::string &last_failure() const; // without its end of line; empty: none

  private:
    std::string last_;
    friend void hear_trace(std::uint32_t level, const char *text);
};

} // namespace moxctl
