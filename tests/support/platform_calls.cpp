// SPDX-License-Identifier: Apache-2.0
// Stands in front of the platform's functions: passes a call on to the stand-in unless a plan says otherwise.
#include "support/library.hpp"
#include "support/plans.hpp"

#include <moxboot/platform.h>

#include <cstdarg>
#include <dlfcn.h>

namespace
{

using test::Plans;

Plans plans;
std::optional<test::Timer> timer;

// The definition behind this one.
template <typename Function>
Function *next(Function *, const char *name)
{
    return reinterpret_cast<Function *>(dlsym(RTLD_NEXT, name));
}

} // namespace

#define NEXT(name) next(&name, #name)

extern "C" {

int memcpy_s(void *dest, size_t dest_max, const void *src, size_t count)
{
    if (auto planned = plans.take("memcpy_s", __builtin_return_address(0)))
        return static_cast<int>(*planned);
    return NEXT(memcpy_s)(dest, dest_max, src, count);
}

int memset_s(void *dest, size_t dest_max, int c, size_t count)
{
    if (auto planned = plans.take("memset_s", __builtin_return_address(0)))
        return static_cast<int>(*planned);
    return NEXT(memset_s)(dest, dest_max, c, count);
}

int strcpy_s(char *dest, size_t dest_max, const char *src)
{
    if (auto planned = plans.take("strcpy_s", __builtin_return_address(0)))
        return static_cast<int>(*planned);
    return NEXT(strcpy_s)(dest, dest_max, src);
}

int strncpy_s(char *dest, size_t dest_max, const char *src, size_t count)
{
    if (auto planned = plans.take("strncpy_s", __builtin_return_address(0)))
        return static_cast<int>(*planned);
    return NEXT(strncpy_s)(dest, dest_max, src, count);
}

int strncat_s(char *dest, size_t dest_max, const char *src, size_t count)
{
    if (auto planned = plans.take("strncat_s", __builtin_return_address(0)))
        return static_cast<int>(*planned);
    return NEXT(strncat_s)(dest, dest_max, src, count);
}

int sprintf_s(char *dest, size_t dest_max, const char *format, ...)
{
    if (auto planned = plans.take("sprintf_s", __builtin_return_address(0)))
        return static_cast<int>(*planned);
    va_list args;
    va_start(args, format);
    int result = NEXT(vsprintf_s)(dest, dest_max, format, args);
    va_end(args);
    return result;
}

int vsprintf_s(char *dest, size_t dest_max, const char *format, va_list args)
{
    if (auto planned = plans.take("vsprintf_s", __builtin_return_address(0)))
        return static_cast<int>(*planned);
    return NEXT(vsprintf_s)(dest, dest_max, format, args);
}

int vsnprintf_s(char *dest, size_t dest_max, size_t count, const char *format, va_list args)
{
    if (auto planned = plans.take("vsnprintf_s", __builtin_return_address(0)))
        return static_cast<int>(*planned);
    return NEXT(vsnprintf_s)(dest, dest_max, count, format, args);
}

int snprintf_truncated_s(char *dest, size_t dest_max, const char *format, ...)
{
    if (auto planned = plans.take("snprintf_truncated_s", __builtin_return_address(0)))
        return static_cast<int>(*planned);
    // Prints into room enough and copies what fits: there is no form of this function that takes a va_list.
    char whole[1024];
    va_list args;
    va_start(args, format);
    NEXT(vsnprintf_s)(whole, sizeof whole, sizeof whole - 1, format, args);
    va_end(args);
    return NEXT(snprintf_truncated_s)(dest, dest_max, "%s", whole);
}

uint32_t SetEnv(const char *name, const char *value)
{
    if (auto planned = plans.take("SetEnv", __builtin_return_address(0)))
        return static_cast<uint32_t>(*planned);
    return NEXT(SetEnv)(name, value);
}

uint32_t bsp_setenv_s(const char *name, const char *value, uint32_t length)
{
    if (auto planned = plans.take("bsp_setenv_s", __builtin_return_address(0)))
        return static_cast<uint32_t>(*planned);
    return NEXT(bsp_setenv_s)(name, value, length);
}

int32_t IsNeedRootProxy(void)
{
    if (auto planned = plans.take("IsNeedRootProxy", __builtin_return_address(0)))
        return static_cast<int32_t>(*planned);
    return NEXT(IsNeedRootProxy)();
}

int32_t RootProxyExecCmd(const char *command, uint32_t length, char *output, uint32_t output_size)
{
    if (auto planned = plans.take("RootProxyExecCmd", __builtin_return_address(0)))
        return static_cast<int32_t>(*planned);
    return NEXT(RootProxyExecCmd)(command, length, output, output_size);
}

uint32_t GetEnv(const char *name, char *value)
{
    if (auto planned = plans.take("GetEnv", __builtin_return_address(0)))
        return static_cast<uint32_t>(*planned);
    return NEXT(GetEnv)(name, value);
}

uint32_t bsp_getmemenv_s(const char *name, char *value, uint32_t size)
{
    if (auto planned = plans.take("bsp_getmemenv_s", __builtin_return_address(0)))
        return static_cast<uint32_t>(*planned);
    return NEXT(bsp_getmemenv_s)(name, value, size);
}

uint32_t iof_timer_get_base_64bit(uint32_t *low, uint32_t *high)
{
    if (!timer)
        return NEXT(iof_timer_get_base_64bit)(low, high);
    if (timer->ticks) {
        *low = static_cast<uint32_t>(*timer->ticks);
        *high = static_cast<uint32_t>(*timer->ticks >> 32);
    }
    return timer->result;
}

uint32_t iof_timer_get_freq(void)
{
    return timer ? timer->frequency : NEXT(iof_timer_get_freq)();
}

} // extern "C"

namespace test
{

void answer_platform(const std::string &function, int result, unsigned skip, unsigned times)
{
    plans.add(function, {result, std::nullopt, skip, times});
}

void set_timer(std::optional<Timer> wanted)
{
    timer = wanted;
}

void forget_platform_plans()
{
    plans.clear();
    timer.reset();
}

} // namespace test
