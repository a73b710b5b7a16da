// SPDX-License-Identifier: Apache-2.0
// The lists of what was measured, and the records of the measured images.
#include "base/report.hpp"
#include "base/result.hpp"
#include "board/family.hpp"
#include "trust/measurement_board.hpp"

#include <moxboot/board.h>
#include <moxboot/measurement.h>
#include <moxboot/platform.h>
#include <moxboot/tpm.h>

#include <cstddef>
#include <cstring>
#include <iterator>

using namespace moxboot;

static_assert(sizeof(PdtStmItem) == 68);
static_assert(sizeof(PdtSmlFileInfo) == 460 && offsetof(PdtSmlFileInfo, file_type) == 256 &&
              offsetof(PdtSmlFileInfo, file_hash) == 384 && offsetof(PdtSmlFileInfo, use_patch) == 448 &&
              offsetof(PdtSmlFileInfo, valid) == 452 && offsetof(PdtSmlFileInfo, measurement_index) == 456);

namespace
{

constexpr uint32_t stm_boards[] = {
    0x9000054B, 0x90000713, 0x90B2077D, 0x90020784, 0x90020786,
    0x90020720, 0x90020787, 0x90020757, 0x9002077B, 0x9002202A,
};
constexpr const char *stm_items[PDT_STM_ITEMS] = {"ESBC", "Bios", "Kernel"};

constexpr uint32_t images_by_board[PDT_SML_BOARD_TYPES] = {0, 4, 3, 2};
constexpr PdtSmlInfoRow no_image = {};

using VariableName = char[PDT_SML_VARIABLE_SIZE];

// A field that may lack its terminator.
struct FieldText {
    char text[sizeof PdtSmlFileInfo::file_type + 1] = {};

    explicit FieldText(const char (&field)[sizeof PdtSmlFileInfo::file_type])
    {
        memcpy(text, field, sizeof field);
    }
};

uint32_t get_file_name(const char *keyword, uint32_t key_type, PdtSmlFileInfo *record)
{
    return key_type == PDT_SML_ESBC
               ? TPMAgentGetEsbcName(record->file_name)
               : TPMAgent_GetfileName(keyword, record->file_name, sizeof record->file_name);
}

} // namespace

uint32_t MOX_GetPdtSTMItemNum(uint32_t *count)
{
    uint32_t hard_type = 0;
    if (count == nullptr || MOX_GetBoardHardType(&hard_type) == 0 ||
        IsExistInHWList(hard_type, stm_boards, std::size(stm_boards)) == 0)
        return failed;
    *count = PDT_STM_ITEMS;
    return ok;
}

uint32_t MOX_GetPdtSTMItem(PdtStmItem *items, uint32_t count)
{
    if (items == nullptr) {
        REPORT_INFO("pstItemInfo is null.\n\n");
        return failed;
    }
    if (count > PDT_STM_ITEMS) {
        REPORT_INFO("item num too large.\n\n");
        return failed;
    }
    for (uint32_t i = 0; i < count; ++i) {
        items[i].id = i;
        const size_t length = strlen(stm_items[i]);
        if (strncpy_s(items[i].name, sizeof items[i].name, stm_items[i], length) == 0)
            items[i].name[length] = '\0';
    }
    return ok;
}

uint32_t MOX_GetPdtSMLInfoCount(uint32_t *count)
{
    uint32_t hard_type = 0;
    if (count == nullptr || !read_hard_type("PdtSMLInfo get board hard type unsuccess.\n\n", &hard_type))
        return failed;
    const uint32_t type =
        DrvbootIsSupportRemoteAttest(hard_type) != 0 ? measured_by_attestation : measured_board(hard_type);
    if (type < PDT_SML_BOARD_TYPES)
        *count = images_by_board[type];
    return ok;
}

uint32_t PdtSMLInfoGetType(uint32_t *type)
{
    uint32_t hard_type = 0;
    if (type == nullptr ||
        !read_hard_type("[drv_boot]PdtSMLInfoGetType Get board type unsuccessful\n", &hard_type))
        return failed;
    const uint32_t known = measured_board(hard_type);
    if (known == not_measured)
        return failed;
    *type = known;
    return ok;
}

// The other types take any count: their callers ask for fewer records than there are.
uint32_t PdtSMLInfoCheckCnt(uint32_t type, uint32_t count)
{
    return type == measured_by_attestation && count != images_by_board[type] ? failed : ok;
}

uint32_t MOX_GetPdtSMLInfo(PdtSmlFileInfo *records, uint32_t count)
{
    if (records == nullptr) {
        REPORT_FAILURE("smlData is null.\n\n");
        return failed;
    }
    uint32_t type = 0;
    if (PdtSMLInfoGetType(&type) != ok)
        return failed;
    if (PdtSMLInfoCheckCnt(type, count) != ok) {
        REPORT_FAILURE("[drv_boot]SMLInfo(%u) count(%u) is invalid.\n", type, count);
        return failed;
    }
    uint32_t sum = 0;
    for (uint32_t i = 0; i < count; ++i) {
        const PdtSmlInfoRow &row = i < PDT_SML_ROWS ? g_smlInfoStr[type][i] : no_image;
        sum += PdtSMLInfo_Get_FileInfo(row.keyword, row.key_type, &records[i], row.measurement_index);
    }
    if (sum != ok) {
        REPORT_FAILURE("PdtSMLInfo_Get_FileInfo get filehash not normal(%u)\n\n", sum);
        return failed;
    }
    REPORT_INFO("PdtSMLInfo_Get_FileInfo get filehash success(%u)\n\n", sum);
    return ok;
}

uint32_t PdtSMLInfo_Get_FileInfo(const char *keyword, uint32_t key_type, PdtSmlFileInfo *record,
                                 uint32_t measurement_index)
{
    uint32_t hard_type = 0;
    if (record == nullptr || !read_hard_type("get board hard type failed!\n", &hard_type))
        return failed;
    if (get_file_name(keyword, key_type, record) != ok) {
        REPORT_FAILURE("get file name not normal by keyword(%s)!\n", keyword);
        return failed;
    }
    VariableName hash = {};
    VariableName patch = {};
    const char *const hash_variable = hash;
    const char *const patch_variable = patch;
    if (PdtSMLInfo_Get_FileIndex(keyword, key_type, hash, patch) != ok)
        REPORT_FAILURE("get fileHashEnv(%s) name or filePathEnv(%s) not normal by keyword(%s)!\n",
                       hash_variable, patch_variable, keyword);
    if (PdtSMLInfo_Get_FileTypeInfo(key_type, record->file_type, sizeof record->file_type) != ok) {
        const FieldText type(record->file_type);
        const char *const text = type.text;
        REPORT_FAILURE("get file type(%s) not normal by keyType(%u)!\n", text, key_type);
        return failed;
    }
    if (PdtSMLInfo_Get_FileHash(hash_variable, patch_variable, record) != ok)
        REPORT_FAILURE("get fileHashEnv(%s) or filePathEnv(%s) unsuccess\n", hash_variable, patch_variable);
    record->measurement_index = measurement_index;
    record->valid = 1;
    return ok;
}
