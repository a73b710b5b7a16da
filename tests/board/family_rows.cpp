// SPDX-License-Identifier: Apache-2.0
#include "board/family_rows.hpp"

#include <moxboot/families.h>

#include <algorithm>

namespace test
{

// In the order in which the library hands them out, as the next list.
const std::vector<std::uint32_t> ng_boards = {
    0x90020709, 0x90020708, 0x90022028, 0x9002071c, 0x9002071f, 0x90020751, 0x90020720,
    0x9002202a, 0x90020757, 0x9002077b, 0x90020752, 0x90422022, 0x90422024, 0x90322022,
    0x90422023, 0x90422025, 0x90322023, 0x90b2077d, 0x90020784, 0x90020786, 0x90020787};
const std::vector<std::uint32_t> ng_3540_boards = {0x90020709, 0x90020708, 0x9002071c, 0x9002071f,
                                                   0x90020751, 0x90020752, 0x90422022, 0x90422024,
                                                   0x90422023, 0x90422025};
const std::vector<std::uint32_t> qs3540 = {
    0x9000054a, 0x900005d1, 0x900005d2, 0x900005d3, 0x900005db, 0x900005e6, 0x900005e7, 0x90020708,
    0x90020709, 0x9002071c, 0x9002071f, 0x90020720, 0x90020751, 0x90020752, 0x90020757, 0x90020759,
    0x9002077b, 0x9002202a, 0x90422022, 0x90422023, 0x90422024, 0x90422025};
const std::vector<std::uint32_t> qs3540_original_bios = {
    0x9000054a, 0x900005d1, 0x900005d2, 0x900005d3, 0x900005db, 0x900005e6, 0x900005e7,
    0x90020708, 0x90020709, 0x9002071c, 0x9002071f, 0x90020720, 0x90020751, 0x90020752,
    0x90020759, 0x90422022, 0x90422023, 0x90422024, 0x90422025};
const std::vector<std::uint32_t> qs3540_exclude_ng = {0x9000054a, 0x900005d1, 0x900005d2, 0x900005d3,
                                                      0x900005db, 0x900005e6, 0x900005e7, 0x90020759};
const std::vector<std::uint32_t> a53le = {0x900005d9, 0x900005da, 0x900005e2, 0x900005e3,
                                          0x900005f2, 0x900005f8, 0x90000758};
const std::vector<std::uint32_t> qs3520 = {0x9000054b, 0x900005f3, 0x900005f4, 0x900005f5,
                                           0x900005fd, 0x90000706, 0x90000713};
const std::vector<std::uint32_t> qs3520_nextg = {0x90020784, 0x90020786, 0x90020787, 0x90b2077d};
const std::vector<std::uint32_t> qs3540_next_gen_bios = {0x90020720, 0x90020757};
const std::vector<std::uint32_t> sfc_3540 = {0x9002077b, 0x9002202a};
const std::vector<std::uint32_t> single_backup_boards = {0x9000054b, 0x900005f2, 0x900005f8, 0x90000713,
                                                         0x90000758};
const std::vector<std::uint32_t> fixed_box_boards = {0x90020720, 0x9002202a};

namespace
{

constexpr const char *unsuccess = "Drvboot get board type unsuccess.\n";
constexpr const char *unsuccessfully = "Drvboot get board type unsuccessfully.\n";
constexpr const char *run_file = "Drvboot Install Runfile By Hardtype NOK for get hard type NOK\n";

std::vector<std::uint32_t> both(std::vector<std::uint32_t> types, const std::vector<std::uint32_t> &more)
{
    types.insert(types.end(), more.begin(), more.end());
    return types;
}

} // namespace

#define ROW(function) #function, function

const std::vector<FamilyRow> family_rows = {
    {ROW(DrvBoot_Qs3540ExcludeNgBoard), qs3540_exclude_ng, {}, {unsuccess}, {}},
    {ROW(DrvBoot_Qs3540), qs3540, {}, {unsuccessfully}, {}},
    {ROW(DrvBoot_Qs3540OriginalBios), qs3540_original_bios, {}, {unsuccessfully}, {}},
    {ROW(DrvBoot_A53le), a53le, {}, {unsuccessfully}, {}},
    {ROW(DrvBoot_Qs3520), qs3520, {}, {unsuccessfully}, {}},
    {ROW(DrvBoot_Qs3520SpiFlash), qs3520, Flashes{2}, {unsuccessfully}, {}},
    {ROW(DrvBoot_Qs3520NotSpiFlash), qs3520, Flashes{0, 1}, {unsuccessfully}, {}},
    {ROW(DrvBoot_Qs3520_nextg), qs3520_nextg, {}, {unsuccessfully}, {}},
    {ROW(DrvBootIs3520NextGenBiosBoard), qs3520_nextg, {}, {run_file}, {}},
    {ROW(DrvBoot_IsNgBoard), ng_boards, {}, {unsuccessfully}, {}},
    {ROW(DrvBoot_IsNg3540Board), ng_3540_boards, {}, {unsuccessfully}, {}},
    {ROW(DrvBootIs3540NextGenBiosBoard), qs3540_next_gen_bios, {}, {run_file}, {}},
    {ROW(DrvBootIsSfc3540Board), sfc_3540, {}, {run_file}, {}},
    {ROW(DrvBootInstallBiosQs3520NextGen),
     qs3520_nextg,
     Flashes{0, 2},
     {run_file},
     "Drvboot Install Runfile By Hardtype NOK for get 3520 next gen bios hard type NOK\n"},
    {ROW(DrvBootInstallBiosQs3540NextGen),
     qs3540_next_gen_bios,
     Flashes{0, 2},
     {run_file},
     "Drvboot Install Runfile By Hardtype NOK for get 3540 next gen bios hard type NOK\n"},
    {ROW(DrvBootIsNg3540OtherFlash),
     ng_3540_boards,
     Flashes{0, 2},
     {unsuccessfully},
     "Drvboot Install Runfile for get 3540 otherFlash hard type NOK\n"},
    {ROW(DrvBootIsNg3540NandFlashBoard),
     both(ng_3540_boards, qs3540_next_gen_bios),
     Flashes{1},
     {unsuccessfully, run_file},
     "Drvboot Install Runfile By Hardtype NOK for get 3540 nandFlash hard type NOK\n"},
};

std::set<std::uint32_t> family_candidates()
{
    std::set<std::uint32_t> all = {0, 1, 0x7fffffff, 0x80000000, 0xffffffff, 0x90000762, 0x9000059d};
    for (const auto *types :
         {&ng_boards, &ng_3540_boards, &qs3540, &qs3540_original_bios, &qs3540_exclude_ng, &a53le, &qs3520,
          &qs3520_nextg, &qs3540_next_gen_bios, &sfc_3540, &single_backup_boards, &fixed_box_boards})
        for (std::uint32_t type : *types)
            all.insert({type - 1, type, type + 1, type & 0xffff, type ^ 0x00020000, type ^ 0x00400000});
    for (std::uint32_t type = 0x900005d9; type < 0x900005d9 + 32; ++type)
        all.insert(type);
    return all;
}

bool holds(const std::vector<std::uint32_t> &types, std::uint32_t type)
{
    return std::find(types.begin(), types.end(), type) != types.end();
}

} // namespace test
