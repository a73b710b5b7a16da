// SPDX-License-Identifier: Apache-2.0
// Boot files, links, preload.
#include "sweep/row_words.hpp"

#include <filesystem>
#include <fstream>

namespace sweep
{
namespace
{

namespace fs = std::filesystem;

constexpr const char *root = "/tmp/sweep-root";
constexpr const char *boot_file = "bios_qs3540_mpu.bin";
constexpr const char *linked = "/tmp/sweep-root/links/bios_qs3540_mpu.bin";

const BootFileDesc boot_files[] = {{boot_file, "0x10", DrvBoot_Qs3540}};
const LinkFileDesc links[] = {
    {"files", boot_file, "links", boot_file, DrvBoot_Qs3540},
    {"files", "other.bin", "links", "other.bin", nullptr},
};
const LinkEncapFileDesc encap_links[] = {{0x9201, "files", boot_file, "links", boot_file}};

// Sources are there; links are not.
void install_tree(vboard::Board &)
{
    fs::create_directories(fs::path(root) / "files");
    fs::remove_all(fs::path(root) / "links");
    fs::create_directories(fs::path(root) / "links");
    for (const char *file : {boot_file, "other.bin"})
        std::ofstream(fs::path(root) / "files" / file) << file;
}

// One link is there already.
void linked_tree(vboard::Board &board)
{
    install_tree(board);
    fs::create_symlink("elsewhere", linked);
}

std::uint32_t update(std::uint32_t, const char *)
{
    return 0;
}

std::uint32_t remove_file(std::uint32_t, std::uint32_t, std::uint32_t)
{
    return 0;
}

} // namespace

Rows install_rows()
{
    const Results walk_failed = only({minus_1, refused_by_driver});
    return {
        ROW(MOX_InstallPkgNotify, (1, "/tmp/sweep.moxpkg", "/opt/moxv8/install"), .bad = failed),
        ROW(DrvBoot_ExtractBootFileXTN, ("/tmp/sweep.moxpkg", boot_files, 1, "/boot"), .bad = failed),
        ROW(Drvboot_ClearBiosFile, (boot_file), .good = anything()),
        ROW(MOX_AfterInstallRunFile, (root), .bad = walk_failed, .prepare = install_tree),
        ROW(DrvBoot_InstallBootFile, (links, 2, root), .bad = failed, .prepare = linked_tree),
        ROW(DrvBoot_Encap_InstallBootFile, (encap_links, 1, root), .bad = walk_failed,
            .prepare = linked_tree),
        ROW(DrvBoot_LinkFile, (encap_links, 0, root), .bad = failed, .prepare = linked_tree),
        ROW(DrvBoot_FormatSrcPath, (root, "files", boot_file, out.text(), 256), .bad = failed),
        ROW(DrvBoot_IsFileExisted, ("/tmp"), .good = only({1}), .bad = only({0})),
        ROW(DrvBoot_LinkExistedBootFile, ("files", linked, boot_file), .bad = failed,
            .prepare = install_tree),
        ROW(DrvBoot_UnlinkExistedUnexpectedBootFile, (boot_file, linked), .bad = failed,
            .prepare = linked_tree),
        ROW(MOX_NotifyPdtAfterPreInstallOS, (), .bad = only({1, minus_1})),
        ROW(MOX_NotifyPdtAfterPreInstallOS, (), .bad = failed, .board = "ng-qs3540-mpu"),
        ROW(PreLoadBootFileXTN, (), .bad = failed, .board = "ng-qs3540-mpu"),
        ROW(DrvBootUpdateStartupFile, (update, remove_file), .bad = failed, .board = "ng-qs3540-mpu"),
        ROW(DrvBoot_DeleteBootFileCheck, (DRVBOOT_STARTUP_BIOS, remove_file)),
    };
}

} // namespace sweep
