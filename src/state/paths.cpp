// SPDX-License-Identifier: Apache-2.0
// Where product files lie.
#include "base/report.hpp"
#include "base/result.hpp"

#include <moxboot/board.h>
#include <moxboot/paths.h>
#include <moxboot/platform.h>
#include <moxboot/reserved_memory.h>
#include <moxboot/work_mode.h>

#include <cstring>
#include <sys/stat.h>

using namespace moxboot;

namespace
{

constexpr uint32_t served_board = 0x900005d1;
constexpr size_t path_size = 256;
constexpr char home[] = "/opt/moxv8/home/";
constexpr char backup_home[] = "/opt/moxv8bak/home/";
constexpr char image_manager[] = "/opt/moxv8/bim/";

const char *after_last_slash(const char *name)
{
    const char *slash = strrchr(name, '/');
    return slash != nullptr ? slash + 1 : name;
}

// Appends a file name to a home directory; 0 or the failed function's code.
template <size_t N>
int join(char (&path)[path_size], const char (&directory)[N], const char *file)
{
    int result = strncpy_s(path, sizeof path, directory, N - 1);
    return result != 0 ? result : strncat_s(path, sizeof path, file, path_size - (N - 1));
}

uint32_t answer(const char *directory, char *path, uint32_t path_len)
{
    int copied = strcpy_s(path, path_len, directory);
    if (copied != 0)
        REPORT_FAILURE("String copy not success, return check code=%d\n\n", copied);
    return copied == 0 ? ok : failed;
}

} // namespace

uint32_t MOX_GetPdtPath(uint32_t which, const char *pkg_name, char *path, uint32_t path_len)
{
    if (which != MOX_PDT_PATH_BOOT) {
        REPORT_FAILURE("[get pdt path] pdt path is not boot enPdtPath=%d\n\n", static_cast<int>(which));
        return failed;
    }
    uint32_t hard_type = 0;
    MOX_GetBoardHardType(&hard_type);
    if (hard_type != served_board) {
        REPORT_FAILURE("[get pdt path] mpu is not qrm4tzwe uiBoardType=%#x\n\n", hard_type);
        return failed;
    }
    if (pkg_name == nullptr || path == nullptr)
        return failed;
    REPORT_INFO("[get pdt path] pkg name pPara=%s\n\n", pkg_name);
    const char *file = after_last_slash(pkg_name);
    REPORT_INFO("[get pdt path] pkg name filename=%s\n\n", file);

    char main_path[path_size] = {};
    if (int result = join(main_path, home, file); result != 0) {
        REPORT_FAILURE("[MOX get pdt path] string cat path unsuccessful, ret=%d\n\n", result);
        return failed;
    }
    char backup_path[path_size] = {};
    if (int result = join(backup_path, backup_home, file); result != 0) {
        REPORT_FAILURE("[MOX get pdt path] string cat path_bak unsuccessful, ret=%d\n\n", result);
        return failed;
    }
    REPORT_INFO("[get pdt path] path = %s,path_bak=%s\n\n", main_path, backup_path);

    // A link stands for a file that may lie anywhere: it never counts as the package.
    struct stat status = {};
    if (lstat(main_path, &status) == 0) {
        REPORT_INFO("[get pdt path] pkg home dir,st_mode = %#x,S_ISLNK = %d.\n\n", status.st_mode,
                    S_ISLNK(status.st_mode) ? 1 : 0);
        if (!S_ISLNK(status.st_mode)) {
            if (answer("/boot/", path, path_len) != ok)
                return failed;
            REPORT_INFO("[get pdt path] pkg in home dir,pcPath =%s.\n\n", path);
            return ok;
        }
    }
    if (lstat(backup_path, &status) == 0) {
        REPORT_INFO("[get pdt path] pkg bak home dir,st_mode = %#x,S_ISLNK=%d.\n\n", status.st_mode,
                    S_ISLNK(status.st_mode) ? 1 : 0);
        if (!S_ISLNK(status.st_mode)) {
            if (answer("/bootbak/", path, path_len) != ok)
                return failed;
            REPORT_INFO("[get pdt path] pkg in bak home dir,pcPath=%s.\n\n", path);
            return ok;
        }
    }
    REPORT_FAILURE("[get pdt path] pkg not exist.\n\n");
    return failed;
}

uint32_t MOX_GetPBAPath(char *path, uint32_t path_len)
{
    if (path == nullptr || path_len == 0) {
        REPORT_FAILURE("[PBA_Path]Input para is invalid, len=%lu.\r\n\n",
                       static_cast<unsigned long>(path_len));
        return failed;
    }
    if (path_len < MOX_PBA_PATH_SIZE) {
        REPORT_FAILURE("[PBA_Path]Buffer length(%u) is too short, need bigger than %d.\r\n\n", path_len,
                       static_cast<int>(MOX_PBA_PATH_SIZE - 1));
        return failed;
    }
    static constexpr char mount_point[] = "/opt/moxv8/bim";
    if (uint32_t result = MOX_IsMemDirExist(mount_point); result != ok) {
        REPORT_FAILURE("[PBA_Path]Path %s not exist.\r\n\n", mount_point);
        return result;
    }
    int copied = strcpy_s(path, path_len, image_manager);
    if (copied != 0)
        REPORT_FAILURE("String print not success, return check code=%d\n\n", copied);
    return copied == 0 ? ok : failed;
}

int32_t MOX_GetResPackage(char *name, uint32_t name_len)
{
    if (name == nullptr) {
        REPORT_FAILURE("Drvboot get res package not success for input arg is null\n");
        return -1;
    }
    const char *package = DrvBoot_IsPtnMode() != 0 ? "reslink_le" : "reslink_le_ptn";
    int copied = memcpy_s(name, name_len, package, strlen(package) + 1);
    if (copied != 0)
        REPORT_FAILURE("Memory copy not success, return check code=%d\n\n", copied);
    return copied == 0 ? 0 : -1;
}
