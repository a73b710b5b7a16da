// SPDX-License-Identifier: Apache-2.0
// Which images are measured on which kind of board.
#include <moxboot/measurement.h>

namespace
{

// Callers copy whole fields.
using Variable = char[PDT_SML_VARIABLE_SIZE];

constexpr Variable esbc_hash = "esbc_filehash";
constexpr Variable esbc_patch = "esbc_usepatch";
constexpr Variable bios_hash = "bios_filehash";
constexpr Variable bios_patch = "bios_usepatch";
constexpr Variable kernel_hash = "kernel_filehash";
constexpr Variable kernel_patch = "kernel_usepatch";
constexpr Variable initrd_hash = "initrd_filehash";
constexpr Variable initrd_patch = "initrd_usepatch";
constexpr Variable dtb_hash = "dtb_filehash";
constexpr Variable dtb_patch = "dtb_usepatch";
constexpr Variable ospkg_hash = "ospkg_filehash";
constexpr Variable ospkg_patch = "ospkg_usepatch";

} // namespace

constexpr PdtSmlInfoRow g_smlInfoStr[PDT_SML_BOARD_TYPES][PDT_SML_ROWS] = {
    {},
    {
        {0, PDT_SML_BIOS, "bios_qs3520", esbc_hash, esbc_patch, 8},
        {1, PDT_SML_KERNEL, "Image", kernel_hash, kernel_patch, 13},
        {2, PDT_SML_INITRD, "initrd", initrd_hash, initrd_patch, 13},
        {3, PDT_SML_DEVICE_TREE, "dtb", dtb_hash, dtb_patch, 13},
    },
    {
        {0, PDT_SML_ESBC, "bios_qs3540", esbc_hash, esbc_patch, 8},
        {1, PDT_SML_BIOS, "bios_qs3540", bios_hash, bios_patch, 9},
        {2, PDT_SML_OS_PACKAGE, "ospkg_qs3540", ospkg_hash, ospkg_patch, 13},
    },
    {
        {0, PDT_SML_BIOS, "bios_qs3520", bios_hash, bios_patch, 8},
        {1, PDT_SML_OS_PACKAGE, "ospkg_qs3520", ospkg_hash, ospkg_patch, 13},
    },
};
