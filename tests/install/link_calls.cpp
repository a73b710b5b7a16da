// SPDX-License-Identifier: Apache-2.0
// Two more functions whose calls by the library are counted and failed on demand (by fail_libc() and
// answer_libc(), as "access" and "snprintf_s").
#include "support/from_library.hpp"

#include <moxboot/platform.h>

#include <cerrno>
#include <dlfcn.h>
#include <unistd.h>

namespace
{

// Whether a plan has answered the call.
bool planned(const char *function, const void *caller, const char *path, int *result)
{
    vboard::LibcCall call{function, caller};
    call.path = path;
    const auto answer = test::on_any_call(call);
    if (!answer)
        return false;
    if (answer->error)
        errno = *answer->error;
    *result = static_cast<int>(answer->result);
    return true;
}

} // namespace

extern "C" {

int access(const char *path, int mode) noexcept
{
    static auto *const next = reinterpret_cast<int (*)(const char *, int)>(dlsym(RTLD_NEXT, "access"));
    int result = 0;
    return planned("access", __builtin_return_address(0), path, &result) ? result : next(path, mode);
}

int snprintf_s(char *dest, size_t dest_max, size_t count, const char *format, ...)
{
    int result = 0;
    if (planned("snprintf_s", __builtin_return_address(0), format, &result))
        return result;
    va_list args;
    va_start(args, format);
    result = vsnprintf_s(dest, dest_max, count, format, args);
    va_end(args);
    return result;
}

} // extern "C"
