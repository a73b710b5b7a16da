// SPDX-License-Identifier: Apache-2.0
#include "support/library_texts.hpp"

namespace
{

constexpr std::string_view texts[] = {
    "get clock time unsuccessfully. ret(0x%x) error(%d) last_time(%d) now_time(%d)\r\n",
    "[drvboot] GetRandom by RAM, malloc unsuccessfully.\n\n",
    "/dev/module_crl",
    "/tmp/crl_for_ko.crl",
    "libdrv_secure.so",
    "drv_crl_patch_write",
    "[bootdrv_CRL]input crl file path is null.",
    "[bootdrv_CRL]get %s's realpath unsuccessfully.",
    "[bootdrv_CRL]open %s unsuccessfully.",
    "[bootdrv_CRL]get %s's crl len unsuccessfully.",
    "[bootdrv_CRL]malloc unsuccessfully.",
    "[bootdrv_CRL]read crl unsuccessfully, len %d, retLen %d.",
    "[bootdrv_CRL]get crl from %s unsuccess.",
    "[bootdrv_CRL]this board unsupport module_crl, errnum %d.",
    "[bootdrv_CRL]open crl dev unsuccessfully, errnum %d.",
    "[bootdrv_CRL]write crl to crl dev unsuccess.",
    "[bootdrv_CRL]write crl dev unsuccessfully,len %d,ret %d.",
    "[bootdrv_CRL]GetCrlFromDev start \n",
    "[bootdrv_CRL]lseek unsuccess or over!\n",
    "[bootdrv_CRL]read unsuccess! len = %d\n",
    "[bootdrv_CRL]read success! len = %d\n",
    "[bootdrv_CRL]open crl_for_ko.crl unsuccess!\n",
    "[bootdrv_CRL]write unsuccess! ret = %d\n",
    "[bootdrv_CRL]GetCrlFromDev end \n",
    "[bootdrv_CRL]SupportSetCrlFile2Drv success.",
    "[bootdrv_CRL]dlopen libdrv_secure.so unsuccessfully.",
    "[bootdrv_CRL]dlsym func: drv_crl_patch_write unsuccessfully.",
    "[bootdrv_CRL]write crl to drv success.",
    "[bootdrv_CRL]Write2Drv end",
    "[ERR] settimeofday iSec = %d, iUsec = %d, buf = %s\r\n\n",
    "[ERR] MOX_PdtSetSystemTime iSec = %d, iUsec = %d, buf = %s\r\n\n",
    "[OK] MOX_PdtSetSystemTime iSec = %d, iUsec = %d, buf = %s\r\n\n",
    "[ERR] Cant't saveenv \r\n\n",
    "board_system_time",
};

TEST(EntropyCrlTimeTexts, StandInTheLibraryAsTheyArePrinted)
{
    test::expect_in_library(texts);
}

TEST(EntropyCrlTimeTexts, AreNotPutRight)
{
    constexpr std::string_view put_right[] = {"Can't saveenv", "does not support module_crl", "MOX_WriteCrl",
                                              "crl dev unsuccessfully, len"};
    test::expect_not_in_library(put_right);
}

} // namespace
