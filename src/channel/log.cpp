// SPDX-License-Identifier: Apache-2.0
// One line to the system log and the console; one line to the start-up step trace.
#include <moxboot/channel.h>
#include <moxboot/platform.h>

#include <cstdio>
#include <syslog.h>

uint32_t g_idebug_print_flag = 1;

namespace
{
constexpr uint32_t text_room = 127; // characters that a console line can hold
constexpr int32_t level_bit_standard_error = 2;
constexpr size_t trace_room = 128; // terminator included
} // namespace

int32_t drvboot_message(int32_t level, const char *format, ...)
{
    char line[1 + text_room + 1] = {'\r'};
    va_list args;
    va_start(args, format);
    int printed = vsnprintf_s(line + 1, text_room + 1, text_room, format, args);
    va_end(args);

    // A text that was cut or could not be formatted counts as -1 characters: its console copies shrink to an
    // empty line, while the system log keeps what the formatter left.
    uint32_t end = static_cast<uint32_t>(printed) + 1;
    if (end > text_room)
        end = text_room;
    line[end] = '\0';

    openlog("init", 0, LOG_DAEMON);
    syslog(LOG_INFO, "%s", line + 1);
    closelog();

    line[end] = '\n';
    line[end + 1] = '\0';
    if ((level & level_bit_standard_error) != 0)
        drvboot_full_write(2, reinterpret_cast<uint8_t *>(line), end + 1);
    return printf("[boot_info]%s", line);
}

void DrvBootStartupStepTrace(uint32_t code, uint32_t level, const char *format, ...)
{
    char line[trace_room] = {};
    va_list args;
    va_start(args, format);
    int printed = vsprintf_s(line, sizeof line, format, args);
    va_end(args);
    if (printed >= 0 && static_cast<size_t>(printed) < sizeof line)
        iof_startupstep_trace(code, level, "%s", line);
}
