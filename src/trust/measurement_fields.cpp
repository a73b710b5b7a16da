// SPDX-License-Identifier: Apache-2.0
// The fields of a measured image's record: what the boot stages left in variables, and its type.
#include "base/report.hpp"
#include "base/result.hpp"

#include <moxboot/driver.h>
#include <moxboot/env.h>
#include <moxboot/measurement.h>
#include <moxboot/platform.h>

#include <cstring>
#include <iterator>

using namespace moxboot;

namespace
{

constexpr uint32_t patch_size = 4;
using PatchText = char[patch_size];
constexpr char no_hash[] = "0";
constexpr char no_patch[] = "no";
constexpr uint32_t least_type_room = 17;
constexpr const char *type_names[] = {"BIOS", "BIOS", "BOOTLOADER", "INITRD", "INITRD", "INITRD", "OSPKG"};

bool is_image(const PdtSmlInfoRow &row, const char *keyword, uint32_t key_type)
{
    return row.key_type == key_type && row.keyword != nullptr && strcmp(row.keyword, keyword) == 0;
}

} // namespace

uint32_t PdtSMLInfo_Get_FileIndex(const char *keyword, uint32_t key_type, char *hash_variable,
                                  char *patch_variable)
{
    uint32_t type = 0;
    if (PdtSMLInfoGetType(&type) != ok)
        return failed;
    if (keyword != nullptr && type < PDT_SML_BOARD_TYPES)
        for (const PdtSmlInfoRow &row : g_smlInfoStr[type])
            if (is_image(row, keyword, key_type)) {
                const bool copied = memcpy_s(hash_variable, PDT_SML_VARIABLE_SIZE, row.hash_variable,
                                             PDT_SML_VARIABLE_SIZE) == 0 &&
                                    memcpy_s(patch_variable, PDT_SML_VARIABLE_SIZE, row.patch_variable,
                                             PDT_SML_VARIABLE_SIZE) == 0;
                return copied ? ok : failed;
            }
    REPORT_INFO("pdtSMLInfo get file index not normal,keyType=%d,  keyword=%s.\n\n",
                static_cast<int>(key_type), keyword);
    return failed;
}

uint32_t PdtSMLInfo_Get_FileHashInfo(const char *name, uint32_t, char *out, uint32_t out_length)
{
    char value[DRVBOOT_ENV_SIZE] = {};
    const char *const text = value;
    if (drv_getenv_s(name, value, sizeof value) != ok) {
        REPORT_FAILURE("get fileHash env(%s) unsuccess!\n", name);
        if (memcpy_s(out, out_length, no_hash, sizeof no_hash) != 0)
            REPORT_FAILURE("get pcFileHash memcpy_s not normal!\n");
        return failed;
    }
    if (out_length > sizeof value || memcpy_s(out, out_length, value, out_length) != 0) {
        REPORT_FAILURE("get fileHash memcpy_s not normal!!\n");
        return failed;
    }
    REPORT_INFO("get fileHash(%s) by env(%s) success!\n", text, name);
    return ok;
}

uint32_t PdtSMLInfo_Get_FilePatchInfo(const char *name, uint32_t, char *out, uint32_t out_length)
{
    PatchText value = {};
    const char *const text = value;
    if (drv_getenv_s(name, value, sizeof value) != ok) {
        REPORT_FAILURE("get patchInfo env(%s) not normal!\n", name);
        if (memcpy_s(out, out_length, no_patch, sizeof no_patch) != 0)
            REPORT_FAILURE("get patchInfo memcpy_s not normal!\n");
        return failed;
    }
    if (memcpy_s(out, out_length, value, sizeof value) != 0) {
        REPORT_FAILURE("get patchInfo memcpy_s not normal!!\n");
        return failed;
    }
    REPORT_INFO("get patchInfo(%s) by env(%s) success!\n", text, name);
    return ok;
}

uint32_t PdtSMLInfo_Get_FileHash(const char *hash_variable, const char *patch_variable,
                                 PdtSmlFileInfo *record)
{
    if (record == nullptr)
        return failed;
    if (PdtSMLInfo_Get_FileHashInfo(hash_variable, PDT_SML_VARIABLE_SIZE, record->file_hash,
                                    sizeof record->file_hash) != ok) {
        REPORT_FAILURE("get file hash(%s) unsuccess!\n", patch_variable);
        return failed;
    }
    PatchText patch = {};
    if (PdtSMLInfo_Get_FilePatchInfo(patch_variable, PDT_SML_VARIABLE_SIZE, patch, sizeof patch) != ok)
        REPORT_FAILURE("get file patchinfo(%s) unsuccess!\n", patch_variable);
    record->use_patch = strncmp(patch, no_patch, sizeof patch) != 0;
    return ok;
}

uint32_t PdtSMLInfo_Get_FileTypeInfo(uint32_t key_type, char *out, uint32_t out_length)
{
    if (out_length < least_type_room) {
        REPORT_FAILURE("get file type input len not normal, len = %u\n", out_length);
        return failed;
    }
    if (key_type >= std::size(type_names)) {
        REPORT_FAILURE("Key type input not normal\n");
        return failed;
    }
    if (memset_s(out, out_length, 0, out_length) != 0) {
        REPORT_FAILURE("clear file type info to zero unsuccessful, type = %u\n", key_type);
        return failed;
    }
    const char *name = type_names[key_type];
    if (memcpy_s(out, out_length - 1, name, strlen(name)) != 0) {
        REPORT_FAILURE("get file type info unsuccessful, type = %u\n", key_type);
        return failed;
    }
    REPORT_INFO("get file type info(%s) keyType(%u)\n", name, key_type);
    return ok;
}
