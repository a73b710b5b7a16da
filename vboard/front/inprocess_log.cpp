// SPDX-License-Identifier: Apache-2.0
// The system log, for the hook alone.
#include "front/inprocess_hook.hpp"

#include <cstdarg>
#include <syslog.h>

namespace
{

using namespace vboard;

LibcCall on_log(const char *function, const void *caller, const char *text, int number)
{
    LibcCall call{function, caller};
    call.path = text;
    call.size = static_cast<unsigned>(number);
    return call;
}

} // namespace

extern "C" {

void openlog(const char *identity, int option, int facility)
{
    long ignored = 0;
    if (!inprocess::answered(on_log("openlog", CALLER, identity, facility), ignored))
        NEXT(void(const char *, int, int), "openlog")(identity, option, facility);
}

void closelog(void)
{
    long ignored = 0;
    if (!inprocess::answered(on_log("closelog", CALLER, nullptr, 0), ignored))
        NEXT(void(), "closelog")();
}

void syslog(int priority, const char *format, ...)
{
    long ignored = 0;
    if (inprocess::answered(on_log("syslog", CALLER, format, priority), ignored))
        return;
    va_list args;
    va_start(args, format);
    NEXT(void(int, const char *, va_list), "vsyslog")(priority, format, args);
    va_end(args);
}

// The fortified form.
void __syslog_chk(int priority, int flag, const char *format, ...);
void __syslog_chk(int priority, int flag, const char *format, ...)
{
    long ignored = 0;
    if (inprocess::answered(on_log("syslog", CALLER, format, priority), ignored))
        return;
    va_list args;
    va_start(args, format);
    NEXT(void(int, int, const char *, va_list), "__vsyslog_chk")(priority, flag, format, args);
    va_end(args);
}

} // extern "C"
