// SPDX-License-Identifier: Apache-2.0
#include "support/library_texts.hpp"

namespace
{

constexpr std::string_view texts[] = {
    "pstItemInfo is null.\n\n",
    "item num too large.\n\n",
    "PdtSMLInfo get board hard type unsuccess.\n\n",
    "[drv_boot]PdtSMLInfoGetType Get board type unsuccessful\n",
    "smlData is null.\n\n",
    "[drv_boot]SMLInfo(%u) count(%u) is invalid.\n",
    "PdtSMLInfo_Get_FileInfo get filehash not normal(%u)\n\n",
    "PdtSMLInfo_Get_FileInfo get filehash success(%u)\n\n",
    "get board hard type failed!\n",
    "get file name not normal by keyword(%s)!\n",
    "get fileHashEnv(%s) name or filePathEnv(%s) not normal by keyword(%s)!\n",
    "get file type(%s) not normal by keyType(%u)!\n",
    "get fileHashEnv(%s) or filePathEnv(%s) unsuccess\n",
    "pdtSMLInfo get file index not normal,keyType=%d,  keyword=%s.\n\n",
    "get fileHash env(%s) unsuccess!\n",
    "get pcFileHash memcpy_s not normal!\n",
    "get fileHash(%s) by env(%s) success!\n",
    "get fileHash memcpy_s not normal!!\n",
    "get patchInfo env(%s) not normal!\n",
    "get patchInfo memcpy_s not normal!\n",
    "get patchInfo(%s) by env(%s) success!\n",
    "get patchInfo memcpy_s not normal!!\n",
    "get file hash(%s) unsuccess!\n",
    "get file patchinfo(%s) unsuccess!\n",
    "get file type input len not normal, len = %u\n",
    "Key type input not normal\n",
    "clear file type info to zero unsuccessful, type = %u\n",
    "get file type info(%s) keyType(%u)\n",
    "get file type info unsuccessful, type = %u\n",
    "[drv_boot]GetEsbcName get board type unsuccessful!\n",
    "[drv_boot]Memory copy failed, return check code=%d\n\n",
    "pcKeyWord or pcFilename is null \n\n",
    "pstDir is null \n\n",
    "d_name length is longer than fileNameLen \n\n",
    "pstr is null \n\n",
    "esbc_qs3520_mpu.bin",
    "esbc_qs3540_mpu.bin",
    "/boot",
    "priv",
};

TEST(MeasurementTexts, StandInTheLibraryAsTheyArePrinted)
{
    test::expect_in_library(texts);
}

// Fields of 64 bytes each.
TEST(MeasurementTexts, VariablesStandInFieldsOfTheirOwn)
{
    const std::string library = test::library_bytes();
    for (const char *image : {"esbc", "bios", "kernel", "initrd", "dtb", "ospkg"})
        for (const char *what : {"_filehash", "_usepatch"}) {
            std::string field = std::string(image) + what;
            field.resize(64);
            EXPECT_NE(library.find(field), std::string::npos) << field.c_str();
        }
}

} // namespace
