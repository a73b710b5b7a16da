// SPDX-License-Identifier: Apache-2.0
// Backup, work mode, start flag, paths, the file that a pair of boards keeps in step.
#include "sweep/row_words.hpp"
#include "sweep/stand_between.hpp"

#include <moxboot/platform.h>

#include <filesystem>
#include <fstream>

namespace sweep
{
namespace
{

void pair(vboard::Board &)
{
    SetEnv("peertype", "2415920628");
    SetEnv("out_version", "V800R021");
    SetEnv("peer_out_version", "V800R021");
    SetEnv("isomerism_cc_file", "startup_peer.cfg");
    SetEnv("isomerism_cc_ver", "V800R021C10");
    std::filesystem::create_directories("/opt/moxv8bak/home");
    std::ofstream("/opt/moxv8bak/home/startup_peer.cfg") << "a start-up file\n";
}

void backup_ready(vboard::Board &)
{
    SetEnv("backup_state", "0");
}

void ptn_mode(vboard::Board &)
{
    SetEnv("nextworkmode", "ptn_iot");
    SetEnv("curworkmode", "ptn_iot");
    bsp_setenv_s("lcs_reset_flag", "0", 2);
    bsp_setenv_s("pack_type", "100", 4);
}

void flag(const char *text)
{
    std::ofstream("/tmp/v8_start_flag") << text;
}

void a_package(vboard::Board &)
{
    std::filesystem::create_directories("/opt/moxv8/home");
    std::ofstream("/opt/moxv8/home/pkg.cc") << "a package";
}

void image_manager(vboard::Board &)
{
    std::filesystem::create_directories("/opt/moxv8/bim");
    std::ofstream("/tmp/sweep-mounts") << "/dev/pramdisk /opt/moxv8/bim tmpfs rw 0 0\n";
    use_mounts("/tmp/sweep-mounts");
}

const MoxStartupFileSync offered = {"startup_peer.cfg", "V800R021C10", 16};

constexpr const char *paired = "qs3540-paired";

Rows pair_rows()
{
    using Sync = MoxStartupFileSync;
    return {
        ROW(drvboot_impl_get_peer_board_type, (), .good = only({2415920628}), .bad = only({0}),
            .board = paired, .prepare = pair),
        ROW(drvboot_impl_is_isomerism_pkg, (), .bad = failed, .board = paired, .prepare = pair),
        ROW(drvboot_impl_checkOut_version, (), .bad = failed, .board = paired, .prepare = pair),
        ROW(drvboot_impl_get_update_filename, (out.room<Sync>()), .bad = failed, .board = paired,
            .prepare = pair),
        ROW(drvboot_impl_get_update_filever, (out.room<Sync>()), .bad = failed, .board = paired,
            .prepare = pair),
        ROW(drvboot_impl_get_update_filelen, (out.filled(offered)), .bad = failed, .board = paired,
            .prepare = pair),
        ROW(MOX_PdtGetStartupFileSyncInfo, (out.room<Sync>()), .bad = failed, .board = paired,
            .prepare = pair),
        ROW(MOX_PdtIsStartupFileMatch, (&offered, &offered), .good = only({1}), .bad = only({0}),
            .board = paired, .prepare = pair),
    };
}

Rows mode_rows()
{
    return {
        ROW(
            MOX_GetStartFlag, (), .good = only({1}), .bad = only({MOX_START_FLAG_NONE, 0}),
            .prepare = [](vboard::Board &) { flag("0x1"); }),
        ROW(MOX_SetPdtCheckMode, (1, nullptr), .bad = failed),
        ROW(
            MOX_PdtStartupCheck, (out.room()), .bad = failed,
            .prepare = [](vboard::Board &) { flag("0x5"); }),
        ROW(DrvBoot_GetWorkMode, (), .bad = failed, .prepare = ptn_mode),
        ROW(DrvBoot_IsPtnMode, (), .bad = failed, .prepare = ptn_mode),
        VOID_ROW(drv_getptnmode, (out.room<std::uint8_t>(), "nextworkmode"), .prepare = ptn_mode),
        ROW(DrvBoot_PtnMode, (out.room<std::uint8_t>(), 0), .prepare = ptn_mode),
    };
}

} // namespace

Rows state_rows()
{
    const Rows rows = {
        ROW(MOX_GetSysBackupPath, ("/opt/moxv8/home", out.text(), 256), .bad = failed),
        ROW(DrvbootGetBackupPathofHome, (out.text(), 256), .bad = failed),
        ROW(DrvbootGetBackupPathofData, (out.text(), 256), .bad = failed),
        ROW(MOX_SetBackupState, (0), .bad = anything(), .why = "a failure gives a count of characters"),
        ROW(MOX_GetBackupState, (out.room<std::uint16_t>()), .bad = only({1, minus_1}), .failure = kept,
            .prepare = backup_ready),
        ROW(MOX_IsBoardSuppSelfRun, (0x9000085d), .good = only({1})),
        ROW(MOX_IsSysSelfRunEnable, (), .good = only({1})),
        ROW(MOX_GetSysMMBState, ()),
        ROW(MOX_GetPdtPath, (MOX_PDT_PATH_BOOT, "pkg.cc", out.text(), 256), .bad = failed, .board = paired,
            .prepare = a_package),
        ROW(MOX_GetPBAPath, (out.text(), 256), .bad = failed, .prepare = image_manager),
        ROW(MOX_GetResPackage, (out.text(), 256), .bad = failed, .prepare = ptn_mode),
    };
    return rows + pair_rows() + mode_rows();
}

} // namespace sweep
