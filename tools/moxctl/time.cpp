// SPDX-License-Identifier: Apache-2.0
// moxctl time: how long the board runs, what time it is, and the steps of its start.
#include "reason.hpp"
#include "verbs.hpp"

#include <moxboot/time.h>

#include <algorithm>
#include <cstdarg>
#include <cstdio>
#include <ctime>

namespace moxctl
{

namespace
{

constexpr const char *no_time_base = "the platform's time base is unusable";
constexpr const char *no_clock = "the clock cannot be read";

[[gnu::format(printf, 1, 2)]] std::string print(const char *format, ...)
{
    char text[96];
    va_list args;
    va_start(args, format);
    std::vsnprintf(text, sizeof text, format, args);
    va_end(args);
    return text;
}

std::string span(std::uint64_t seconds)
{
    return print("%llu days %02u:%02u:%02u", static_cast<unsigned long long>(seconds / 86400),
                 static_cast<unsigned>(seconds / 3600 % 24), static_cast<unsigned>(seconds / 60 % 60),
                 static_cast<unsigned>(seconds % 60));
}

Answer seconds_passed(std::uint64_t seconds)
{
    return {seconds, std::to_string(seconds) + " s", span(seconds)};
}

std::string date_text(int year, int month, int day, int hour, int minute, int second)
{
    return print("%04d-%02d-%02d %02d:%02d:%02d", year, month, day, hour, minute, second);
}

// Without a time base the library tells 0 seconds, which would pass for a board that has just started.
Answer board_run_time()
{
    std::uint64_t seconds = 0;
    if (drvboot_GetCpuTimeBaseFreq() == 0)
        return unreadable(internal_failure, no_time_base);
    if (const std::int32_t result = MOX_GetBoardRunTime(&seconds); result != 0)
        return unreadable(static_cast<std::uint32_t>(result), no_time_base);
    return seconds_passed(seconds);
}

Answer cpu_run_time()
{
    std::uint32_t seconds = 0;
    std::uint32_t milliseconds = 0;
    if (const std::uint32_t result = MOX_GetCPURunTime(&seconds, &milliseconds); result != 0)
        return unreadable(result, no_time_base);
    return {{{"seconds", seconds}, {"milliseconds", milliseconds}},
            print("%u.%03u s", static_cast<unsigned>(seconds), static_cast<unsigned>(milliseconds)),
            span(seconds)};
}

Answer frequency()
{
    const std::uint64_t ticks = drvboot_GetCpuTimeBaseFreq();
    return ticks != 0 ? number(ticks, "ticks a second") : unreadable(0, no_time_base);
}

Answer uptime()
{
    const std::uint32_t seconds = get_uptime();
    return seconds != 0 ? seconds_passed(seconds) : unreadable(0, "the kernel does not tell");
}

// The start is reckoned from the uptime, and is worth nothing without it.
Answer start_time()
{
    if (get_uptime() == 0)
        return unreadable(0, "the kernel does not tell how long it runs");
    // The interface cuts the time to 32 bits; taken as unsigned it reaches to the year 2106.
    const std::uint32_t epoch = static_cast<std::uint32_t>(get_starttime());
    const std::time_t start = static_cast<std::time_t>(epoch);
    std::tm local = {};
    if (::localtime_r(&start, &local) == nullptr)
        return unreadable(epoch, no_clock);
    const std::string text = date_text(local.tm_year + 1900, local.tm_mon + 1, local.tm_mday, local.tm_hour,
                                       local.tm_min, local.tm_sec);
    return {{{"epoch", epoch}, {"local", text}}, text, std::to_string(epoch) + " s since the epoch"};
}

Answer local_time()
{
    DrvbootLocalTime now = {};
    if (const std::int32_t result = Drvboot_GetTime(&now); result != 0)
        return unreadable(static_cast<std::uint32_t>(result), no_clock);
    return words(date_text(now.year, now.month, now.day, now.hour, now.minute, now.second));
}

// A footprint that is shorter than asked for ends in a step without time and text.
bool is_end(const MoxFootprintStep &step)
{
    return step.seconds == 0 && step.milliseconds == 0 && step.description[0] == '\0';
}

Fact footprint(unsigned count)
{
    Fact fact{"footprint", "Footprint", {}};
    std::vector<MoxFootprintStep> steps(count);
    if (const std::uint32_t result = MOX_GetBSPRunTime(steps.data(), static_cast<std::int32_t>(count));
        result != 0) {
        fact.answer = unreadable(result, "no start-up footprint can be opened or read");
        return fact;
    }
    steps.erase(std::find_if(steps.begin(), steps.end(), is_end), steps.end());
    fact.answer = {Json::array(), std::to_string(steps.size()), steps.size() == 1 ? "step" : "steps"};
    if (!steps.empty())
        fact.rows.push_back({"Step", "Time", "Description"});
    for (const MoxFootprintStep &step : steps) {
        const std::size_t index = fact.answer.value.size();
        fact.answer.value.push_back({{"step", index},
                                     {"seconds", step.seconds},
                                     {"milliseconds", step.milliseconds},
                                     {"description", step.description}});
        fact.rows.push_back({std::to_string(index),
                             print("%u.%03u s", static_cast<unsigned>(step.seconds),
                                   static_cast<unsigned>(step.milliseconds)),
                             step.description});
    }
    return fact;
}

} // namespace

Outcome times(unsigned footprint_steps)
{
    Outcome outcome{{{"board_run_time", "Board run time", board_run_time()},
                     {"cpu_run_time", "CPU run time", cpu_run_time()},
                     {"time_base_frequency", "Time base frequency", frequency()},
                     {"uptime", "Uptime", uptime()},
                     {"start_time", "Start time", start_time()},
                     {"local_time", "Local time", local_time()},
                     footprint(footprint_steps)}};
    const auto unread = [](const Fact &fact) { return fact.answer.value.is_null(); };
    if (std::all_of(outcome.facts.begin(), outcome.facts.end(), unread))
        outcome.error = "no time could be read";
    return outcome;
}

} // namespace moxctl
