// SPDX-License-Identifier: Apache-2.0
// The preload: extracted files go to the start-up flash before a new operating system first starts from it.
#include "base/library.hpp"
#include "base/report.hpp"
#include "base/result.hpp"

#include <moxboot/boot_file.h>
#include <moxboot/platform.h>
#include <moxboot/preload.h>

#include <unistd.h>

using namespace moxboot;

namespace
{

constexpr size_t path_size = 256;

bool taken(const PreloadFileDesc &row)
{
    uint8_t flag = 0; // stays so when the predicate fails
    row.predicate(&flag, 0);
    return flag != 0;
}

// False: a file that is there was not written.
bool write_file(DrvBootUpdateFunction update, uint32_t type, const char *path)
{
    if (update(type, path) == ok)
        return true;
    REPORT_FAILURE("[Preload]preload file(%s) and type(%u) unsuccessfully.\n", path, type);
    return access(path, F_OK) != 0; // a package need not bring every file
}

// The updater is closed when this returns, before the end is reported.
bool update_by_library()
{
    LoadedLibrary updater("libdrv_basic.so", RTLD_NOW | RTLD_GLOBAL);
    if (!updater.valid()) {
        REPORT_INFO("[Preload]dlopen drv_basic unsuccessfully.\n");
        return false;
    }
    auto *update = updater.function<uint32_t(uint32_t, const char *)>("drv_update_startup_file");
    if (update == nullptr) {
        REPORT_FAILURE("[Preload]dlsym drv update interface unsuccessfully.\n");
        return false;
    }
    auto *remove = updater.function<uint32_t(uint32_t, uint32_t, uint32_t)>("drv_update_delete_startup_file");
    if (remove == nullptr)
        REPORT_FAILURE("[Preload]update_delete_startup_file does not exist.\n");
    return DrvBootUpdateStartupFile(update, remove) == ok;
}

} // namespace

uint32_t MOX_NotifyPdtAfterPreInstallOS(void)
{
    REPORT_INFO("Drvboot pre install os begin\n");
    uint8_t is_ng = 0;
    uint32_t result = 0;
    if (DrvBoot_IsNgBoard(&is_ng, 0) == ok && is_ng != 0)
        result = static_cast<uint32_t>(PreLoadBootFileXTN());
    else
        result = bsp_update_norflash_data_area();
    REPORT_INFO("Drvboot pre install os end(ret is 0x%x)\n", result);
    return result;
}

int32_t PreLoadBootFileXTN(void)
{
    REPORT_INFO("[Preload]pre load boot file enter\n");
    if (!update_by_library())
        return -1;
    REPORT_INFO("[Preload]pre load boot file end\n");
    return 0;
}

uint32_t DrvBootUpdateStartupFile(DrvBootUpdateFunction update, DrvBootDeleteFunction remove)
{
    if (update == nullptr)
        return failed;
    for (const PreloadFileDesc &row : g_preloadFileTbl) {
        if (!taken(row))
            continue;
        char path[path_size];
        if (snprintf_truncated_s(path, sizeof path, "%s/%s", row.directory, row.file_name) < 0) {
            REPORT_FAILURE("[Preload]Unable to print file(%s/%s).\n", row.directory, row.file_name);
            continue;
        }
        if (DrvBoot_DeleteBootFileCheck(row.startup_type, remove) == 1)
            continue;
        if (!write_file(update, row.startup_type, path))
            return failed;
    }
    return ok;
}

uint32_t DrvBoot_DeleteBootFileCheck(uint32_t startup_type, DrvBootDeleteFunction remove)
{
    if (startup_type != DRVBOOT_STARTUP_BIOS || g_nandFlashDeleteFlag == 0)
        return 0;
    g_nandFlashDeleteFlag = 0;
    if (remove == nullptr)
        return 0;
    uint32_t result = remove(startup_type, 0, 1);
    REPORT_INFO("[Preload]delete startup file ret is %u.\n", result);
    return 1;
}
