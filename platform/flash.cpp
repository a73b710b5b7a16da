// SPDX-License-Identifier: Apache-2.0
// Where the flash lies, and its NOR data area. Refreshing that area has no effect that a program could see on
// the board; the stand-in counts, so that a person can.
#include "flash.hpp"

#include "store.hpp"

#include <moxboot/platform.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <sys/stat.h>

namespace
{

constexpr uint32_t failed = 1;
constexpr const char *count_name = "refreshed";

} // namespace

bool moxplatform_flash_path(const char *name, char (&path)[PATH_MAX])
{
    const char *folder = secure_getenv("MOXPLATFORM_FLASH");
    if (folder == nullptr || folder[0] == '\0')
        folder = "/opt/moxv8/var/flash";
    if (mkdir(folder, 0755) != 0 && errno != EEXIST)
        return false;
    const int length = snprintf(path, sizeof path, "%s/%s", folder, name);
    return length > 0 && static_cast<size_t>(length) < sizeof path;
}

uint32_t bsp_update_norflash_data_area(void)
{
    char path[PATH_MAX];
    char count[16] = "0";
    if (!moxplatform_flash_path("nor-data-area", path))
        return failed;
    platform::store_get(path, count_name, count, sizeof count);
    const int length = snprintf(count, sizeof count, "%lu", strtoul(count, nullptr, 10) + 1);
    return platform::store_set(path, count_name, {count, static_cast<size_t>(length)}) ? 0 : failed;
}
