// SPDX-License-Identifier: Apache-2.0
#include "support/library_texts.hpp"

namespace
{

constexpr std::string_view texts[] = {
    "[tpm ready]pid:%d get hard type is wrong\n",
    "libdrv_basic.so",
    "/lib/libnb_bsp.so",
    "drv_board_get_tpm_active_status",
    "drv_board_get_tpm_online_status",
    "nb_is_sec_boot_en",
    "[drv_boot]dlopen libdrv_basic.so unsuccessfully.\n",
    "[drv_boot]dlsym func:drv_board_get_tpm_active_status unsuccessfully.\n",
    "[drv_boot]get_tpm_active_status ret:%u, status:%u, pid:%d\n",
    "tpm_is_actived",
    "true",
    "product_family_type",
    "[drv_boot] TPM random skip product ptn.\n",
    "[drv_boot] TPM random board: %x\n\n",
    "[drv_boot]pid:%d dlopen libdrv_basic.so unsuccessfully.\n",
    "[drv_boot]pid:%d dlsym func:drv_board_get_tpm_online_status unsuccessfully.\n",
    "[drv_boot]get_tpm_online_status pid:%d, ret:%u, status:%s\n",
    "PRESENT",
    "NO PRESENT",
    "brd_is_sp_tpm",
    "/dev/tpm0",
    "pid:%d board is not tpm2.0\n",
};

TEST(TpmTexts, StandInTheLibraryAsTheyArePrinted)
{
    test::expect_in_library(texts);
}

} // namespace
