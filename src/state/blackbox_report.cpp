// SPDX-License-Identifier: Apache-2.0
// After a failure: which file a black box's handle stands for.
#include "base/report.hpp"

#include <moxboot/blackbox.h>
#include <moxboot/platform.h>

#include <cerrno>
#include <sys/stat.h>
#include <unistd.h>

using namespace moxboot;

namespace
{

constexpr size_t path_size = 90;

template <typename Number>
unsigned long word(Number number)
{
    return static_cast<unsigned long>(number);
}

} // namespace

void DrvBootBlackBoxGetFdInfo(int32_t fd)
{
    REPORT_INFO("FdInfo fd:0x%lx\n", word(fd));
    struct stat status = {};
    if (fstat(fd, &status) != 0) {
        REPORT_INFO("Drvboot GetFdInfo unsuccessfully, result is %d\n", errno);
        return;
    }
    REPORT_INFO("FdInfo st_dev:0x%lx\n", word(status.st_dev));
    REPORT_INFO("FdInfo st_ino:0x%lx\n", word(status.st_ino));
    REPORT_INFO("FdInfo st_mode:0x%lx\n", word(status.st_mode));
    REPORT_INFO("FdInfo st_nlink:0x%lx\n", word(status.st_nlink));
    REPORT_INFO("FdInfo st_uid:0x%lx\n", word(status.st_uid));
    REPORT_INFO("FdInfo st_gid:0x%lx\n", word(status.st_gid));
    REPORT_INFO("FdInfo st_rdev:0x%lx\n", word(status.st_rdev));
    REPORT_INFO("FdInfo st_size:0x%lx\n", word(status.st_size));
    REPORT_INFO("FdInfo st_blksize:0x%lx\n", word(status.st_blksize));
    REPORT_INFO("FdInfo st_blocks:0x%lx\n", word(status.st_blocks));

    char link[32] = {};
    sprintf_s(link, sizeof link, "/proc/self/fd/%d", fd);
    char path[path_size] = {};
    ssize_t length = readlink(link, path, sizeof path - 1);
    if (length < 0) {
        REPORT_INFO("Drvboot GetFdInfo unsuccessfully, readlink result is: %d %d\n", static_cast<int>(length),
                    errno);
        return;
    }
    REPORT_INFO("FdInfo Blackbox path:%s\n", path);
}

void DrvBootBlackBoxErrLog(int32_t handle, const char *what, int32_t err)
{
    REPORT_FAILURE("Drvboot black box %s, err is %d\n", what, err);
    DrvBootBlackBoxGetFdInfo(handle);
}
