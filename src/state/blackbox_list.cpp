// SPDX-License-Identifier: Apache-2.0
// Which black boxes there are.
#include "base/result.hpp"

#include <moxboot/blackbox.h>
#include <moxboot/platform.h>

#include <cstdlib>
#include <cstring>
#include <dirent.h>

using namespace moxboot;

namespace
{

bool matches(const dirent &entry, const char *pattern)
{
    return strstr(entry.d_name, pattern) != nullptr && strstr(entry.d_name, "_blackbox") != nullptr;
}

} // namespace

int32_t MOX_QueryBlackbox(const char *pattern, uint32_t *count, char **list)
{
    if (pattern == nullptr || count == nullptr || list == nullptr)
        return MOX_BLACKBOX_ERR_ARGUMENT;
    *count = 0;
    *list = nullptr;
    dirent **entries = nullptr;
    const int scanned = scandir("/opt/moxv8/var/", &entries, nullptr, nullptr);
    const uint32_t entry_count = scanned < 0 ? 0 : static_cast<uint32_t>(scanned);

    uint32_t found = 0;
    for (uint32_t i = 0; i < entry_count; ++i)
        if (matches(*entries[i], pattern))
            ++found;
    if (found == 0) {
        MOX_DestroyScanDirNameList(entries, entry_count);
        return 0;
    }
    const size_t size = size_t{found} * MOX_BLACKBOX_ENTRY_SIZE;
    char *names = static_cast<char *>(malloc(size));
    if (names == nullptr) {
        MOX_DestroyScanDirNameList(entries, entry_count);
        return MOX_BLACKBOX_ERR_MEMORY;
    }
    memset(names, 0, size);
    char *slot = names;
    for (uint32_t i = 0; i < entry_count; ++i) {
        if (!matches(*entries[i], pattern))
            continue;
        strncpy_s(slot, MOX_BLACKBOX_ENTRY_SIZE, entries[i]->d_name, MOX_BLACKBOX_ENTRY_SIZE - 1);
        slot += MOX_BLACKBOX_ENTRY_SIZE;
    }
    MOX_DestroyScanDirNameList(entries, entry_count);
    *count = found;
    *list = names;
    return 0;
}

void MOX_ReleaseBlackbox(void *list)
{
    free(list);
}

void MOX_DestroyScanDirNameList(struct dirent **names, uint32_t count)
{
    if (names == nullptr || count == 0)
        return;
    for (uint32_t i = 0; i < count; ++i)
        free(names[i]);
    free(names);
}
