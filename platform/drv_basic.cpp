// SPDX-License-Identifier: Apache-2.0
#include "drv.hpp"
#include "flash.hpp"
#include "mcu.hpp"
#include "new_file.hpp"
#include "tpm.hpp"

#include <moxboot/platform.h>

#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace
{

constexpr uint32_t refused = 1;
constexpr auto cannot_ask = static_cast<uint32_t>(-14);
constexpr uint32_t this_board = 0xFFFFFFFF;
constexpr uint32_t mcu = 4;

constexpr uint32_t startup_types[] = {256, 260, 265}; // BIOS, OS package, HSM
constexpr mode_t area_mode = 0644;

uint32_t tpm_status(uint32_t board, uint32_t item, uint32_t *status)
{
    if (board != this_board || status == nullptr)
        return refused;
    return iof_get_attr_value("/dev/board0", DRVBOOT_TLV_L1_TYPE, item, 0, status, sizeof *status) == 0
               ? 0
               : cannot_ask;
}

// The path of the flash area; false for a kind of file that has none.
bool area_path(uint32_t startup_type, char (&path)[PATH_MAX])
{
    char name[32];
    snprintf(name, sizeof name, "startup-%u", startup_type);
    for (const uint32_t type : startup_types)
        if (type == startup_type)
            return moxplatform_flash_path(name, path);
    return false;
}

bool copy(int from, platform::NewFile *to)
{
    char block[16384];
    for (;;) {
        const ssize_t got = read(from, block, sizeof block);
        if (got < 0 && errno == EINTR)
            continue;
        if (got <= 0)
            return got == 0;
        if (!to->write(block, static_cast<size_t>(got)))
            return false;
    }
}

} // namespace

uint32_t drv_subboard_get_online_status(uint32_t board, uint32_t subboard, uint32_t *status)
{
    if (board != this_board || subboard != mcu || status == nullptr)
        return refused;
    return iof_get_attr_value("/dev/board0", DRVBOOT_TLV_L1_TYPE, platform::item_mcu_status, 0, status,
                              sizeof *status);
}

uint32_t drv_board_get_tpm_active_status(uint32_t board, uint32_t *status)
{
    return tpm_status(board, platform::item_tpm_active, status);
}

uint32_t drv_board_get_tpm_online_status(uint32_t board, uint32_t *status)
{
    return tpm_status(board, platform::item_tpm_online, status);
}

uint32_t drv_update_startup_file(uint32_t startup_type, const char *path)
{
    char area[PATH_MAX];
    if (path == nullptr || !area_path(startup_type, area))
        return refused;
    const platform::Descriptor source(open(path, O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    struct stat status = {};
    if (!source.usable() || fstat(source.get(), &status) != 0 || !S_ISREG(status.st_mode))
        return refused;
    platform::NewFile flash(area, area_mode);
    return flash.usable() && copy(source.get(), &flash) && flash.place() ? 0 : refused;
}

uint32_t drv_update_delete_startup_file(uint32_t startup_type, uint32_t zero, uint32_t one)
{
    char area[PATH_MAX];
    if (zero != 0 || one != 1 || !area_path(startup_type, area))
        return refused;
    if (unlink(area) != 0 && errno != ENOENT)
        return refused;
    return platform::flush_folder(area) ? 0 : refused;
}
