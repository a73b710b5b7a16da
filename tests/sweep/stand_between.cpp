// SPDX-License-Identifier: Apache-2.0
#include "sweep/stand_between.hpp"

#include <moxboot/platform.h>

#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <dirent.h>
#include <dlfcn.h>
#include <pthread.h>
#include <sys/types.h>

namespace sweep
{
namespace
{

#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wformat-nonliteral"

// ---- functions with any number of arguments --------------------------------------------------------------

void *next_open = nullptr;
int watched_open(const char *path, int flags, unsigned mode)
{
    if (const auto fault = ask("open"))
        return failed_with<int>(*fault);
    return reinterpret_cast<int (*)(const char *, int, ...)>(next_open)(path, flags, mode);
}

void *next_ioctl = nullptr;
int watched_ioctl(int fd, unsigned long request, void *argument)
{
    if (const auto fault = ask("ioctl"))
        return failed_with<int>(*fault);
    return reinterpret_cast<int (*)(int, unsigned long, ...)>(next_ioctl)(fd, request, argument);
}

// Texts are formatted, so that a wild argument shows, and go nowhere.
void *next_printf = nullptr;
int watched_printf(const char *format, ...)
{
    if (const auto fault = ask("printf"))
        return failed_with<int>(*fault);
    va_list args;
    va_start(args, format);
    const int length = std::vsnprintf(nullptr, 0, format, args);
    va_end(args);
    return length;
}

void *next_printf_chk = nullptr;
int watched_printf_chk(int, const char *format, ...)
{
    if (const auto fault = ask("printf"))
        return failed_with<int>(*fault);
    va_list args;
    va_start(args, format);
    const int length = std::vsnprintf(nullptr, 0, format, args);
    va_end(args);
    return length;
}

void *next_syslog = nullptr;
void watched_syslog(int, const char *format, ...)
{
    ask("syslog");
    va_list args;
    va_start(args, format);
    std::vsnprintf(nullptr, 0, format, args);
    va_end(args);
}

void *next_syslog_chk = nullptr;
void watched_syslog_chk(int, int, const char *format, ...)
{
    ask("syslog");
    va_list args;
    va_start(args, format);
    std::vsnprintf(nullptr, 0, format, args);
    va_end(args);
}

void *next_trace = nullptr;
void watched_trace(uint32_t, uint32_t, const char *format, ...)
{
    ask("iof_startupstep_trace");
    va_list args;
    va_start(args, format);
    std::vsnprintf(nullptr, 0, format, args);
    va_end(args);
}

// ---- the platform's bounds-checked functions: a failure leaves the destination empty ----------------------

void empty(char *dest, size_t dest_max)
{
    if (dest != nullptr && dest_max > 0)
        dest[0] = '\0';
}

template <Name name>
int print(char *dest, size_t dest_max, const char *format, va_list args)
{
    if (const auto fault = ask(name.text)) {
        empty(dest, dest_max);
        return failed_with<int>(*fault);
    }
    return vsprintf_s(dest, dest_max, format, args);
}

void *next_sprintf_s = nullptr;
int watched_sprintf_s(char *dest, size_t dest_max, const char *format, ...)
{
    va_list args;
    va_start(args, format);
    const int result = print<"sprintf_s">(dest, dest_max, format, args);
    va_end(args);
    return result;
}

void *next_vsprintf_s = nullptr;
int watched_vsprintf_s(char *dest, size_t dest_max, const char *format, va_list args)
{
    return print<"vsprintf_s">(dest, dest_max, format, args);
}

void *next_vsnprintf_s = nullptr;
int watched_vsnprintf_s(char *dest, size_t dest_max, size_t count, const char *format, va_list args)
{
    if (const auto fault = ask("vsnprintf_s")) {
        empty(dest, dest_max);
        return failed_with<int>(*fault);
    }
    return vsnprintf_s(dest, dest_max, count, format, args);
}

void *next_snprintf_s = nullptr;
int watched_snprintf_s(char *dest, size_t dest_max, size_t count, const char *format, ...)
{
    if (const auto fault = ask("snprintf_s")) {
        empty(dest, dest_max);
        return failed_with<int>(*fault);
    }
    va_list args;
    va_start(args, format);
    const int result = vsnprintf_s(dest, dest_max, count, format, args);
    va_end(args);
    return result;
}

// There is no form of this one that takes a va_list.
void *next_snprintf_truncated_s = nullptr;
int watched_snprintf_truncated_s(char *dest, size_t dest_max, const char *format, ...)
{
    if (const auto fault = ask("snprintf_truncated_s")) {
        empty(dest, dest_max);
        return failed_with<int>(*fault);
    }
    char whole[1024];
    va_list args;
    va_start(args, format);
    std::vsnprintf(whole, sizeof whole, format, args);
    va_end(args);
    return snprintf_truncated_s(dest, dest_max, "%s", whole);
}

void *next_sscanf_s = nullptr;
int watched_sscanf_s(const char *text, const char *format, ...)
{
    if (const auto fault = ask("sscanf_s"))
        return failed_with<int>(*fault);
    va_list args;
    va_start(args, format);
    const int fields = std::vsscanf(text, format, args);
    va_end(args);
    return fields;
}

#pragma GCC diagnostic pop

void *next_memcpy_s = nullptr;
int watched_memcpy_s(void *dest, size_t dest_max, const void *source, size_t count)
{
    if (const auto fault = ask("memcpy_s")) {
        if (dest != nullptr)
            std::memset(dest, 0, dest_max);
        return failed_with<int>(*fault);
    }
    return memcpy_s(dest, dest_max, source, count);
}

void *next_strcpy_s = nullptr;
int watched_strcpy_s(char *dest, size_t dest_max, const char *source)
{
    if (const auto fault = ask("strcpy_s")) {
        empty(dest, dest_max);
        return failed_with<int>(*fault);
    }
    return strcpy_s(dest, dest_max, source);
}

void *next_strncpy_s = nullptr;
int watched_strncpy_s(char *dest, size_t dest_max, const char *source, size_t count)
{
    if (const auto fault = ask("strncpy_s")) {
        empty(dest, dest_max);
        return failed_with<int>(*fault);
    }
    return strncpy_s(dest, dest_max, source, count);
}

void *next_strncat_s = nullptr;
int watched_strncat_s(char *dest, size_t dest_max, const char *source, size_t count)
{
    if (const auto fault = ask("strncat_s")) {
        empty(dest, dest_max);
        return failed_with<int>(*fault);
    }
    return strncat_s(dest, dest_max, source, count);
}

// What is said on standard error is not heard.
using Write = Between<"write", ssize_t(int, const void *, size_t)>;
ssize_t watched_write(int fd, const void *data, size_t count)
{
    if (fd != 2)
        return Write::call(fd, data, count);
    const auto fault = ask("write");
    return fault ? failed_with<ssize_t>(*fault) : static_cast<ssize_t>(count);
}

// ---- what has to be given back ---------------------------------------------------------------------------

using Malloc = Between<"malloc", void *(size_t)>;
void *watched_malloc(size_t size)
{
    void *block = Malloc::call(size);
    allocated(block);
    return block;
}

using Free = Between<"free", void(void *)>;
void watched_free(void *block)
{
    freed(block);
    Free::call(block);
}

using ScanDir = Between<"scandir", int(const char *, dirent ***, void *, void *)>;
int watched_scandir(const char *path, dirent ***list, void *filter, void *order)
{
    const int count = ScanDir::call(path, list, filter, order);
    if (count >= 0)
        allocated(*list);
    for (int i = 0; i < count; ++i)
        allocated((*list)[i]);
    return count;
}

// The mount table can be a file of the test's own.
using SetMntEnt = Between<"setmntent", void *(const char *, const char *)>;
const char *own_mounts = nullptr;
void *watched_setmntent(const char *path, const char *mode)
{
    return SetMntEnt::call(own_mounts != nullptr ? own_mounts : path, mode);
}

using DlOpen = Between<"dlopen", void *(const char *, int)>;
void *watched_dlopen(const char *path, int flags)
{
    void *library = DlOpen::call(path, flags);
    library_opened(library != nullptr ? 1 : 0);
    return library;
}

using DlClose = Between<"dlclose", int(void *)>;
int watched_dlclose(void *library)
{
    library_opened(-1);
    return DlClose::call(library);
}

// ---- what never gets through -----------------------------------------------------------------------------

using Exec = Between<"execv", int(const char *, char *const *)>;
int watched_execv(const char *, char *const *)
{
    if (const auto fault = ask("execv"))
        return failed_with<int>(*fault);
    leave();
}

using Sleep = Between<"sleep", unsigned(unsigned)>;
unsigned watched_sleep(unsigned seconds)
{
    nap();
    return Sleep::answer(seconds);
}

using Thread = Between<"pthread_create", int(pthread_t *, void *, void *, void *)>;
int watched_pthread_create(pthread_t *thread, void *attributes, void *start, void *argument)
{
    *thread = 1; // the real one writes an id, also before it fails
    return Thread::answer(thread, attributes, start, argument);
}

template <typename Function>
void *plain(Function *function)
{
    return reinterpret_cast<void *>(function);
}

template <Name name, typename Function>
StandIn handed_on(const char *symbol)
{
    using B = Between<name, Function>;
    return {symbol, plain(&B::call), &B::next};
}

template <Name name, typename Function>
StandIn answered(const char *symbol)
{
    using B = Between<name, Function>;
    return {symbol, plain(&B::answer), &B::next};
}

template <Name name, typename Function>
StandIn handed_on()
{
    return handed_on<name, Function>(name.text);
}

template <Name name, typename Function>
StandIn answered()
{
    return answered<name, Function>(name.text);
}

#define CUSTOM(symbol)                                                                                       \
    StandIn                                                                                                  \
    {                                                                                                        \
#symbol, plain(&watched_##symbol), &next_##symbol                                                    \
    }

using Stat = int(const char *, void *);
using Off = long long;

const StandIn all[] = {
    {"open", plain(&watched_open), &next_open},
    {"open64", plain(&watched_open), &next_open},
    {"__open_2", plain(&watched_open), &next_open},
    {"__open64_2", plain(&watched_open), &next_open},
    {"ioctl", plain(&watched_ioctl), &next_ioctl},
    {"__ioctl_time64", plain(&watched_ioctl), &next_ioctl},
    {"printf", plain(&watched_printf), &next_printf},
    {"__printf_chk", plain(&watched_printf_chk), &next_printf_chk},
    {"syslog", plain(&watched_syslog), &next_syslog},
    {"__syslog_chk", plain(&watched_syslog_chk), &next_syslog_chk},
    {"iof_startupstep_trace", plain(&watched_trace), &next_trace},
    {"malloc", plain(&watched_malloc), &Malloc::next},
    {"free", plain(&watched_free), &Free::next},
    {"scandir", plain(&watched_scandir), &ScanDir::next},
    {"scandir64", plain(&watched_scandir), &ScanDir::next},
    {"setmntent", plain(&watched_setmntent), &SetMntEnt::next},
    {"dlopen", plain(&watched_dlopen), &DlOpen::next},
    {"dlclose", plain(&watched_dlclose), &DlClose::next},
    {"execv", plain(&watched_execv), &Exec::next},
    {"sleep", plain(&watched_sleep), &Sleep::next},
    {"pthread_create", plain(&watched_pthread_create), &Thread::next},
    CUSTOM(sprintf_s),
    CUSTOM(vsprintf_s),
    CUSTOM(vsnprintf_s),
    CUSTOM(snprintf_s),
    CUSTOM(snprintf_truncated_s),
    CUSTOM(sscanf_s),
    CUSTOM(memcpy_s),
    CUSTOM(strcpy_s),
    CUSTOM(strncpy_s),
    CUSTOM(strncat_s),
    handed_on<"memset_s", int(void *, size_t, int, size_t)>(),

    answered<"openlog", void(const char *, int, int)>(),
    answered<"closelog", void()>(),
    answered<"sync", void()>(),
    answered<"settimeofday", int(const void *, const void *)>(),
    answered<"settimeofday", int(const void *, const void *)>("__settimeofday64"),
    answered<"sigprocmask", int(int, const void *, void *)>(),
    answered<"select", int(int, void *, void *, void *, void *)>(),
    answered<"select", int(int, void *, void *, void *, void *)>("__select64"),
    answered<"usleep", int(unsigned)>(),
    answered<"RootProxyExecCmd", int32_t(const char *, uint32_t, char *, uint32_t)>(),

    handed_on<"close", int(int)>(),
    handed_on<"read", ssize_t(int, void *, size_t)>(),
    {"write", plain(&watched_write), &Write::next},
    handed_on<"lseek", Off(int, Off, int)>("lseek64"),
    handed_on<"fstat", int(int, void *)>("fstat64"),
    handed_on<"fstat", int(int, void *)>("fstat"),
    handed_on<"fstat", int(int, void *)>("__fstat64_time64"),
    handed_on<"stat", Stat>("stat64"),
    handed_on<"stat", Stat>("stat"),
    handed_on<"stat", Stat>("__stat64_time64"),
    handed_on<"lstat", Stat>("lstat64"),
    handed_on<"lstat", Stat>("lstat"),
    handed_on<"lstat", Stat>("__lstat64_time64"),
    handed_on<"access", int(const char *, int)>(),
    handed_on<"readlink", ssize_t(const char *, char *, size_t)>(),
    handed_on<"realpath", char *(const char *, char *)>(),
    handed_on<"realpath", char *(const char *, char *, size_t)>("__realpath_chk"),
    handed_on<"symlink", int(const char *, const char *)>(),
    handed_on<"unlink", int(const char *)>(),
    handed_on<"remove", int(const char *)>(),
    handed_on<"mkfifo", int(const char *, unsigned)>(),
    handed_on<"fchmod", int(int, unsigned)>(),
    handed_on<"ftruncate", int(int, Off)>("ftruncate64"),
    handed_on<"mmap", void *(void *, size_t, int, int, int, Off)>("mmap64"),
    handed_on<"msync", int(void *, size_t, int)>(),
    handed_on<"opendir", void *(const char *)>(),
    handed_on<"readdir", void *(void *)>("readdir64"),
    handed_on<"readdir", void *(void *)>("readdir"),
    handed_on<"closedir", int(void *)>(),
    handed_on<"getmntent_r", void *(void *, void *, char *, int)>(),
    handed_on<"fopen", void *(const char *, const char *)>("fopen64"),
    handed_on<"fopen", void *(const char *, const char *)>("fopen"),
    handed_on<"fclose", int(void *)>(),
    handed_on<"fread", size_t(void *, size_t, size_t, void *)>(),
    handed_on<"fseek", int(void *, long, int)>(),
    handed_on<"ftell", long(void *)>(),
    handed_on<"dlsym", void *(void *, const char *)>(),
    handed_on<"clock_gettime", int(int, void *)>(),
    handed_on<"clock_gettime", int(int, void *)>("__clock_gettime64"),
    handed_on<"localtime_r", void *(const void *, void *)>(),
    handed_on<"localtime_r", void *(const void *, void *)>("__localtime64_r"),
    handed_on<"mktime", long(void *)>(),
    handed_on<"mktime", long long(void *)>("__mktime64"),
    handed_on<"strftime", size_t(char *, size_t, const char *, const void *)>(),
    handed_on<"sysinfo", int(void *)>(),
    handed_on<"time", long(void *)>(),
    handed_on<"time", long long(void *)>("__time64"),

    handed_on<"GetEnv", uint32_t(const char *, char *)>(),
    handed_on<"SetEnv", uint32_t(const char *, const char *)>(),
    handed_on<"bsp_getmemenv_s", uint32_t(const char *, char *, uint32_t)>(),
    handed_on<"bsp_setenv_s", uint32_t(const char *, const char *, uint32_t)>(),
    answered<"bsp_update_norflash_data_area", uint32_t()>(),
    answered<"CCPKG_ExtractFileFromCCExt", uint32_t(const char *, const char *, uint32_t, uint32_t)>(),
    handed_on<"IsNeedRootProxy", int32_t()>(),
    handed_on<"iof_get_attr_value", uint32_t(const char *, uint32_t, uint32_t, uint32_t, void *, uint32_t)>(),
    handed_on<"iof_timer_get_base_64bit", uint32_t(uint32_t *, uint32_t *)>(),
    handed_on<"iof_timer_get_freq", uint32_t()>(),
};

} // namespace

std::span<const StandIn> stand_ins()
{
    return all;
}

void use_mounts(const char *file)
{
    own_mounts = file;
}

} // namespace sweep
