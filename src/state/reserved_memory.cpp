// SPDX-License-Identifier: Apache-2.0
// Files of the RAM disk, mapped and made resident.
#include "base/report.hpp"
#include "base/result.hpp"

#include <moxboot/platform.h>
#include <moxboot/reserved_memory.h>

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace moxboot;

namespace
{

constexpr char directory[] = "/opt/moxv8/SoftResetData/";
constexpr size_t directory_without_slash = sizeof directory - 2;
constexpr size_t path_size = sizeof directory - 1 + MOX_RSVMEM_MAX_NAME + 2;
constexpr mode_t file_mode = 0640;
constexpr uint32_t block_size = 512;

enum class Touched { yes, not_read, not_written };

// Reads a block and writes it back.
Touched touch(uint8_t *at, uint32_t size)
{
    uint8_t block[block_size];
    if (memcpy_s(block, sizeof block, at, size) != 0)
        return Touched::not_read;
    return memcpy_s(at, size, block, size) == 0 ? Touched::yes : Touched::not_written;
}

uint32_t size_and_map(int fd, uint32_t length, void **addr)
{
    if (ftruncate(fd, static_cast<off_t>(length)) != 0) {
        REPORT_FAILURE("[GetMem_MapAddr]Ftruncate errno=%d,FileSize=0x%x\n\n", errno, length);
        return MOX_RSVMEM_ERR_RESIZE;
    }
    void *mapped = mmap(nullptr, length, PROT_READ | PROT_WRITE, MAP_SHARED, fd, 0);
    if (mapped == MAP_FAILED) {
        REPORT_FAILURE("[GetMem_MapAddr]Mmap errno=%d,FileSize=0x%x\n\n", errno, length);
        return MOX_RSVMEM_ERR_MMAP;
    }
    *addr = mapped;
    return ok;
}

} // namespace

uint32_t MOX_GetRsvMemMmapAddr(const char *file_name, uint32_t file_size, void **addr)
{
    if (file_name == nullptr || addr == nullptr) {
        REPORT_FAILURE("[GetMem_MapAddr]Input is null.\r\n\n");
        return failed;
    }
    if (strlen(file_name) > MOX_RSVMEM_MAX_NAME || file_size == 0) {
        REPORT_FAILURE("[GetMem_MapAddr]Input para length invalid pszFileName=%s, uiFileSize=%d.\r\n\n",
                       file_name, static_cast<int>(file_size));
        return MOX_RSVMEM_ERR_LENGTH;
    }
    char mount_point[sizeof directory] = {};
    int copied = strncpy_s(mount_point, sizeof mount_point, directory, directory_without_slash);
    if (copied != 0) {
        REPORT_FAILURE("String copy not success, return check code=%d\n\n", copied);
        return failed;
    }
    if (uint32_t result = MOX_IsMemDirExist(mount_point); result != ok) {
        REPORT_FAILURE("[GetMem_MapAddr]%s not exist.\r\n\n", mount_point);
        return result;
    }
    char path[path_size] = {};
    int printed = sprintf_s(path, sizeof path, "%s%s", directory, file_name);
    if (printed < 0) {
        REPORT_FAILURE("String copy not success, return check code=%d\n\n", printed);
        return static_cast<uint32_t>(printed);
    }
    int32_t fd = -1;
    void *mapped = nullptr;
    if (uint32_t result = drvboot_get_mmap_addr(&fd, path, file_size, &mapped); result != ok)
        return result;
    REPORT_INFO("[GetMem_MapAddr]To mmap pszFileName=%s, uiFileSize=%d.\n\n", file_name,
                static_cast<int>(file_size));
    if (int32_t result = drvboot_force_load_virtual_page(mapped, file_size); result != 0)
        REPORT_FAILURE("[GetMem_MapAddr]force load not success, ret:%d.\n\n", result);
    *addr = mapped;
    close(fd);
    return ok;
}

uint32_t drvboot_get_mmap_addr(int32_t *fd, const char *path, uint32_t length, void **addr)
{
    if (length == 0 || fd == nullptr || path == nullptr || addr == nullptr)
        return failed;
    int opened = open(path, O_RDWR | O_CREAT, file_mode);
    if (opened < 0) {
        REPORT_FAILURE("[GetMem_MapAddr]open:  %d \n\n", errno);
        return MOX_RSVMEM_ERR_OPEN;
    }
    uint32_t result = size_and_map(opened, length, addr);
    if (result == ok)
        *fd = opened;
    else
        close(opened);
    return result;
}

int32_t drvboot_force_load_virtual_page(void *addr, uint32_t len)
{
    if (addr == nullptr || len == 0) {
        REPORT_FAILURE("[drvboot load virtual page] parameter is invalid size(0x%x).\n", len);
        return -1;
    }
    auto *at = static_cast<uint8_t *>(addr);
    const uint32_t blocks = len / block_size;
    for (uint32_t i = 0; i < blocks; ++i, at += block_size) {
        const Touched touched = touch(at, block_size);
        if (touched == Touched::yes)
            continue;
        if (touched == Touched::not_read)
            REPORT_FAILURE("[drvboot load virtual page]the addr or size(0x%x) is invalid, in loop(0x%x).\n",
                           len, blocks);
        return -1;
    }
    if (const uint32_t remainder = len % block_size; remainder != 0) {
        const Touched touched = touch(at, remainder);
        if (touched == Touched::not_read)
            REPORT_FAILURE("[drvboot force load virtual page]the addr or size(0x%x) is invalid, when in "
                           "remainder(0x%x).\n",
                           len, remainder);
        if (touched != Touched::yes)
            return -1;
    }
    if (msync(addr, len, MS_SYNC) != 0) {
        REPORT_FAILURE("[drvboot force load virtual page]msync unsuccess, the addr or size(0x%x).\n", len);
        return -1;
    }
    return 0;
}

uint32_t MOX_ChmodRsvMemFile(void)
{
    return ok;
}
