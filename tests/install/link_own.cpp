// SPDX-License-Identifier: Apache-2.0
#include "install/link_own.hpp"

#include "support/said.hpp"

#include <moxboot/moxboot.h>

#include <array>
#include <cstdarg>
#include <cstdio>
#include <dlfcn.h>

namespace test
{

std::vector<std::string> steps;
std::map<std::string, std::int64_t> own_answers;
std::uint32_t own_logic_id = 0;

namespace
{

template <typename Result, typename... Args>
Result own(Result (*)(Args...), const char *name, Args... args)
{
    const auto answer = own_answers.find(name);
    if (answer != own_answers.end())
        return static_cast<Result>(answer->second);
    return reinterpret_cast<Result (*)(Args...)>(dlsym(RTLD_NEXT, name))(args...);
}

// A report in full: the library's own functions cut it.
void note(const std::string &kind, const char *format, va_list args)
{
    std::array<char, 4096> line = {};
    vsnprintf(line.data(), line.size(), format, args);
    steps.push_back(kind + line.data());
}

const char *table_name(const void *table)
{
    return table == g_linkFileDesc        ? "links"
           : table == g_linkEncapFileDesc ? "links by id"
           : table == g_bootFileDesc      ? "boot files"
                                          : "own";
}

} // namespace
} // namespace test

using namespace test;

#define OWN(function, ...) own(&function, #function, __VA_ARGS__)

extern "C" {

void DrvBootStartupStepTrace(uint32_t code, uint32_t level, const char *format, ...)
{
    va_list args;
    va_start(args, format);
    note(text("trace %u %u: ", code, level), format, args);
    va_end(args);
}

int32_t drvboot_message(int32_t level, const char *format, ...)
{
    va_list args;
    va_start(args, format);
    note(text("message %d: ", level), format, args);
    va_end(args);
    return 0;
}

uint32_t MOX_GetSelfEncapLogicId(uint32_t *logic_id)
{
    steps.push_back(text("logic id, %u before", *logic_id));
    *logic_id = own_logic_id;
    const auto answer = own_answers.find("MOX_GetSelfEncapLogicId");
    return answer == own_answers.end() ? 0 : static_cast<uint32_t>(answer->second);
}

int32_t DrvBoot_FormatSrcPath(const char *install_root, const char *source_directory, const char *source_file,
                              char *path, uint32_t size)
{
    steps.push_back(text("format %s %s %s %u", install_root, source_directory, source_file, size));
    return OWN(DrvBoot_FormatSrcPath, install_root, source_directory, source_file, path, size);
}

uint32_t DrvBoot_IsFileExisted(const char *path)
{
    steps.push_back(text("existed %s", path));
    return OWN(DrvBoot_IsFileExisted, path);
}

int32_t DrvBoot_LinkExistedBootFile(const char *target, const char *link_path, const char *name)
{
    steps.push_back(text("link %s %s %s", target, link_path, name));
    return OWN(DrvBoot_LinkExistedBootFile, target, link_path, name);
}

int32_t DrvBoot_UnlinkExistedUnexpectedBootFile(const char *source_file, const char *link_path)
{
    steps.push_back(text("unlink %s %s", source_file, link_path));
    return OWN(DrvBoot_UnlinkExistedUnexpectedBootFile, source_file, link_path);
}

uint32_t DrvBoot_InstallBootFile(const LinkFileDesc *table, uint32_t count, const char *install_root)
{
    steps.push_back(text("walk %s %u %s", table_name(table), count, install_root));
    return OWN(DrvBoot_InstallBootFile, table, count, install_root);
}

uint32_t DrvBoot_Encap_InstallBootFile(const LinkEncapFileDesc *table, int32_t count,
                                       const char *install_root)
{
    steps.push_back(text("walk %s %d %s", table_name(table), count, install_root));
    return OWN(DrvBoot_Encap_InstallBootFile, table, count, install_root);
}

uint32_t DrvBoot_LinkFile(const LinkEncapFileDesc *table, uint32_t index, const char *install_root)
{
    steps.push_back(text("row %s %u %s", table_name(table), index, install_root));
    return OWN(DrvBoot_LinkFile, table, index, install_root);
}

uint32_t DrvBoot_ExtractBootFileXTN(const char *package, const BootFileDesc *table, uint32_t count,
                                    const char *directory)
{
    steps.push_back(text("extract %s %s %u %s", package, table_name(table), count, directory));
    return OWN(DrvBoot_ExtractBootFileXTN, package, table, count, directory);
}

int32_t Drvboot_ClearBiosFile(const char *file_name)
{
    steps.push_back(text("clear %s", file_name));
    return OWN(Drvboot_ClearBiosFile, file_name);
}

} // extern "C"
