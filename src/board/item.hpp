// SPDX-License-Identifier: Apache-2.0
// Board items as data: where an item is asked, and what is said when that fails. Two functions read and write
// a row; the exported functions are a line or two over theirs.
#pragma once

#include <moxboot/types.h>

namespace moxboot
{

constexpr const char *board0 = "/dev/board0";
constexpr const char *chassis0 = "/dev/chassis0";

// Only declared: reaching it makes a compile-time check fail.
void a_failure_text_takes_the_result_and_nothing_else();

// A failure text with exactly one conversion, for the channel's 32-bit result. Checked while compiling,
// because a format that lies in a table is out of the compiler's sight.
struct FailureText {
    const char *text;

    consteval FailureText(const char *given) : text(given)
    {
        int conversions = 0;
        for (const char *at = given; *at != '\0'; ++at) {
            if (*at != '%')
                continue;
            ++at;
            if (*at == '#')
                ++at;
            if (*at != 'x')
                a_failure_text_takes_the_result_and_nothing_else();
            ++conversions;
        }
        if (conversions != 1)
            a_failure_text_takes_the_result_and_nothing_else();
    }
};

struct Item {
    const char *device;
    uint32_t code;
    FailureText failure;
};

// Both report a failure with the row's text and give the channel's result.
uint32_t read_item(const Item &item, uint32_t *value);
uint32_t write_item(const Item &item, uint32_t value);

// Reports a failure as the two above do. Gives the message's result, which some functions hand on.
int32_t report_item(const Item &item, uint32_t result);

// The extra copy of a read failure on the console that three items make: the same text without its last line
// end.
void copy_to_console(FailureText text, uint32_t result);

// What some functions say in place of the channel's result.
uint32_t zero_or_failed(uint32_t result);

} // namespace moxboot
