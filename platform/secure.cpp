// SPDX-License-Identifier: Apache-2.0
// The bounds-checked functions. A program may put its own definition in front of any of them, so none is
// built upon another: they share the static functions below.
#include <moxboot/platform.h>

#include <cerrno>
#include <cstdio>
#include <cstring>

namespace
{

// A copy that fails must not leave half a result, nor an old one that could be taken for the new.
int refuse_text(char *dest, size_t dest_max, int error)
{
    if (dest != nullptr && dest_max > 0)
        dest[0] = '\0';
    return error;
}

int refuse_memory(void *dest, size_t dest_max, int error)
{
    if (dest != nullptr && dest_max > 0)
        memset(dest, 0, dest_max);
    return error;
}

// Puts `length` characters and a terminator at `used`. Source and destination may overlap.
int put_text(char *dest, size_t dest_max, size_t used, const char *src, size_t length)
{
    if (length >= dest_max - used)
        return refuse_text(dest, dest_max, ERANGE);
    memmove(dest + used, src, length);
    dest[used + length] = '\0';
    return 0;
}

// All that fits into `dest_max` bytes. The result is the length that the whole text has, negative for an
// error (with an empty destination).
MOXBOOT_PRINTF(3, 0)
int print(char *dest, size_t dest_max, const char *format, va_list args)
{
    if (dest == nullptr || dest_max == 0 || format == nullptr)
        return refuse_text(dest, dest_max, -1);
    const int length = vsnprintf(dest, dest_max, format, args);
    return length < 0 ? refuse_text(dest, dest_max, -1) : length;
}

bool longer(int length, size_t most)
{
    return length >= 0 && static_cast<size_t>(length) > most;
}

MOXBOOT_PRINTF(3, 0)
int print_whole(char *dest, size_t dest_max, const char *format, va_list args)
{
    const int length = print(dest, dest_max, format, args);
    return longer(length, dest_max - 1) ? refuse_text(dest, dest_max, -1) : length;
}

MOXBOOT_PRINTF(4, 0)
int print_counted(char *dest, size_t dest_max, size_t count, const char *format, va_list args)
{
    if (count >= dest_max)
        return print_whole(dest, dest_max, format, args);
    const int length = print(dest, count + 1, format, args);
    return longer(length, count) ? -1 : length;
}

// A text conversion writes without a bound here, so the reader takes numbers only.
bool reads_text(const char *format)
{
    for (const char *at = strchr(format, '%'); at != nullptr; at = strchr(at, '%')) {
        ++at;
        at += strspn(at, "*0123456789hlLjztqm");
        if (*at != '\0' && strchr("sScC[", *at) != nullptr)
            return true;
        if (*at != '\0')
            ++at;
    }
    return false;
}

} // namespace

int memcpy_s(void *dest, size_t dest_max, const void *src, size_t count)
{
    if (dest == nullptr || src == nullptr)
        return refuse_memory(dest, dest_max, EINVAL);
    if (dest_max == 0 || count > dest_max)
        return refuse_memory(dest, dest_max, ERANGE);
    memmove(dest, src, count);
    return 0;
}

int memset_s(void *dest, size_t dest_max, int c, size_t count)
{
    if (dest == nullptr)
        return EINVAL;
    if (dest_max == 0 || count > dest_max)
        return refuse_memory(dest, dest_max, ERANGE);
    memset(dest, c, count);
    return 0;
}

int strcpy_s(char *dest, size_t dest_max, const char *src)
{
    if (dest == nullptr || src == nullptr)
        return refuse_text(dest, dest_max, EINVAL);
    return put_text(dest, dest_max, 0, src, strnlen(src, dest_max));
}

int strncpy_s(char *dest, size_t dest_max, const char *src, size_t count)
{
    if (dest == nullptr || src == nullptr)
        return refuse_text(dest, dest_max, EINVAL);
    return put_text(dest, dest_max, 0, src, strnlen(src, count < dest_max ? count : dest_max));
}

int strncat_s(char *dest, size_t dest_max, const char *src, size_t count)
{
    if (dest == nullptr || src == nullptr)
        return refuse_text(dest, dest_max, EINVAL);
    const size_t used = strnlen(dest, dest_max);
    return put_text(dest, dest_max, used, src, strnlen(src, count < dest_max ? count : dest_max));
}

int sprintf_s(char *dest, size_t dest_max, const char *format, ...)
{
    va_list args;
    va_start(args, format);
    const int length = print_whole(dest, dest_max, format, args);
    va_end(args);
    return length;
}

int vsprintf_s(char *dest, size_t dest_max, const char *format, va_list args)
{
    return print_whole(dest, dest_max, format, args);
}

int snprintf_s(char *dest, size_t dest_max, size_t count, const char *format, ...)
{
    va_list args;
    va_start(args, format);
    const int length = print_counted(dest, dest_max, count, format, args);
    va_end(args);
    return length;
}

int vsnprintf_s(char *dest, size_t dest_max, size_t count, const char *format, va_list args)
{
    return print_counted(dest, dest_max, count, format, args);
}

int snprintf_truncated_s(char *dest, size_t dest_max, const char *format, ...)
{
    va_list args;
    va_start(args, format);
    const int length = print(dest, dest_max, format, args);
    va_end(args);
    return longer(length, dest_max - 1) ? static_cast<int>(dest_max - 1) : length;
}

int sscanf_s(const char *buffer, const char *format, ...)
{
    if (buffer == nullptr || format == nullptr || reads_text(format))
        return -1;
    va_list args;
    va_start(args, format);
    const int fields = vsscanf(buffer, format, args);
    va_end(args);
    return fields;
}
