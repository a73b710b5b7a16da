// SPDX-License-Identifier: Apache-2.0
// Small facts about the product.
#include "base/report.hpp"
#include "base/result.hpp"
#include "board/family.hpp"

#include <moxboot/driver.h>
#include <moxboot/families.h>
#include <moxboot/platform.h>
#include <moxboot/product.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <sys/stat.h>

using namespace moxboot;

namespace
{

constexpr uint32_t unknown_type = 3;
constexpr uint32_t check_period = 1800;             // s
constexpr uint32_t backup_reserve_space = 10240;    // KiB
constexpr uint32_t backup_package_starttime = 1800; // s
constexpr double declared_min_entropy = 0.997;

void write_number(void *out, uint32_t number)
{
    memcpy(out, &number, sizeof number);
}

uint32_t answer_backup_parameter(uint32_t value, void *out)
{
    uint32_t hard_type = 0;
    if (!read_hard_type("Drvboot get board type unsuccessfully.\n", &hard_type))
        return failed;
    if (DrvbootBakupParaSet(hard_type) == 0)
        return not_supported;
    if (out == nullptr)
        return refused;
    write_number(out, value);
    return ok;
}

} // namespace

uint32_t MOX_PdtGetInfo(uint32_t type, void *out, const uint32_t *length)
{
    if (type > MOX_PDT_LAST) {
        REPORT_FAILURE("[drvboot] MOX_PdtGetInfo unsuccess. don't support PdtInfoType, type=%d\n\n",
                       static_cast<int>(type));
        return unknown_type;
    }
    for (const DrvbootItem &row : g_cmd_ItemTbl)
        if (row.type == type)
            return length != nullptr ? row.handler(0, 0, out, *length) : refused;
    return not_supported;
}

uint32_t DrvBootGetInfoDynamicCpuSwitch(uint32_t, uint32_t, void *out, uint32_t)
{
    const uint32_t switchable = drvboot_is_dir("/cgroup1");
    if (out != nullptr)
        write_number(out, switchable);
    return ok;
}

uint32_t DrvBootGetCheckPeriod(uint32_t, uint32_t, void *out, uint32_t)
{
    if (out != nullptr)
        write_number(out, check_period);
    return ok;
}

uint32_t DrvBootGetBackupProtect(uint32_t, uint32_t, void *out, uint32_t)
{
    if (out == nullptr) {
        REPORT_FAILURE("DrvBoot Backup Protect outBuf is invalid.\n");
        return refused;
    }
    write_number(out, 0);
    return ok;
}

uint32_t DrvBootGetBackupReserveSpace(uint32_t, uint32_t, void *out, uint32_t)
{
    return answer_backup_parameter(backup_reserve_space, out);
}

uint32_t DrvBootGetBackupPackageStarttime(uint32_t, uint32_t, void *out, uint32_t)
{
    return answer_backup_parameter(backup_package_starttime, out);
}

// Its callers bring a place for the answer; others of this table do not.
uint32_t Drvboot_JudgeSupportLocationMonitorFixedIP(uint32_t, uint32_t, void *out, uint32_t)
{
    write_number(out, 1);
    return ok;
}

uint32_t DrvBootGetRandMimEntropy(uint32_t, uint32_t, void *out, uint32_t length)
{
    if (length < sizeof declared_min_entropy) {
        REPORT_FAILURE("[drvboot] get product rand minentropy invalid len %u.\n\n", length);
        return refused;
    }
    if (out == nullptr)
        return refused;
    memcpy(out, &declared_min_entropy, sizeof declared_min_entropy);
    return ok;
}

uint32_t drvboot_is_dir(const char *path)
{
    if (path == nullptr)
        return 0;
    struct stat status = {};
    if (stat(path, &status) != 0) {
        if (errno != ENOENT)
            REPORT_FAILURE("Stat %s unsuccessfully, errno %d.\n", path, errno);
        return 0;
    }
    return S_ISDIR(status.st_mode);
}

uint32_t DrvBootGetEnvValue(const char *name)
{
    char value[DRVBOOT_ENV_SIZE] = {};
    if (GetEnv(name, value) != ok) {
        REPORT_INFO("Env %s not exist.\n", name);
        return failed;
    }
    return static_cast<uint32_t>(strtoul(value, nullptr, 16));
}
