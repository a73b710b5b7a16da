// SPDX-License-Identifier: Apache-2.0
// Black boxes: opening, reading, writing, removing.
#include "base/report.hpp"

#include <moxboot/blackbox.h>
#include <moxboot/platform.h>

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace moxboot;

namespace
{

constexpr size_t path_size = 90;
constexpr uint32_t suffix_room = 10; // "_blackbox" and a terminator
constexpr uint32_t name_room = 64;
constexpr mode_t box_mode = 0640;
constexpr int most_failures = 5;

bool make_path(char (&path)[path_size], const char *name)
{
    return sprintf_s(path, sizeof path, "%s%s%s", "/opt/moxv8/var/", name, "_blackbox") >= 0;
}

bool valid_name(const char *name)
{
    return name != nullptr && DrvBootBlackBoxInvalidLen(static_cast<uint32_t>(strlen(name))) == 0;
}

bool in_nvram(int32_t handle)
{
    return DrvBootHasNvramBlackBox() != 0 && handle >= DRVBOOT_NVRAM_HANDLE;
}

uint32_t nvram_index(int32_t handle)
{
    return static_cast<uint32_t>(handle - DRVBOOT_NVRAM_HANDLE);
}

// A box of which NVRAM knows nothing: here a file that does not go away counts.
int32_t remove_file_of_nvram_board(const char *path)
{
    if (unlink(path) == 0)
        return 0;
    REPORT_FAILURE("[Destroy Blackbox]unlink errno is %d.\n", errno);
    return MOX_BLACKBOX_ERR_UNLINK;
}

} // namespace

uint32_t DrvBootBlackBoxInvalidLen(uint32_t len)
{
    return len > name_room - suffix_room ? 1 : 0;
}

int32_t MOX_GetBlackbox(const char *name, uint32_t size)
{
    if (size > MOX_BLACKBOX_MAX_SIZE || !valid_name(name))
        return MOX_BLACKBOX_ERR_ARGUMENT;
    int32_t index = DrvBootGetNvramBoxIndex(name, size);
    if (index >= 0) {
        REPORT_INFO("[GetBlackbox]Nvram %s GetNvramBoxIndex: %d.", name, index);
        return index + DRVBOOT_NVRAM_HANDLE;
    }
    char path[path_size];
    if (!make_path(path, name)) {
        REPORT_INFO("[GetBlackBox]Format path of black box %s unsuccessfully.\n", name);
        return MOX_BLACKBOX_ERR_ARGUMENT;
    }
    return DrvBootGetBlackBoxFileId(path, static_cast<int32_t>(size));
}

int32_t DrvBootGetBlackBoxFileId(const char *path, int32_t size)
{
    int fd = open(path, O_RDWR | O_CREAT, box_mode);
    if (fd < 0) {
        REPORT_FAILURE("Drvboot info:open %s unsuccessfully, result is %d, fd is %d\n", path, errno, fd);
        return MOX_BLACKBOX_ERR_OPEN;
    }
    if (ftruncate(fd, size) != 0) {
        REPORT_FAILURE("Drvboot info:ftruncate unsuccessfully, result is %d\n", errno);
        DrvBootBlackBoxGetFdInfo(fd);
        close(fd);
        return MOX_BLACKBOX_ERR_RESIZE;
    }
    return fd;
}

int32_t MOX_PutBlackbox(int32_t handle)
{
    return close(handle) == 0 ? 0 : MOX_BLACKBOX_ERR_CLOSE;
}

int32_t MOX_ReadBlackbox(int32_t handle, uint32_t offset, uint32_t length, uint8_t *buffer)
{
    if (buffer == nullptr) {
        REPORT_FAILURE("Drvboot read black box unsuccessfully, para is null\n");
        return MOX_BLACKBOX_ERR_ARGUMENT;
    }
    if (in_nvram(handle))
        return DrvBootReadNvramBoxIndex(nvram_index(handle), offset, length, buffer);
    struct stat status = {};
    if (fstat(handle, &status) != 0) {
        DrvBootBlackBoxErrLog(handle, "fstat NOK", errno);
        return MOX_BLACKBOX_ERR_STAT;
    }
    // The sum is one of 32 bits. Where it wraps, the offset lies beyond the box and there is nothing to read,
    // or the length is that of a buffer which takes the rest of any box.
    if (status.st_size < static_cast<off_t>(offset + length)) {
        REPORT_FAILURE("Drvboot read black box, offset is 0x%x, length is 0x%x\n", offset, length);
        DrvBootBlackBoxErrLog(handle, "size NOK", 0);
        return MOX_BLACKBOX_ERR_RANGE;
    }
    lseek(handle, static_cast<off_t>(offset), SEEK_SET);
    ssize_t count = read(handle, buffer, length);
    if (count < 0) {
        DrvBootBlackBoxErrLog(handle, "read NOK", errno);
        return MOX_BLACKBOX_ERR_READ;
    }
    return static_cast<int32_t>(count);
}

int32_t MOX_WriteBlackbox(int32_t handle, uint32_t offset, uint32_t length, const uint8_t *buffer)
{
    if (buffer == nullptr)
        return MOX_BLACKBOX_ERR_ARGUMENT;
    if (in_nvram(handle))
        return DrvBootWriteNvramBoxIndex(nvram_index(handle));
    return MOX_WriteBlackboxOfNonNvram(handle, offset, length, buffer);
}

int32_t MOX_WriteBlackboxOfNonNvram(int32_t handle, uint32_t offset, uint32_t length, const uint8_t *buffer)
{
    if (buffer == nullptr)
        return MOX_BLACKBOX_ERR_ARGUMENT;
    struct stat status = {};
    if (fstat(handle, &status) != 0) {
        DrvBootBlackBoxErrLog(handle, "fstat NOK for write", errno);
        return MOX_BLACKBOX_ERR_STAT;
    }
    // A sum of more than 32 bits must not wrap here: a box never grows by writing.
    if (status.st_size < static_cast<off_t>(offset) + static_cast<off_t>(length)) {
        const int error = errno;
        REPORT_FAILURE("write black box st_size 0x%x, offset 0x%x, length 0x%x\n",
                       static_cast<uint32_t>(status.st_size), offset, length);
        DrvBootBlackBoxErrLog(handle, "unexpected size for write", error);
        DrvBootBlackBoxGetFdInfo(handle);
        return MOX_BLACKBOX_ERR_RANGE;
    }
    lseek(handle, static_cast<off_t>(offset), SEEK_SET);
    uint32_t written = 0;
    int failures = 0;
    while (failures < most_failures && written < length) {
        ssize_t count = write(handle, buffer + written, length - written);
        if (count >= 0) {
            written += static_cast<uint32_t>(count);
            continue;
        }
        const int error = errno;
        REPORT_FAILURE("Drvboot write black box info: 0x%x 0x%x 0x%x\n", offset, length, written);
        ++failures;
        DrvBootBlackBoxErrLog(handle, "unexpected count for write", error);
    }
    if (failures == most_failures) {
        REPORT_FAILURE("Drvboot write black box for write not ok exceed %d times\n", most_failures);
        return MOX_BLACKBOX_ERR_WRITE;
    }
    return static_cast<int32_t>(written);
}

int32_t MOX_DestroyBlackbox(const char *name)
{
    if (!valid_name(name))
        return MOX_BLACKBOX_ERR_ARGUMENT;
    const bool has_nvram = DrvBootHasNvramBlackBox() != 0;
    const bool known_to_nvram = has_nvram && DrvBootGetNvramBoxIndex(name, 0) >= 0;
    if (known_to_nvram)
        DrvBootClearNvramBoxIndex();
    char path[path_size];
    if (!make_path(path, name))
        return MOX_BLACKBOX_ERR_ARGUMENT;
    if (has_nvram && !known_to_nvram)
        return remove_file_of_nvram_board(path);
    unlink(path);
    return 0;
}
