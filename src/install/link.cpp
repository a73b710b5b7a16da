// SPDX-License-Identifier: Apache-2.0
// Links by predicate, and what both link walks use.
#include "install/link.hpp"

#include "base/report.hpp"
#include "base/result.hpp"

#include <moxboot/boot_file.h>
#include <moxboot/platform.h>

#include <cerrno>
#include <cstring>
#include <unistd.h>

using namespace moxboot;

namespace
{

bool applies(const LinkFileDesc &row, const char *install_root)
{
    uint8_t flag = 1; // stays so when the predicate fails: on an unknown board the source's presence decides
    if (row.predicate != nullptr)
        row.predicate(&flag, reinterpret_cast<uintptr_t>(install_root));
    return flag != 0;
}

// False: the link could not be made.
bool make_link(const LinkFileDesc &row, uint32_t index, const char *source, const char *destination)
{
    DrvBoot_UnlinkExistedUnexpectedBootFile(row.source_file, destination);
    LinkPath target;
    if (!read_link(destination, target))
        return DrvBoot_LinkExistedBootFile(source, destination, row.source_file) == 0;
    REPORT_INFO("Drvboot install bootfile, read link %u exist\n", index);
    REPORT_INFO("Drvboot src path %s\n", target);
    return true;
}

} // namespace

int moxboot::print_destination(LinkPath &path, const char *install_root, const char *directory,
                               const char *file)
{
    return snprintf_s(path, sizeof path, sizeof path - 1, "%s/%s/%s", install_root, directory, file);
}

bool moxboot::read_link(const char *link_path, LinkPath &target)
{
    ssize_t length = readlink(link_path, target, sizeof target - 1);
    target[length > 0 ? length : 0] = '\0';
    return length > 0;
}

uint32_t DrvBoot_InstallBootFile(const LinkFileDesc *table, uint32_t count, const char *install_root)
{
    if (count == 0)
        return ok;
    if (table == nullptr || install_root == nullptr)
        return failed;
    for (uint32_t i = 0; i < count; ++i) {
        const LinkFileDesc &row = table[i];
        if (!applies(row, install_root))
            continue;
        LinkPath source;
        LinkPath destination;
        if (DrvBoot_FormatSrcPath(install_root, row.source_directory, row.source_file, source,
                                  sizeof source) != 0 ||
            print_destination(destination, install_root, row.destination_directory, row.destination_file) < 0)
            return failed;
        REPORT_INFO("Drvboot create link %u, src: %s\n", i, source);
        REPORT_INFO("Drvboot create link %u, dst: %s\n", i, destination);
        // A link that cannot be made ends the walk, but the installation goes on.
        if (DrvBoot_IsFileExisted(source) == 1 && !make_link(row, i, source, destination))
            return ok;
    }
    return ok;
}

int32_t DrvBoot_FormatSrcPath(const char *install_root, const char *source_directory, const char *source_file,
                              char *path, uint32_t size)
{
    if (install_root == nullptr || source_directory == nullptr || source_file == nullptr || path == nullptr)
        return -1;
    int printed =
        source_directory[0] == '/'
            ? snprintf_s(path, size, size - 1, "%s/%s", source_directory, source_file)
            : snprintf_s(path, size, size - 1, "%s/%s/%s", install_root, source_directory, source_file);
    return printed < 0 ? -1 : 0;
}

uint32_t DrvBoot_IsFileExisted(const char *path)
{
    if (path == nullptr)
        return 0;
    if (access(path, F_OK) == 0)
        return 1;
    REPORT_INFO("Drvboot file %s access not ok(%d)\n", path, errno);
    return 0;
}

int32_t DrvBoot_LinkExistedBootFile(const char *target, const char *link_path, const char *name)
{
    if (target == nullptr || link_path == nullptr)
        return -1;
    int result = symlink(target, link_path);
    if (result == 0)
        return 0;
    REPORT_INFO("Drvboot create link %s NOK, ret %u(%d)\n", name, static_cast<uint32_t>(result), errno);
    return -1;
}

int32_t DrvBoot_UnlinkExistedUnexpectedBootFile(const char *source_file, const char *link_path)
{
    int32_t difference = -1;
    if (source_file == nullptr || link_path == nullptr)
        return difference;
    for (const BootFileDesc &row : g_bootFileDesc) {
        difference = strncmp(source_file, row.file_name, strlen(row.file_name));
        if (difference == 0)
            return unlink(link_path);
    }
    return difference;
}
