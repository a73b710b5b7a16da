// SPDX-License-Identifier: Apache-2.0
#include "board/family_rows.hpp"
#include "install/model_rows.hpp"

#include <moxboot/model.h>

#include <stdexcept>

namespace test
{

#define ROW(function) #function, function

// In the order of the header.
const std::vector<PtnRow> ptn_rows = {
    {ROW(DrvBoot_IsInstallPtnRunFile_KYP362R_HJV), "DrvBoot_IsInstallRunFile_KYP362R_HJV", false},
    {ROW(DrvBoot_IsInstallPtnRunFile_KYP247), "DrvBoot_IsInstallRunFile_KYP247", false},
    {ROW(DrvBoot_KYP432RRunFileByHardtypeAndPtnmode), "DrvBoot_IsInstallKYP432RRunFileByHardtype", false},
    {ROW(DrvBoot_IsInstallPtnRunFile_KYP432V_6273), "DrvBoot_IsInstallRunFile_KYP432V_6273", false},
    {ROW(DrvBoot_IsInstallPtnRunFile_KYP432V_6274), "DrvBoot_IsInstallRunFile_KYP432V_6274", false},
    {ROW(DrvBoot_IsInstallPtnRunFile_KYP432R_6273), "DrvBoot_IsInstallRunFile_KYP432R_6273", true},
    {ROW(DrvBoot_IsInstallPtnRunFile_KYP432R_6274), "DrvBoot_IsInstallRunFile_KYP432R_6274", false},
    {ROW(DrvBoot_KYP467JRunFileByHardtypeAndPtnmode), "DrvBoot_IsInstallKYP467JRunFileByHardtype", false},
    {ROW(DrvBoot_IsInstallPtnRunFile_KYP362R_LW), "DrvBoot_IsInstallRunFile_KYP362R_LW", false},
    {ROW(DrvBoot_IsInstallPtnRunFile_KYP613_S), "DrvBoot_IsInstallRunFile_KYP613_S", false},
    {ROW(DrvBoot_IsInstallPtnRunFile_KYP362V_H), "DrvBoot_InstallKYP362VHWithoutPack", false},
    {ROW(DrvBoot_IsInstallPtnRunFile_KYP362V_J), "DrvBoot_IsInstallRunFile_KYP362V_J", false},
    {ROW(DrvBoot_IsInstallPtnRunFile_KYP362R_ZQ), "DrvBoot_IsInstallRunFile_KYP362R_ZQ", true},
    {ROW(DrvBoot_IsInstallPtnRunFile_GL6264_Q7), "DrvBoot_IsInstallRunFile_GL6264_Q7", true},
    {ROW(DrvBoot_IsInstallPtnRunFile_GL6264_Q7Z), "DrvBoot_IsInstallRunFile_GL6264_Q7Z", true},
    {ROW(DrvBoot_IsInstallPtnRunFile_GL6264_R22), "DrvBoot_IsInstallRunFile_GL6264_R22", true},
    {ROW(DrvBoot_IsInstallPtnRunFile_GL6264_H639Q), "DrvBoot_IsInstallRunFile_GL6264_H639Q", true},
    {ROW(DrvBoot_IsInstallPtnRunFile_Ploxy_H632), "DrvBoot_IsInstallRunFile_Ploxy_H632", true},
    {ROW(DrvBoot_IsInstallPtnRunFile_Ploxy_H632U), "DrvBoot_IsInstallRunFile_Ploxy_H632U", true},
    {ROW(DrvBoot_IsInstallPtnRunFile_GL6264_H622), "DrvBoot_IsInstallRunFile_GL6264_H622", true},
    {ROW(DrvBoot_IsInstallPtnRunFile_GL6264_H622Q), "DrvBoot_IsInstallRunFile_GL6264_H622Q", true},
    {ROW(DrvBoot_IsInstallPtnRunFile_GL6264_Q2R), "DrvBoot_IsInstallRunFile_GL6264_Q2R", true},
    {ROW(DrvBoot_IsInstallPtnRunFile_GL6264_Q2H), "DrvBoot_IsInstallRunFile_GL6264_Q2H", true},
    {ROW(DrvBoot_IsInstallPtnRunFile_GL6264_Q2V), "DrvBoot_IsInstallRunFile_GL6264_Q2V", true},
    {ROW(DrvBoot_IsInstallPtnRunFile_GL6264_Q2V_J), "DrvBoot_IsInstallRunFile_GL6264_Q2V_J", true},
    {ROW(DrvBoot_IsInstallPtnRunFile_GL6264_R92), "DrvBoot_IsInstallRunFile_GL6264_R92", true},
    {ROW(DrvBoot_IsInstallPtnRunFile_DUB594_R22), "DrvBoot_IsInstallRunFile_DUB594_R22", true},
};

const std::vector<std::uint32_t> kyp467r_boards = {0x90020709, 0x9002071F};

const std::vector<KeyFileRow> key_file_rows = {
    {0x90020720, 0},   {0x9002202A, 0},   {0x9002071C, 253}, {0x90000713, 254},
    {0x90020757, 165}, {0x9002077B, 165}, {0x90020709, 0},   {0x9002071F, 0},
};

const ModelRow &model(const std::string &name)
{
    for (const ModelRow &row : model_rows)
        if (row.name == name)
            return row;
    throw std::runtime_error("no model " + name);
}

std::set<std::uint32_t> all_hard_types()
{
    std::set<std::uint32_t> all = {0, 1, 0x9000059d, 0x90000762, 0x7fffffff, 0xffffffff};
    for (const FamilyRow &row : family_rows)
        all.insert(row.types.begin(), row.types.end());
    for (const ModelRow &row : model_rows) {
        all.insert(row.types.begin(), row.types.end());
        all.insert(row.always.begin(), row.always.end());
    }
    all.insert(kyp467r_boards.begin(), kyp467r_boards.end());
    for (const KeyFileRow &row : key_file_rows)
        all.insert(row.hard_type);
    return all;
}

std::set<std::uint32_t> all_values(Second second)
{
    std::set<std::uint32_t> all;
    for (const ModelRow &row : model_rows)
        if (row.second == second)
            all.insert(row.values.begin(), row.values.end());
    if (second == Second::service_type)
        for (const KeyFileRow &row : key_file_rows)
            all.insert(row.service_type);
    return all;
}

bool asks_value(const ModelRow &row, std::uint32_t hard_type)
{
    if (row.second == Second::pack_type)
        return holds(row.types, hard_type);
    return row.second != Second::none;
}

bool holds(const ModelRow &row, std::uint32_t hard_type, std::uint32_t value)
{
    return holds(row.always, hard_type) ||
           (holds(row.types, hard_type) && (row.second == Second::none || holds(row.values, value)));
}

} // namespace test
