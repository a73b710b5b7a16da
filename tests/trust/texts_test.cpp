// SPDX-License-Identifier: Apache-2.0
#include "support/library_texts.hpp"

namespace
{

constexpr std::string_view texts[] = {
    "libdrv_basic.so",
    "drv_subboard_get_online_status",
    "[drv_boot]dlopen libdrv_basic.so unsuccessfully.",
    "[drv_boot]dlsym func:drv_get_subboard_online_status unsuccessfully.",
    "[drv_boot]get_mcu_status ret:%u, status:%u",
    "get mcu id input valid.\n",
    "libdrv_secure.so",
    "drv_sec_mcu_get_mcu_die_id",
    "[drv_boot]dlopen libdrv_secure.so unsuccessfully.",
    "[drv_boot]dlsym func:drv_sec_mcu_get_mcu_die_id unsuccessfully.",
    "[drv_boot]get_mcu id ret:%u len %u",
    "[drv_boot]get_mcu id %s",
};

TEST(TrustTexts, StandInTheLibraryAsTheyArePrinted)
{
    test::expect_in_library(texts);
}

TEST(TrustTexts, AreNotPutRight)
{
    constexpr std::string_view misspelt[] = {"func:drv_subboard_get_online_status", "input invalid",
                                             "get_mcu_id ret"};
    test::expect_not_in_library(misspelt);
}

} // namespace
