// SPDX-License-Identifier: Apache-2.0
// The platform environment, which lasts, and the memory environment, which lies on the RAM disk and so
// survives a soft reset and no other one. Environment variables of the process name other files, for tests
// and tools.
#include <moxboot/platform.h>

#include "store.hpp"

#include <cstdlib>
#include <cstring>

namespace
{

struct Place {
    const char *variable;
    const char *file;
};
constexpr Place lasting{"MOXPLATFORM_ENV", "/opt/moxv8/var/platform.env"};
constexpr Place memory{"MOXPLATFORM_MEMENV", "/opt/moxv8/SoftResetData/.memenv"};

constexpr uint32_t failed = 1;

const char *path_of(const Place &place)
{
    // A privileged program does not let its caller choose a file.
    const char *path = secure_getenv(place.variable);
    return path != nullptr && path[0] != '\0' ? path : place.file;
}

uint32_t get(const Place &place, const char *name, char *value, size_t size)
{
    if (name == nullptr || value == nullptr)
        return failed;
    return platform::store_get(path_of(place), name, value, size) ? 0 : failed;
}

uint32_t set(const Place &place, const char *name, platform::Text value)
{
    return platform::store_set(path_of(place), name, value) ? 0 : failed;
}

} // namespace

uint32_t GetEnv(const char *name, char *value)
{
    return get(lasting, name, value, platform::most_characters + 1);
}

uint32_t SetEnv(const char *name, const char *value)
{
    if (name == nullptr || value == nullptr)
        return failed;
    return set(lasting, name, {value, strnlen(value, platform::most_characters + 1)});
}

uint32_t bsp_getmemenv_s(const char *name, char *value, uint32_t size)
{
    return get(memory, name, value, size);
}

uint32_t bsp_setenv_s(const char *name, const char *value, uint32_t length)
{
    if (name == nullptr || value == nullptr)
        return failed;
    // Callers hand over whole buffers too: the text ends at its terminator, which must lie within the length.
    const size_t characters = strnlen(value, length);
    return characters < length ? set(memory, name, {value, characters}) : failed;
}
