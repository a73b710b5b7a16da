// SPDX-License-Identifier: Apache-2.0
// Facts about the product, and what was measured at start-up.
#include "sweep/row_words.hpp"

#include <moxboot/platform.h>

#include <fstream>

namespace sweep
{
namespace
{

constexpr const char *measured = "gl6264-q2h";
constexpr const char *single_backup = "qs3520-single-backup";
constexpr const char *named = "kyp362r-w";
constexpr std::uint32_t room = 32;

void boot_folder(vboard::Board &)
{
    for (const char *file : {"bios_qs3520_mpu.bin", "Image-5.10", "initrd-5.10.img", "qs3520-mpu.dtb"})
        std::ofstream(std::string("/boot/") + file) << file;
}

void a_variable(vboard::Board &)
{
    SetEnv("sweep_number", "10");
}

#define MEASURED(function_, arguments, ...)                                                                  \
    ROW(function_, arguments, .bad = failed __VA_OPT__(, ) __VA_ARGS__, .board = measured,                   \
        .prepare = boot_folder)

} // namespace

Rows measurement_rows()
{
    using Record = PdtSmlFileInfo;
    return {
        MEASURED(MOX_GetPdtSTMItemNum, (out.room()), .failure = kept),
        MEASURED(MOX_GetPdtSTMItem, (out.room<PdtStmItem>(PDT_STM_ITEMS), PDT_STM_ITEMS)),
        MEASURED(MOX_GetPdtSMLInfoCount, (out.room()), .failure = kept),
        MEASURED(MOX_GetPdtSMLInfo, (out.room<Record>(4), 4)),
        MEASURED(PdtSMLInfoGetType, (out.room()), .failure = kept),
        MEASURED(PdtSMLInfoCheckCnt, (1, 4)),
        MEASURED(PdtSMLInfo_Get_FileIndex, ("Image", PDT_SML_KERNEL, out.text(64), out.text(64))),
        MEASURED(PdtSMLInfo_Get_FileHashInfo, ("kernel_filehash", 0, out.text(64), 64)),
        MEASURED(PdtSMLInfo_Get_FilePatchInfo, ("kernel_usepatch", 0, out.text(4), 4)),
        MEASURED(PdtSMLInfo_Get_FileTypeInfo, (PDT_SML_KERNEL, out.text(room), room)),
        MEASURED(PdtSMLInfo_Get_FileHash, ("kernel_filehash", "kernel_usepatch", out.filled(Record{}))),
        MEASURED(PdtSMLInfo_Get_FileInfo, ("Image", PDT_SML_KERNEL, out.filled(Record{}), 1)),
        MEASURED(TPMAgentGetEsbcName, (out.text(128))),
        MEASURED(TPMAgent_GetfileName, ("Image", out.text(128), 128)),
    };
}

Rows product_rows()
{
    static const std::uint32_t length = sizeof(std::uint32_t);
    return {
        ROW(MOX_PdtGetInfo, (MOX_PDT_CHECK_PERIOD, out.room(), &length)),
        ROW(DrvBootGetInfoDynamicCpuSwitch, (0, 0, out.room(), 4)),
        ROW(DrvBootGetCheckPeriod, (0, 0, out.room(), 4)),
        ROW(DrvBootGetBackupProtect, (0, 0, out.room(), 4)),
        ROW(DrvBootGetBackupReserveSpace, (0, 0, out.room(), 4), .bad = failed, .failure = kept,
            .board = single_backup),
        ROW(DrvBootGetBackupPackageStarttime, (0, 0, out.room(), 4), .bad = failed, .failure = kept,
            .board = single_backup),
        ROW(Drvboot_GetProductServiceType, (0, 0, out.text(room), room), .bad = only({1}), .board = named),
        ROW(Drvboot_GetProductName, (0, 0, out.text(room), room), .bad = only({1}), .board = named),
        ROW(Drvboot_JudgeSupportLocationMonitorFixedIP, (0, 0, out.room(), 4)),
        ROW(DrvBootGetRandMimEntropy, (0, 0, out.room<double>(), 8)),
        ROW(DRV_GetProductSeviceType, (), .good = only({102}), .bad = only({0}), .board = named),
        ROW(DrvBoot_GetProductNameFromDevm, (out.text(room), room), .bad = only({refused_by_driver}),
            .board = named),
        ROW(drvboot_is_dir, ("/tmp"), .good = only({1}), .bad = only({0})),
        ROW(DrvBootGetEnvValue, ("sweep_number"), .good = only({16}), .bad = failed, .prepare = a_variable),
    };
}

} // namespace sweep
