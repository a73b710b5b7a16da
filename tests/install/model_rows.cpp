// SPDX-License-Identifier: Apache-2.0
#include "install/model_rows.hpp"

#include "board/family_rows.hpp"

#include <moxboot/model.h>

#include <algorithm>
#include <stdexcept>

namespace test
{
namespace
{

constexpr const char *run_file = "Drvboot Install Runfile By Hardtype NOK for get hard type NOK\n";
constexpr const char *q7z =
    "Drvboot Is Install GL6264_Q7Z Runfile By Hardtype nok for get hard type unsuccess\n";
constexpr const char *q2r =
    "Drvboot Is Install GL6264_Q2R Runfile By Hardtype nok for get hard type unsuccess\n";
constexpr const char *q7z_id = "Drvboot GL6264_Q7Z get local encap logic id NOK, return 0x";
constexpr const char *h632u_id = "Drvboot Ploxy_H632U get local encap logic id NOK, return 0x";
constexpr const char *any_id = "Drvboot get local encap logic id NOK, return 0x";

} // namespace

#define ROW(function) #function, function

// In the order of the header, kind by kind.
const std::vector<ModelRow> model_rows = {
    {ROW(DrvBoot_IsInstallRunFile_KYP362R_HJV),
     Second::none,
     {0x900005D2, 0x900005D3, 0x900005DB},
     {},
     run_file,
     {},
     {}},
    {ROW(DrvBoot_IsInstallKYP432RRunFileByHardtype),
     Second::none,
     {0x900005F5, 0x900005E7},
     {},
     run_file,
     {},
     {}},
    {ROW(DrvBoot_IsInstallRunFile_KYP432V_6273), Second::none, {0x9002071C}, {}, run_file, {}, {}},
    {ROW(DrvBoot_IsInstallRunFile_KYP432V_6274), Second::none, {0x90020752}, {}, run_file, {}, {}},
    {ROW(DrvBoot_IsInstallRunFile_KYP432R_6273),
     Second::none,
     {0x900005F4, 0x900005D1},
     {},
     run_file,
     {},
     {}},
    {ROW(DrvBoot_IsInstallRunFile_KYP432R_6274), Second::none, {0x90020759}, {}, run_file, {}, {}},
    {ROW(DrvBoot_IsInstallKYP467JRunFileByHardtype), Second::none, {0x900005E6}, {}, run_file, {}, {}},
    {ROW(DrvBoot_IsInstallRunFile_KYP247), Second::none, {0x90000758, 0x900005F8}, {}, run_file, {}, {}},
    {ROW(DrvBoot_InstallKYP362VH), Second::none, {0x90020720}, {}, run_file, {}, {}},

    {ROW(DrvBoot_IsInstallRunFile_KYP362R_LW),
     Second::pack_type,
     {0x90000713},
     {102},
     run_file,
     {},
     {0x9000054B}},
    {ROW(DrvBoot_IsInstallRunFile_KYP362R_ZQ),
     Second::pack_type,
     {0x9002077B, 0x90020757},
     {102},
     "Drvboot Is Install KYP362R_ZQ Runfile By Hardtype nok for get hard type unsuccess\n",
     {},
     {}},
    {ROW(DrvBoot_IsInstallRunFile_GL6264_Q2R),
     Second::pack_type,
     {0x9002077B, 0x90020757},
     {165},
     q2r,
     {},
     {}},
    {ROW(DrvBoot_IsInstallRunFile_GL6264_Q2H),
     Second::pack_type,
     {0x90000713},
     {145},
     "Drvboot Is Install GL6264_Q2H Runfile By Hardtype nok for get hard type unsuccess\n",
     {},
     {}},
    {ROW(DrvBoot_IsInstallRunFile_GL6264_Q2V),
     Second::pack_type,
     {0x90020720},
     {157},
     "Drvboot Is Install GL6264_Q2V Runfile By Hardtype nok for get hard type unsuccess\n",
     {},
     {}},
    {ROW(DrvBoot_IsInstallRunFile_GL6264_Q2V_J),
     Second::pack_type,
     {0x9002202A},
     {157},
     "Drvboot Is Install GL6264_Q2V_J Runfile By Hardtype nok for get hard type unsuccess\n",
     {},
     {}},
    {ROW(DrvBoot_IsInstallRunFile_KYP613_S),
     Second::pack_type,
     {0x90000713},
     {254},
     "Drvboot Is Install KYP613_S Runfile By Hardtype nok for get hard type unsuccess\n",
     {},
     {}},
    {ROW(DrvBoot_IsInstallRunFile_GL6264_R92),
     Second::pack_type,
     {0x90000758},
     {169},
     "Drvboot Is Install GL6264_R92 Runfile By Hardtype nok for get hard type unsuccess\n",
     {},
     {}},
    {ROW(DrvBoot_IsInstallRunFile_DUB594_R22),
     Second::pack_type,
     {0x90020786, 0x90020787, 0x90020784, 0x90B2077D},
     {174},
     q2r,
     {},
     {}},

    {ROW(DrvBoot_IsInstallRunFile_GL6264_Q7),
     Second::logic_id,
     {0x9002071C},
     {0x32F08200, 0x32F08201, 0x32F08202, 0x32F08203, 0x32F08204, 0x32F08205},
     q7z,
     q7z_id,
     {}},
    {ROW(DrvBoot_IsInstallRunFile_GL6264_Q7Z), Second::logic_id, {0x9002071C}, {0x32F08300}, q7z, q7z_id, {}},
    {ROW(DrvBoot_IsInstallRunFile_GL6264_R22),
     Second::logic_id,
     {0x90B2077D},
     {0x32F0B000},
     "Drvboot Is Install GL6264 R22 Runfile By Hardtype nok for get hard type unsuccess\n",
     any_id,
     {}},
    {ROW(DrvBoot_IsInstallRunFile_GL6264_H639Q),
     Second::logic_id,
     {0x90B2077D},
     {0x32F0B020},
     "Drvboot Is Install GL6264 H639Q Runfile By Hardtype nok for get hard type unsuccess\n",
     any_id,
     {}},
    {ROW(DrvBoot_IsInstallRunFile_Ploxy_H632),
     Second::logic_id,
     {0x90B2077D},
     {0x32F0B050, 0x32F0B090},
     q7z,
     q7z_id,
     {}},
    {ROW(DrvBoot_IsInstallRunFile_Ploxy_H632U),
     Second::logic_id,
     {0x90B2077D},
     {0x32F0B060, 0x32F0B070},
     "Drvboot Is Install Ploxy_H632U Runfile By Hardtype nok for get hard type unsuccess\n",
     h632u_id,
     {}},
    {ROW(DrvBoot_IsInstallRunFile_GL6264_H622),
     Second::logic_id,
     {0x90B2077D},
     {0x32F0B080, 0x32F0B010},
     "Drvboot Is Install GL6264 H622 Runfile By Hardtype nok for get hard type unsuccess\n",
     any_id,
     {}},
    {ROW(DrvBoot_IsInstallRunFile_GL6264_H622Q),
     Second::logic_id,
     {0x90B2077D},
     {0x32F0B030},
     "Drvboot Is Install GL6264 H622Q Runfile By Hardtype nok for get hard type unsuccess\n",
     any_id,
     {}},

    {ROW(DrvBoot_InstallKYP362VHWithoutPack), Second::service_type, {0x90020720}, {148}, run_file, {}, {}},
    {ROW(DrvBoot_IsInstallRunFile_KYP362V_J), Second::service_type, {0x9002202A}, {148}, run_file, {}, {}},
    {ROW(DrvBoot_IsInstallRunFile_KYP627_S),
     Second::service_type,
     {0x9002071C},
     {253},
     "Drvboot Is Install KYP627_S Runfile By Hardtype nok for get hard type unsuccess\n",
     {},
     {}},
};

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
