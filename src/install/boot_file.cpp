// SPDX-License-Identifier: Apache-2.0
// The boot files that this board needs, out of a package.
#include "base/report.hpp"
#include "base/result.hpp"

#include <moxboot/boot_file.h>
#include <moxboot/platform.h>
#include <moxboot/preload.h>

#include <cstdlib>
#include <cstring>
#include <span>

using namespace moxboot;

uint32_t g_nandFlashDeleteFlag = 0;

namespace
{

constexpr size_t path_size = 256;
constexpr uint32_t executable = 0755;

bool needed(const BootFileDesc &row)
{
    uint8_t flag = 0; // stays so when the predicate fails: an unknown board is given nothing
    if (row.predicate != nullptr)
        row.predicate(&flag, 0);
    return flag != 0;
}

} // namespace

int32_t MOX_InstallPkgNotify(uint32_t phase, const char *package, const char *install_path)
{
    REPORT_INFO("Drvboot install pkg %s, Phase %u, install path %s\n", package, phase, install_path);
    g_nandFlashDeleteFlag = 0;
    uint32_t result = DrvBoot_ExtractBootFileXTN(package, g_bootFileDesc, DRVBOOT_BOOT_FILES, "/boot");
    if (result != ok)
        REPORT_FAILURE("Drvboot install pkg NOK\n");
    REPORT_INFO("Drvboot install pkg end\n");
    return static_cast<int32_t>(result);
}

uint32_t DrvBoot_ExtractBootFileXTN(const char *package, const BootFileDesc *table, uint32_t count,
                                    const char *directory)
{
    if (count == 0)
        return ok;
    if (package == nullptr || table == nullptr || directory == nullptr)
        return failed;
    for (const BootFileDesc &row : std::span(table, count)) {
        if (!needed(row))
            continue;
        char path[path_size];
        int printed = snprintf_s(path, sizeof path, sizeof path - 1, "%s/%s", directory, row.file_name);
        if (printed < 0) {
            REPORT_FAILURE("String print unsuccessfully, return check code=%d\n", printed);
            return static_cast<uint32_t>(printed);
        }
        auto id = static_cast<uint32_t>(strtoul(row.file_id, nullptr, 16));
        if (CCPKG_ExtractFileFromCCExt(package, path, id, executable) != ok) {
            Drvboot_ClearBiosFile(row.file_name);
            REPORT_FAILURE("Drvboot extract %s unsuccessfully\n", row.file_name);
        }
    }
    return ok;
}

int32_t Drvboot_ClearBiosFile(const char *file_name)
{
    int32_t difference = -1;
    if (file_name == nullptr)
        return difference;
    for (const PreloadFileDesc &row : g_preloadFileTbl) {
        if (row.startup_type != DRVBOOT_STARTUP_BIOS)
            continue;
        difference = strcmp(file_name, row.file_name);
        if (difference == 0) {
            g_nandFlashDeleteFlag = 1;
            break;
        }
    }
    return difference;
}
