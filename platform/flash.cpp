// SPDX-License-Identifier: Apache-2.0
// Where the flash lies, and its NOR data area. Refreshing that area has no effect that a program could see on
// the board; the stand-in counts, so that a person can.
#include "flash.hpp"

#include "new_file.hpp"
#include "store.hpp"

#include <moxboot/platform.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <sys/stat.h>
#include <unistd.h>

namespace
{

constexpr uint32_t failed = 1;
constexpr const char *count_name = "refreshed";

// The folder's own name must last like those in it.
bool have_folder(const char *folder)
{
    if (mkdir(folder, 0755) == 0)
        return platform::flush_folder(folder);
    return errno == EEXIST;
}

} // namespace

bool moxplatform_flash_path(const char *name, char (&path)[PATH_MAX])
{
    const char *folder = secure_getenv("MOXPLATFORM_FLASH");
    if (folder == nullptr || folder[0] == '\0')
        folder = "/opt/moxv8/var/flash";
    if (!have_folder(folder))
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
    // An area that is there but cannot be read must not start to count anew.
    if (!platform::store_get(path, count_name, count, sizeof count) && access(path, F_OK) == 0)
        return failed;
    const auto next = static_cast<uint32_t>(strtoul(count, nullptr, 10)) + 1;
    const int length = snprintf(count, sizeof count, "%u", next);
    return platform::store_set(path, count_name, {count, static_cast<size_t>(length)}) ? 0 : failed;
}
