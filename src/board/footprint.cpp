// SPDX-License-Identifier: Apache-2.0
// The start-up footprint: the time stamps of the board support layer's boot steps, as text with three keys a
// step.
#include "base/guard.hpp"
#include "base/report.hpp"
#include "base/result.hpp"

#include <moxboot/platform.h>
#include <moxboot/time.h>

#include <cerrno>
#include <cstring>
#include <fcntl.h>

using namespace moxboot;

namespace
{

constexpr size_t text_size = 1024; // only so much of the footprint is ever seen

int open_footprint()
{
    int fd = open("/proc/bsp/footprint", O_RDONLY);
    if (fd >= 0)
        return fd;
    REPORT_FAILURE("Drvboot get bsp run time not success for open /proc/bsp/footprint nok(%d), fd %d\n",
                   errno, fd);
    fd = open("/tmp/footprint", O_RDONLY);
    if (fd < 0)
        REPORT_FAILURE("Drvboot get bsp run time not success for open /tmp/footprint nok(%d), fd %d\n", errno,
                       fd);
    return fd;
}

// Finds a step's key; gives the place behind it, or null.
const char *behind_key(const char *text, const char *format, uint32_t step)
{
    char key[32] = {};
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wformat-nonliteral"
    int length = sprintf_s(key, sizeof key, format, step);
#pragma GCC diagnostic pop
    const char *found = length > 0 ? strstr(text, key) : nullptr;
    return found != nullptr ? found + length : nullptr;
}

uint32_t decimal(const char *text)
{
    return static_cast<uint32_t>(strtoul(text, nullptr, 10));
}

void copy_line(char (&dest)[MOX_FOOTPRINT_TEXT_SIZE], const char *text)
{
    size_t length = strcspn(text, "\r\n");
    if (length > sizeof dest - 1)
        length = sizeof dest - 1;
    memcpy(dest, text, length);
    dest[length] = '\0';
}

// Fills a step's record. Gives the place behind the step's description key, where the next one's keys are
// looked for; null when one of the three keys is missing.
const char *parse_step(const char *text, uint32_t step, MoxFootprintStep &record)
{
    const char *seconds = behind_key(text, "t%u_s=", step);
    const char *milliseconds = behind_key(text, "t%u_ms=", step);
    const char *description = behind_key(text, "t%u_des=", step);
    if (seconds == nullptr || milliseconds == nullptr || description == nullptr) {
        record.seconds = 0;
        record.milliseconds = 0;
        record.description[0] = '\0';
        return nullptr;
    }
    record.seconds = decimal(seconds);
    record.milliseconds = decimal(milliseconds);
    copy_line(record.description, description);
    return description;
}

} // namespace

uint32_t MOX_GetBSPRunTime(MoxFootprintStep *steps, int32_t count)
{
    if (steps == nullptr && count > 0)
        return failed;
    Descriptor file(open_footprint());
    if (!file.valid())
        return failed;
    Block<char> text(text_size + 1);
    if (!text.valid()) {
        REPORT_FAILURE("Drvboot get bsp run time not success for memory exhaust\n");
        return failed;
    }
    memset(text.get(), 0, text_size + 1);
    if (read(file.get(), text.get(), text_size) < 0) {
        REPORT_FAILURE("Drvboot get bsp run time not success for read not ok(%d)\n", errno);
        return failed;
    }
    const char *at = text.get();
    for (int32_t step = 0; step < count && at != nullptr; ++step)
        at = parse_step(at, static_cast<uint32_t>(step), steps[step]);
    return ok;
}
