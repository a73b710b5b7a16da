// SPDX-License-Identifier: Apache-2.0
// The start-up file that two main boards of different models keep in step.
#include "base/report.hpp"
#include "base/result.hpp"

#include <moxboot/board.h>
#include <moxboot/driver.h>
#include <moxboot/platform.h>
#include <moxboot/startup_sync.h>

#include <cstdlib>
#include <cstring>
#include <sys/stat.h>

using namespace moxboot;

namespace
{

constexpr uint32_t one_model = 0x900005d1;
constexpr uint32_t other_model = 0x900005f4;
constexpr size_t path_size = 256;

// A text of the platform environment, empty until it is read.
struct Variable {
    char text[DRVBOOT_ENV_SIZE] = {};

    uint32_t read(const char *name)
    {
        return GetEnv(name, text);
    }
};

} // namespace

uint32_t drvboot_impl_get_peer_board_type(void)
{
    Variable type;
    if (uint32_t result = type.read("peertype"); result != ok) {
        REPORT_FAILURE("[drvboot]get peer type ret[%d]\n", static_cast<int>(result));
        return 0;
    }
    const auto number = static_cast<uint32_t>(strtoul(type.text, nullptr, 10));
    REPORT_INFO("[drvboot] peerMpuType %s with %#x ret[%d]\n", type.text, number, 0);
    return number;
}

uint32_t drvboot_impl_is_isomerism_pkg(void)
{
    const uint32_t peer = drvboot_impl_get_peer_board_type();
    uint32_t own = 0;
    if (MOX_GetBoardHardType(&own) == 0) {
        REPORT_INFO("[MOX]MOX get syncinfo hard type is not ok \n\n");
        return failed;
    }
    REPORT_INFO("[MOX]MOX get syncinfo get hard type is %#x %#x \n\n", peer, own);
    return (own == one_model && peer == other_model) || (own == other_model && peer == one_model) ? ok
                                                                                                  : failed;
}

uint32_t drvboot_impl_get_update_filename(MoxStartupFileSync *record)
{
    if (record == nullptr)
        return failed;
    Variable name;
    if (name.read("isomerism_cc_file") != ok) {
        REPORT_FAILURE("[MOX] get update filename env not success\n\n");
        return failed;
    }
    int copied = strncpy_s(record->file_name, sizeof record->file_name, name.text, strlen(name.text));
    if (copied != 0) {
        REPORT_FAILURE("[MOX] get update filename strcpy not success ret %u\n\n",
                       static_cast<uint32_t>(copied));
        return failed;
    }
    REPORT_INFO("[MOX] get update filename %s.\n\n", record->file_name);
    return ok;
}

uint32_t drvboot_impl_get_update_filever(MoxStartupFileSync *record)
{
    if (record == nullptr)
        return failed;
    Variable version;
    if (version.read("isomerism_cc_ver") != ok) {
        REPORT_FAILURE("[MOX] get update filever env not success\n\n");
        return failed;
    }
    int copied = strncpy_s(record->version, sizeof record->version, version.text, strlen(version.text));
    if (copied != 0) {
        REPORT_FAILURE("[MOX] get update filever strcpy not success ret %u\n\n",
                       static_cast<uint32_t>(copied));
        return failed;
    }
    REPORT_INFO("[MOX] get update filever %s.\n\n", record->version);
    return ok;
}

uint32_t drvboot_impl_get_update_filelen(MoxStartupFileSync *record)
{
    if (record == nullptr)
        return failed;
    static constexpr char home[] = "/opt/moxv8bak/home/";
    char path[path_size] = {};
    if (int copied = strncpy_s(path, sizeof path, home, sizeof home - 1); copied != 0) {
        REPORT_FAILURE("[drvboot]get filelen cpy ret %d\n\n", copied);
        return failed;
    }
    const size_t length = strnlen(record->file_name, sizeof record->file_name);
    if (int joined = strncat_s(path, sizeof path, record->file_name, length); joined != 0) {
        REPORT_FAILURE("[drvboot]get filelen cat ret %d\n\n", joined);
        return failed;
    }
    REPORT_INFO("[MOX] get update filelen path %s \n\n", path);
    struct stat status = {};
    if (lstat(path, &status) != 0) {
        REPORT_FAILURE("[MOX] get update filelen lstat not success\n\n");
        return failed;
    }
    record->length = static_cast<uint32_t>(status.st_size);
    REPORT_INFO("[MOX] get update filelen len=%u.\n\n", record->length);
    return ok;
}

uint32_t drvboot_impl_checkOut_version(void)
{
    Variable own;
    if (own.read("out_version") != ok) {
        REPORT_FAILURE("[drvboot] get out_version env not success\n\n");
        return failed;
    }
    Variable peer;
    if (peer.read("peer_out_version") != ok) {
        REPORT_FAILURE("[drvboot] get peer out_version env not success\n\n");
        return failed;
    }
    REPORT_INFO("[drvboot] get outVersion %s peer %s\n", own.text, peer.text);
    return strcmp(own.text, peer.text) == 0 ? ok : failed;
}

int32_t MOX_PdtGetStartupFileSyncInfo(MoxStartupFileSync *record)
{
    if (record == nullptr) {
        REPORT_FAILURE("[MOX]MOX PdtGetStartupFileSyncInfo pstSyncInfo is null \n\n");
        return -1;
    }
    if (drvboot_impl_is_isomerism_pkg() != ok || drvboot_impl_get_update_filename(record) != ok ||
        drvboot_impl_get_update_filever(record) != ok || drvboot_impl_get_update_filelen(record) != ok)
        return -1;
    REPORT_INFO("[MOX] get update file name :%s ver:%s len:%u\n\n", record->file_name, record->version,
                record->length);
    return 0;
}

uint32_t MOX_PdtIsStartupFileMatch(const MoxStartupFileSync *remote, const MoxStartupFileSync *local)
{
    if (remote == nullptr || local == nullptr) {
        REPORT_FAILURE("[drvboot]MOX FileMath remote/local para is null \n\n");
        return 0;
    }
    if (drvboot_impl_is_isomerism_pkg() != ok)
        return 0;
    REPORT_INFO("[drvboot]MOX FileMath local %s remote %s\n\n", local->version, remote->version);
    if (strncmp(local->version, remote->version, sizeof local->version) != 0 ||
        drvboot_impl_checkOut_version() != ok)
        return 0;
    REPORT_INFO("[drvboot]MOX FileMath is same\n\n");
    return 1;
}
