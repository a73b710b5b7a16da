// SPDX-License-Identifier: Apache-2.0
#include "sweep/where.hpp"

#include <csignal>
#include <cstdarg>
#include <cstdio>
#include <cstring>
#include <initializer_list>
#include <unistd.h>

// The address sanitizer calls this before it reports.
extern "C" void __asan_on_error();

// What the loader keeps for itself lies out of the leak check's sight.
extern "C" const char *__lsan_default_suppressions();
extern "C" const char *__lsan_default_suppressions()
{
    return "leak:dlerror.c\nleak:rtld-malloc.h\nleak:dl-open.c\n";
}

namespace
{

constexpr unsigned patience = 20; // in seconds; an emulated ARM program on a busy machine is slow

char place[512];

void tell()
{
    [[maybe_unused]] ssize_t written = write(2, "\nwhile sweeping ", 16);
    written = write(2, place, std::strlen(place));
    written = write(2, "\n", 1);
}

void stop(int signal)
{
    tell();
    std::signal(signal, SIG_DFL);
    std::raise(signal);
}

} // namespace

void __asan_on_error()
{
    tell();
}

namespace sweep
{

void where(const char *format, ...)
{
    static const bool prepared = [] {
        for (int signal : {SIGSEGV, SIGBUS, SIGFPE, SIGILL, SIGABRT, SIGALRM})
            std::signal(signal, stop);
        return true;
    }();
    static_cast<void>(prepared);
    va_list args;
    va_start(args, format);
    std::vsnprintf(place, sizeof place, format, args);
    va_end(args);
    alarm(patience);
}

void nowhere()
{
    alarm(0);
}

} // namespace sweep
