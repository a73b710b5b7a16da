// SPDX-License-Identifier: Apache-2.0
// The mounted file systems: which one is the RAM disk, and which lie in memory.
#include "base/report.hpp"
#include "base/result.hpp"

#include <moxboot/platform.h>
#include <moxboot/reserved_memory.h>

#include <cerrno>
#include <cstring>
#include <dirent.h>
#include <mntent.h>

using namespace moxboot;

namespace
{

constexpr const char *mounts = "/proc/mounts";

// The mount table, read an entry at a time.
class MountTable
{
  public:
    // cppcheck-suppress uninitMemberVar ; the line is filled before it is read
    MountTable() : file_(setmntent(mounts, "r")) {}
    MountTable(const MountTable &) = delete;
    MountTable &operator=(const MountTable &) = delete;
    ~MountTable()
    {
        if (file_ != nullptr)
            endmntent(file_);
    }
    bool valid() const
    {
        return file_ != nullptr;
    }
    // Null at the end. The entry holds until the next call.
    const mntent *next()
    {
        return getmntent_r(file_, &entry_, line_, sizeof line_);
    }
    const mntent *next_in_memory()
    {
        const mntent *entry;
        do
            entry = next();
        while (entry != nullptr &&
               (strcmp(entry->mnt_type, "yaffs2") == 0 || strcmp(entry->mnt_type, "ext2") == 0));
        return entry;
    }

  private:
    FILE *file_;
    mntent entry_ = {};
    char line_[1024];
};

} // namespace

uint32_t MOX_IsMemDirExist(const char *dir)
{
    if (dir == nullptr)
        return failed;
    DIR *opened = opendir(dir);
    if (opened == nullptr) {
        REPORT_FAILURE("[MemDirExist]Open dir %s not success.\r\n\n", dir);
        return failed;
    }
    closedir(opened);
    MountTable table;
    if (!table.valid()) {
        REPORT_FAILURE("[MemDirExist]Setmntent of %s not success.\r\n\n", dir);
        return failed;
    }
    while (const mntent *entry = table.next())
        if (strcmp(entry->mnt_dir, dir) == 0 && strstr(entry->mnt_fsname, "/dev/pramdisk") != nullptr)
            return ok;
    REPORT_FAILURE("[MemDirExist]Getmntent_r of %s not success.\r\n\n", dir);
    return failed;
}

uint32_t MOX_GetMemFsCount(uint32_t *count)
{
    if (count == nullptr)
        return failed;
    *count = 0;
    MountTable table;
    if (!table.valid()) {
        REPORT_FAILURE("Drvboot get mem fs count not success for setmntent %s not ok(%d)\n", mounts, errno);
        return failed;
    }
    uint32_t found = 0;
    while (table.next_in_memory() != nullptr)
        ++found;
    *count = found;
    return ok;
}

uint32_t MOX_GetMemFsList(uint32_t max, char **list, uint32_t *count)
{
    if (list == nullptr || count == nullptr)
        return failed;
    *count = 0;
    MountTable table;
    if (!table.valid()) {
        REPORT_FAILURE("Drvboot get mem fs list not success for setmntent %s not ok(%d)\n", mounts, errno);
        return failed;
    }
    uint32_t found = 0;
    while (found < max) {
        const mntent *entry = table.next_in_memory();
        if (entry == nullptr)
            break;
        strncpy_s(list[found], MOX_MEMFS_DIR_SIZE, entry->mnt_dir, MOX_MEMFS_DIR_SIZE - 1);
        list[found][MOX_MEMFS_DIR_SIZE - 1] = '\0';
        ++found;
    }
    *count = found;
    return ok;
}
