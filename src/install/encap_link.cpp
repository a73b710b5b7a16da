// SPDX-License-Identifier: Apache-2.0
// Links by logic id.
#include "install/link.hpp"

#include "base/report.hpp"
#include "base/result.hpp"

#include <moxboot/board.h>
#include <moxboot/platform.h>

#include <cerrno>
#include <unistd.h>

using namespace moxboot;

namespace
{

// Whatever is at the destination makes way.
void clear_destination(const char *destination, bool is_link, uint32_t index, const char *old_target)
{
    if (is_link) {
        REPORT_INFO("Drvboot install bootfile, read link %u exist, src path is:\n", index);
        REPORT_INFO("  %s\n", old_target);
        unlink(destination);
    } else if (access(destination, F_OK) == 0) {
        REPORT_INFO("Drvboot dest link has file exist, unlink it firstly\n");
        unlink(destination);
    }
}

} // namespace

uint32_t DrvBoot_Encap_InstallBootFile(const LinkEncapFileDesc *table, int32_t count,
                                       const char *install_root)
{
    uint32_t logic_id = 0;
    if (uint32_t code = MOX_GetSelfEncapLogicId(&logic_id); code != ok) {
        REPORT_FAILURE("Drvboot get local encap logic id NOK, return 0x%x\n", code);
        return code;
    }
    REPORT_INFO("Drvboot get logic id 0x%x\n", logic_id);
    if (count <= 0)
        return ok;
    if (table == nullptr || install_root == nullptr)
        return failed;
    uint32_t result = ok;
    for (uint32_t i = 0; i < static_cast<uint32_t>(count); ++i) {
        if (table[i].logic_id != logic_id)
            continue;
        result = DrvBoot_LinkFile(table, i, install_root);
        REPORT_INFO("Drvboot get encap file, i is 0x%x, ret:%u\n", i, result);
    }
    return result;
}

uint32_t DrvBoot_LinkFile(const LinkEncapFileDesc *table, uint32_t index, const char *install_root)
{
    if (table == nullptr || install_root == nullptr)
        return failed;
    const LinkEncapFileDesc &row = table[index];
    LinkPath source;
    LinkPath destination;
    LinkPath old_target;
    if (DrvBoot_FormatSrcPath(install_root, row.source_directory, row.source_file, source, sizeof source) !=
        0)
        return failed;
    int printed =
        print_destination(destination, install_root, row.destination_directory, row.destination_file);
    if (printed < 0) {
        REPORT_INFO("[DRVBOOT]Unable to print dst, ret is %d\n", printed);
        return static_cast<uint32_t>(printed);
    }
    const bool is_link = read_link(destination, old_target);
    REPORT_INFO("Drvboot create link %u, src: %s\n", index, source);
    REPORT_INFO("Drvboot create link %u, desc:%s\n", index, destination);
    REPORT_INFO("Drvboot create link %u, src: %s, desc: %s\n", index, row.source_directory,
                row.destination_directory);
    if (DrvBoot_IsFileExisted(source) != 1) {
        REPORT_INFO("Drvboot create link %u, src: %s not exist\n", index, source);
        return ok;
    }
    clear_destination(destination, is_link, index, old_target);
    int linked = symlink(source, destination);
    if (linked != 0)
        REPORT_INFO("[DRVBOOT]Unable to link %s, ret is %u(%d)\n", row.source_file,
                    static_cast<uint32_t>(linked), errno);
    else
        REPORT_INFO("[DRVBOOT]Succeeded to link %s\n", destination);
    return ok;
}
