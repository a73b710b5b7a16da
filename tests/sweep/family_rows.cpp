// SPDX-License-Identifier: Apache-2.0
// Board families and product models: all predicates have one shape.
#include "sweep/row_words.hpp"

namespace sweep
{
namespace
{

#define PREDICATE(function_, ...)                                                                            \
    ROW(function_, (out.room<std::uint8_t>(), 0), .bad = failed, .failure = kept __VA_OPT__(, ) __VA_ARGS__)

constexpr std::uint32_t types[] = {0x900005e6, 0x900005d1};

} // namespace

Rows family_rows()
{
    return {
        PREDICATE(DrvBoot_Qs3540ExcludeNgBoard),
        PREDICATE(DrvBoot_Qs3540),
        PREDICATE(DrvBoot_Qs3540OriginalBios),
        PREDICATE(DrvBoot_A53le),
        PREDICATE(DrvBoot_Qs3520),
        PREDICATE(DrvBoot_Qs3520SpiFlash, .board = "qs3520-mpu"),
        PREDICATE(DrvBoot_Qs3520NotSpiFlash, .board = "qs3520-mpu"),
        PREDICATE(DrvBoot_Qs3520_nextg),
        PREDICATE(DrvBootIs3520NextGenBiosBoard),
        PREDICATE(DrvBoot_IsNgBoard),
        PREDICATE(DrvBoot_IsNg3540Board),
        PREDICATE(DrvBootIs3540NextGenBiosBoard),
        PREDICATE(DrvBootIsSfc3540Board),
        PREDICATE(DrvBootInstallBiosQs3520NextGen, .board = "ng-qs3520-mpu"),
        PREDICATE(DrvBootInstallBiosQs3540NextGen, .board = "qs3540-ng-bios"),
        PREDICATE(DrvBootIsNg3540OtherFlash, .board = "ng-qs3540-mpu"),
        PREDICATE(DrvBootIsNg3540NandFlashBoard, .board = "ng-qs3540-mpu"),
        ROW(DrvbootIsSupportSingleBakup, (0x9000054b), .good = only({1})),
        ROW(DrvbootIsSupporDataBakup, (0x90020709), .good = only({0, 1})),
        ROW(DrvbootNgFixBoxSingleBakup, (0x90020709), .good = only({0, 1})),
        ROW(DrvbootBakupParaSet, (0x9000054b), .good = only({1})),
    };
}

Rows model_rows()
{
    return {
        ROW(DrvBoot_GetProductServiceType, (out.room()), .bad = failed, .failure = kept),
        ROW(DrvBootInstallRunFile, (types, 2, out.room<std::uint8_t>(), 0), .bad = only({refused_by_driver})),
        ROW(DrvBootInstallRunFileWithPtnmode, (types, 2, out.room<std::uint8_t>(), 0),
            .bad = only({refused_by_driver}), .failure = kept),
        ROW(DrvBootInstallRunFileKYP467R, (out.room<std::uint8_t>(), 0), .bad = only({refused_by_driver}),
            .board = "kyp467r"),
        ROW(DrvBootInstallRunFileKYP467RPtnMode, (out.room<std::uint8_t>(), 0),
            .bad = only({refused_by_driver}), .failure = kept, .board = "kyp467r"),
        PREDICATE(DrvBoot_KeyFileNoNeedLink),
        PREDICATE(DrvBoot_IsInstallRunFile_KYP362R_HJV),
        PREDICATE(DrvBoot_IsInstallKYP432RRunFileByHardtype),
        PREDICATE(DrvBoot_IsInstallRunFile_KYP432V_6273),
        PREDICATE(DrvBoot_IsInstallRunFile_KYP432V_6274),
        PREDICATE(DrvBoot_IsInstallRunFile_KYP432R_6273),
        PREDICATE(DrvBoot_IsInstallRunFile_KYP432R_6274),
        PREDICATE(DrvBoot_IsInstallKYP467JRunFileByHardtype),
        PREDICATE(DrvBoot_IsInstallRunFile_KYP247),
        PREDICATE(DrvBoot_InstallKYP362VH),
        PREDICATE(DrvBoot_IsInstallRunFile_KYP362R_LW, .board = "gl6264-q2h"),
        PREDICATE(DrvBoot_IsInstallRunFile_KYP362R_ZQ, .board = "gl6264-q2r"),
        PREDICATE(DrvBoot_IsInstallRunFile_GL6264_Q2R, .board = "gl6264-q2r"),
        PREDICATE(DrvBoot_IsInstallRunFile_GL6264_Q2H, .board = "gl6264-q2h"),
        PREDICATE(DrvBoot_IsInstallRunFile_GL6264_Q2V, .board = "gl6264-q2v"),
        PREDICATE(DrvBoot_IsInstallRunFile_GL6264_Q2V_J, .board = "gl6264-q2v-j"),
        PREDICATE(DrvBoot_IsInstallRunFile_KYP613_S, .board = "kyp613-s"),
        PREDICATE(DrvBoot_IsInstallRunFile_GL6264_R92, .board = "dub594j-r92"),
        PREDICATE(DrvBoot_IsInstallRunFile_DUB594_R22, .board = "dub594h-r22"),
        PREDICATE(DrvBoot_IsInstallRunFile_GL6264_Q7, .board = "gl6264-q7"),
        PREDICATE(DrvBoot_IsInstallRunFile_GL6264_Q7Z, .board = "gl6264-q7z"),
        PREDICATE(DrvBoot_IsInstallRunFile_GL6264_R22, .board = "gl6264-r22"),
        PREDICATE(DrvBoot_IsInstallRunFile_GL6264_H639Q, .board = "ploxy-h639q"),
        PREDICATE(DrvBoot_IsInstallRunFile_Ploxy_H632, .board = "ploxy-h632"),
        PREDICATE(DrvBoot_IsInstallRunFile_Ploxy_H632U, .board = "ploxy-h632u"),
        PREDICATE(DrvBoot_IsInstallRunFile_GL6264_H622, .board = "ploxy-h622"),
        PREDICATE(DrvBoot_IsInstallRunFile_GL6264_H622Q, .board = "ploxy-h622q"),
        PREDICATE(DrvBoot_InstallKYP362VHWithoutPack, .board = "kyp362v-h"),
        PREDICATE(DrvBoot_IsInstallRunFile_KYP362V_J, .board = "kyp362v-j"),
        PREDICATE(DrvBoot_IsInstallRunFile_KYP627_S, .board = "kyp627-s"),
        PREDICATE(DrvBoot_IsInstallPtnRunFile_KYP362R_HJV),
        PREDICATE(DrvBoot_IsInstallPtnRunFile_KYP247),
        PREDICATE(DrvBoot_KYP432RRunFileByHardtypeAndPtnmode),
        PREDICATE(DrvBoot_IsInstallPtnRunFile_KYP432V_6273),
        PREDICATE(DrvBoot_IsInstallPtnRunFile_KYP432V_6274),
        PREDICATE(DrvBoot_IsInstallPtnRunFile_KYP432R_6274),
        PREDICATE(DrvBoot_KYP467JRunFileByHardtypeAndPtnmode),
        PREDICATE(DrvBoot_IsInstallPtnRunFile_KYP362R_LW, .board = "gl6264-q2h"),
        PREDICATE(DrvBoot_IsInstallPtnRunFile_KYP613_S, .board = "kyp613-s"),
        PREDICATE(DrvBoot_IsInstallPtnRunFile_KYP362V_H, .board = "kyp362v-h"),
        PREDICATE(DrvBoot_IsInstallPtnRunFile_KYP362V_J, .board = "kyp362v-j"),
        PREDICATE(DrvBoot_IsInstallPtnRunFile_KYP432R_6273),
        PREDICATE(DrvBoot_IsInstallPtnRunFile_KYP362R_ZQ, .board = "gl6264-q2r"),
        PREDICATE(DrvBoot_IsInstallPtnRunFile_GL6264_Q7, .board = "gl6264-q7"),
        PREDICATE(DrvBoot_IsInstallPtnRunFile_GL6264_Q7Z, .board = "gl6264-q7z"),
        PREDICATE(DrvBoot_IsInstallPtnRunFile_GL6264_R22, .board = "gl6264-r22"),
        PREDICATE(DrvBoot_IsInstallPtnRunFile_GL6264_H639Q, .board = "ploxy-h639q"),
        PREDICATE(DrvBoot_IsInstallPtnRunFile_Ploxy_H632, .board = "ploxy-h632"),
        PREDICATE(DrvBoot_IsInstallPtnRunFile_Ploxy_H632U, .board = "ploxy-h632u"),
        PREDICATE(DrvBoot_IsInstallPtnRunFile_GL6264_H622, .board = "ploxy-h622"),
        PREDICATE(DrvBoot_IsInstallPtnRunFile_GL6264_H622Q, .board = "ploxy-h622q"),
        PREDICATE(DrvBoot_IsInstallPtnRunFile_GL6264_Q2R, .board = "gl6264-q2r"),
        PREDICATE(DrvBoot_IsInstallPtnRunFile_GL6264_Q2H, .board = "gl6264-q2h"),
        PREDICATE(DrvBoot_IsInstallPtnRunFile_GL6264_Q2V, .board = "gl6264-q2v"),
        PREDICATE(DrvBoot_IsInstallPtnRunFile_GL6264_Q2V_J, .board = "gl6264-q2v-j"),
        PREDICATE(DrvBoot_IsInstallPtnRunFile_GL6264_R92, .board = "dub594j-r92"),
        PREDICATE(DrvBoot_IsInstallPtnRunFile_DUB594_R22, .board = "dub594h-r22"),
    };
}

} // namespace sweep
