// SPDX-License-Identifier: Apache-2.0
// The links of one installation: first those by predicate, then those by logic id, which replace them.
#include "base/report.hpp"
#include "base/result.hpp"

#include <moxboot/link.h>

using namespace moxboot;

int32_t MOX_AfterInstallRunFile(const char *install_root)
{
    REPORT_INFO("\nDrvboot install run file begin...\n");
    if (DrvBoot_InstallBootFile(g_linkFileDesc, DRVBOOT_LINK_FILES, install_root) != ok)
        REPORT_INFO("Drvboot install run file NOK\n");
    uint32_t result =
        DrvBoot_Encap_InstallBootFile(g_linkEncapFileDesc, DRVBOOT_ENCAP_LINK_FILES, install_root);
    if (result != ok)
        REPORT_INFO("Drvboot encap install run file NOK\n");
    REPORT_INFO("Drvboot install run file end\n");
    return static_cast<int32_t>(result);
}
