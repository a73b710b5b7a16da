// SPDX-License-Identifier: Apache-2.0
// moxctl wdt: the watchdog, by the one function of the library whose result has a meaning.
#include "reason.hpp"
#include "verbs.hpp"

#include <moxboot/watchdog.h>

#include <chrono>
#include <iterator>
#include <thread>

namespace moxctl
{

namespace
{

constexpr const char *operations[] = {"start", "stop", "feed"}; // by the library's numbers

Outcome watchdog_failure(std::uint32_t operation, std::uint32_t result, unsigned done)
{
    Failure reason = channel_failure(result);
    if (operation == MOX_WDT_CLEAR && result == internal_failure)
        reason.reason = "neither board driver nor /proc/wdt took it";
    std::string words = std::string("cannot ") + operations[operation] + " the watchdog (" + describe(reason);
    if (done != 0)
        words += "; it was fed " + std::to_string(done) + (done == 1 ? " time" : " times");
    return failure(words + ")");
}

Fact operation_fact(std::uint32_t operation)
{
    return {"operation", "Operation", words(operations[operation])};
}

} // namespace

Outcome control_watchdog(std::uint32_t operation)
{
    static_assert(std::size(operations) == MOX_WDT_CLEAR + 1);
    if (const std::uint32_t result = drvboot_impl_wdt_ctrl(operation); result != 0)
        return watchdog_failure(operation, result, 0);
    return {{operation_fact(operation)}, Style::silent};
}

Outcome feed_watchdog(unsigned count, unsigned every_ms)
{
    // By the clock, so that the time that a feed takes does not add up.
    auto next = std::chrono::steady_clock::now();
    for (unsigned done = 0; done < count; ++done) {
        std::this_thread::sleep_until(next);
        next += std::chrono::milliseconds(every_ms);
        if (const std::uint32_t result = drvboot_impl_wdt_ctrl(MOX_WDT_CLEAR); result != 0)
            return watchdog_failure(MOX_WDT_CLEAR, result, done);
    }
    return {{operation_fact(MOX_WDT_CLEAR), {"times", "Times", number(count)}}, Style::silent};
}

} // namespace moxctl
