// SPDX-License-Identifier: Apache-2.0
// moxctl system-time: sets the clock. Why that failed, the library tells in its lines only.
#include "library_lines.hpp"
#include "verbs.hpp"

#include <moxboot/system_time.h>

namespace moxctl
{

namespace
{

struct Reason {
    const char *said;
    const char *words;
};
// In the order of the steps; the last failure told is the one that counts.
constexpr Reason reasons[] = {
    {"[ERR] settimeofday", "the system does not let the clock be set"},
    {"[ERR] MOX_PdtSetSystemTime", "the clock is set, but the boot environment does not take the time"},
    {"[ERR] Cant't saveenv", "the clock is set, but the boot environment cannot be saved"},
};

const char *why_not(const std::string &lines)
{
    for (const Reason &reason : reasons)
        if (lines.find(reason.said) != std::string::npos)
            return reason.words;
    return "the clock is set, but the board does not tell whether it is active, so the time is not kept";
}

} // namespace

Outcome set_system_time(const ClockTime &time)
{
    LibraryLines lines;
    const std::uint32_t result = MOX_PdtSetSystemTime(time.seconds, time.microseconds);
    const std::string said = lines.take();
    if (result != 0)
        return failure(std::string(why_not(said)) + " (code " + std::to_string(result) + ")");
    const bool kept = said.find("[OK] MOX_PdtSetSystemTime") != std::string::npos;
    return {{{"seconds", "Seconds", number(static_cast<std::uint64_t>(time.seconds), "since the epoch")},
             {"microseconds", "Microseconds", number(static_cast<std::uint64_t>(time.microseconds))},
             {"kept", "Kept for the next start", yes_or_no(kept)}},
            Style::silent};
}

} // namespace moxctl
