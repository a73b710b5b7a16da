// SPDX-License-Identifier: Apache-2.0
// moxctl pre-reset announce: tells the process that listens that a reset is near, and waits for its answer.
#include "library_lines.hpp"
#include "verbs.hpp"

#include <moxboot/pre_reset.h>

#include <chrono>

namespace moxctl
{

namespace
{

// Both functions hand back nothing; what they say differs in each case.
constexpr const char *sent_line = "[PRRESET]Notice pre rst start ok!";
constexpr const char *answered_line = "[PRRESET]Pre rst is over, ";

struct Step {
    bool good;
    std::int64_t milliseconds;
};

Step take_step(void (*function)(), const char *good_line)
{
    LibraryLines lines;
    const auto start = std::chrono::steady_clock::now();
    function();
    const auto passed = std::chrono::steady_clock::now() - start;
    return {lines.take().find(good_line) != std::string::npos,
            std::chrono::duration_cast<std::chrono::milliseconds>(passed).count()};
}

} // namespace

Outcome announce_reset()
{
    if (!take_step(PreReset_Req, sent_line).good)
        return {{{"announced", "Announced", yes_or_no(false)},
                 {"answered", "Answered", {nullptr, "not applicable", {}}}},
                Style::silent,
                "nobody listens on " MOX_PRE_RESET_REQUEST_PIPE ": nothing was announced"};
    const Step wait = take_step(PreReset_Wait, answered_line);
    Outcome outcome{{{"announced", "Announced", yes_or_no(true)},
                     {"answered", "Answered", yes_or_no(wait.good)},
                     {"waited_ms", "Waited", number(static_cast<std::uint64_t>(wait.milliseconds), "ms")}}};
    if (!wait.good)
        outcome.error =
            "the reset was announced, but no answer came within " + std::to_string(wait.milliseconds) + " ms";
    return outcome;
}

} // namespace moxctl
