// SPDX-License-Identifier: Apache-2.0
// The report pair: every failure and every step is told to the start-up step trace first, then to the system
// log and the console, with the same text and the same arguments.
#pragma once

#include <moxboot/channel.h>

namespace moxboot
{

// One function for each shape of arguments, not one for each message, and not one for each file: this is what
// keeps the call sites small.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wformat-nonliteral"
#pragma GCC diagnostic ignored "-Wformat-security"
template <typename... Args>
[[gnu::noipa]] int32_t report_shape(uint32_t trace_level, const char *format, Args... args)
{
    DrvBootStartupStepTrace(0, trace_level, format, args...);
    return drvboot_message(DRVBOOT_LEVEL_ERROR, format, args...);
}

inline const char *shape_of(const char *text)
{
    return text;
}
template <typename T>
auto shape_of(T number)
{
    return +number; // as it is passed anyway
}

template <typename... Args>
int32_t report(uint32_t trace_level, const char *format, Args... args)
{
    return report_shape(trace_level, format, shape_of(args)...);
}
#pragma GCC diagnostic pop

// Only declared: reaching it makes a compile-time check fail.
void a_plain_text_has_no_conversions();

// A whole message that lies in a table, out of sight of the compiler's own check of formats.
struct PlainText {
    const char *text = nullptr;

    PlainText() = default;
    consteval PlainText(const char *given) : text(given)
    {
        for (const char *at = given; *at != '\0'; ++at)
            if (*at == '%')
                a_plain_text_has_no_conversions();
    }
};

inline int32_t report_failure(PlainText text)
{
    return report(DRVBOOT_TRACE_FAILURE, text.text);
}

// Never called: its declaration lets the compiler hold a format against its arguments.
[[gnu::format(printf, 1, 2)]] void check_format(const char *format, ...);

} // namespace moxboot

// Both give the message's result, which some functions hand on.
#define REPORT_FAILURE(...)                                                                                  \
    (true ? ::moxboot::report(DRVBOOT_TRACE_FAILURE, __VA_ARGS__) : (::moxboot::check_format(__VA_ARGS__), 0))
#define REPORT_INFO(...)                                                                                     \
    (true ? ::moxboot::report(DRVBOOT_TRACE_INFO, __VA_ARGS__) : (::moxboot::check_format(__VA_ARGS__), 0))
