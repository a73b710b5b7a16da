// SPDX-License-Identifier: Apache-2.0
#include "support/library_texts.hpp"

namespace
{

constexpr std::string_view texts[] = {
    "[drvboot] MOX_PdtGetInfo unsuccess. don't support PdtInfoType, type=%d\n\n",
    "DrvBoot Backup Protect outBuf is invalid.\n",
    "[drvboot] get product rand minentropy invalid len %u.\n\n",
    "Drvboot get board type unsuccessfully.\n",
    "/cgroup1",
    "Stat %s unsuccessfully, errno %d.\n",
    "product_service_type",
    "/dev/chassis0",
    "name copy unsuccessfully, ret is %d.\n",
    "[drvboot] get product name not normal, input len = %u.\n\n",
    "[drvboot] get product name not normal, ret = %d.\n\n",
    "[drvboot] get product type not normal, input len = %d.\n\n",
    "[drvboot] get product type not normal, ret = %d.\n\n",
    "[drvboot] get product type not normal, strncpy_s ret = %d.\n\n",
    "[drvboot] Drvboot_GetProductServiceType get product type %s.\n\n",
    "Env %s not exist.\n",
    "KYP 362R-W",
    "KYP 362V-H",
    "KYP 432V",
    "KYP 467R",
};

TEST(ProductTexts, StandInTheLibraryAsTheyArePrinted)
{
    test::expect_in_library(texts);
}

} // namespace
