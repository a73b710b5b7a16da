// SPDX-License-Identifier: Apache-2.0
// Where the second copy of a directory lies.
#include "base/report.hpp"
#include "base/result.hpp"

#include <moxboot/backup.h>
#include <moxboot/board.h>
#include <moxboot/families.h>
#include <moxboot/platform.h>

#include <cstring>

using namespace moxboot;

namespace
{

constexpr const char *home = "/opt/moxv8/home/";
constexpr const char *home_rootbak = "/opt/moxv8/home/rootbak/";
constexpr const char *home_backcc = "/opt/moxv8/home/backcc/";
constexpr const char *private_data = "/opt/moxv8/private/";
constexpr const char *backup_home = "/opt/moxv8bak/home/";
constexpr const char *backup_private = "/opt/moxv8bak/private/";

int copy(const char *path, char *out, uint32_t out_len)
{
    return strncpy_s(out, out_len, path, strlen(path));
}

uint32_t copy_or_report(const char *path, char *out, uint32_t out_len)
{
    int copied = copy(path, out, out_len);
    if (copied != 0)
        REPORT_FAILURE("String copy unsuccessfully, return check code=%d\n\n", copied);
    return copied == 0 ? ok : failed;
}

uint32_t copy_silently(const char *path, char *out, uint32_t out_len)
{
    return copy(path, out, out_len) == 0 ? ok : failed;
}

// The old root backup's own words.
uint32_t copy_home_of_rootbak(const char *path, char *out, uint32_t out_len)
{
    int copied = copy(path, out, out_len);
    if (copied != 0)
        REPORT_FAILURE("String copy not success, return check code=%d\n\n", copied);
    return copied == 0 ? ok : failed;
}

uint32_t home_of_this_board(const char *, char *out, uint32_t out_len)
{
    return DrvbootGetBackupPathofHome(out, out_len);
}

uint32_t data_of_this_board(const char *, char *out, uint32_t out_len)
{
    return DrvbootGetBackupPathofData(out, out_len);
}

struct Directory {
    const char *source;
    const char *backup; // where it does not depend on the board
    uint32_t (*find)(const char *backup, char *out, uint32_t out_len);
};
constexpr Directory directories[] = {
    {home, nullptr, home_of_this_board},
    {"/opt/moxv8/data/", nullptr, data_of_this_board},
    {private_data, backup_private, copy_or_report},
    {backup_private, private_data, copy_or_report},
    {backup_home, home, copy_or_report},
    {home_rootbak, home, copy_home_of_rootbak},
};

// With or without the slash at the end.
bool names(const char *dir, const char *source)
{
    const size_t without_slash = strlen(source) - 1;
    return strcmp(dir, source) == 0 ||
           (strncmp(dir, source, without_slash) == 0 && dir[without_slash] == '\0');
}

} // namespace

int32_t MOX_GetSysBackupPath(const char *dir, char *out, uint32_t out_len)
{
    if (dir == nullptr || out == nullptr)
        return -1;
    for (const Directory &directory : directories)
        if (names(dir, directory.source))
            return static_cast<int32_t>(directory.find(directory.backup, out, out_len));
    return -1;
}

uint32_t DrvbootGetBackupPathofHome(char *out, uint32_t out_len)
{
    uint32_t hard_type = 0;
    if (MOX_GetBoardHardType(&hard_type) == 0) {
        REPORT_FAILURE("Drvboot get backup path of home: get hardtype not OK\n");
        return failed;
    }
    if (drvboot_IsUseRootbak(hard_type) != 0)
        return copy_or_report(home_rootbak, out, out_len);
    if (DrvbootIsSupportSingleBakup(hard_type) != 0)
        return copy_silently(home_backcc, out, out_len);
    return copy_or_report(backup_home, out, out_len);
}

uint32_t DrvbootGetBackupPathofData(char *out, uint32_t out_len)
{
    uint32_t hard_type = 0;
    if (MOX_GetBoardHardType(&hard_type) == 0) {
        REPORT_FAILURE("Drvboot get backup path of data: get hardtype not OK\n");
        return failed;
    }
    if (DrvbootIsSupportSingleBakup(hard_type) != 0)
        return copy_silently(home_backcc, out, out_len);
    if (DrvbootIsSupporDataBakup(hard_type) != 0)
        return copy_silently("/opt/moxv8/data_bak/", out, out_len);
    return copy_or_report("/opt/moxv8bak/data/", out, out_len);
}
