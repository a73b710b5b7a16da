// SPDX-License-Identifier: Apache-2.0
// The board family predicates. Lists that look alike differ on purpose: each names the boards that one kind
// of boot file was made for.
#include "base/result.hpp"
#include "board/family.hpp"
#include "board/hard_types.hpp"

#include <moxboot/board.h>
#include <moxboot/families.h>

using namespace moxboot;

namespace
{

constexpr uint32_t qs3540_without_ng[] = {
    0x9000054A, 0x900005E6, 0x900005D1, 0x900005E7, 0x900005D3, 0x900005D2, 0x900005DB, 0x90020759,
};
static_assert(std::size(qs3540_without_ng) == 8 && all_different(qs3540_without_ng));

constexpr uint32_t qs3540[] = {
    0x9000054A, 0x900005E6, 0x900005D1, 0x900005E7, 0x900005D3, 0x900005D2, 0x900005DB, 0x90020709,
    0x90020708, 0x9002071F, 0x90020751, 0x9002071C, 0x90020720, 0x90020757, 0x90020752, 0x90020759,
    0x90422022, 0x90422023, 0x90422024, 0x90422025, 0x9002077B, 0x9002202A,
};
static_assert(std::size(qs3540) == 22 && all_different(qs3540));

constexpr uint32_t qs3540_first_bios[] = {
    0x9000054A, 0x900005E6, 0x900005D1, 0x900005E7, 0x900005D3, 0x900005D2, 0x900005DB,
    0x90020709, 0x90020708, 0x9002071F, 0x90020751, 0x9002071C, 0x90020752, 0x90020759,
    0x90020720, 0x90422022, 0x90422023, 0x90422024, 0x90422025,
};
static_assert(std::size(qs3540_first_bios) == 19 && all_different(qs3540_first_bios));

constexpr uint32_t a53le[] = {
    0x900005D9, 0x900005DA, 0x900005E2, 0x900005E3, 0x900005F2, 0x900005F8, 0x90000758,
};
static_assert(std::size(a53le) == 7 && all_different(a53le));

constexpr uint32_t qs3520[] = {
    0x900005F3, 0x900005F4, 0x900005F5, 0x90000713, 0x9000054B, 0x90000706, 0x900005FD,
};
static_assert(std::size(qs3520) == 7 && all_different(qs3520));

constexpr uint32_t qs3520_next[] = {0x90020786, 0x90020787, 0x90020784, 0x90B2077D};
static_assert(std::size(qs3520_next) == 4 && all_different(qs3520_next));

constexpr uint32_t qs3540_next_bios[] = {0x90020757, 0x90020720};
constexpr uint32_t sfc_3540[] = {0x9002202A, 0x9002077B};

constexpr PlainText type_unread = "Drvboot get board type unsuccessfully.\n";

struct Flash {
    uint32_t type;
    bool has; // whether the board must have this flash, or any other one
};

// Narrows a predicate down to the boards with a certain flash. The flash is asked only where the board is in
// question. Without words of its own a failure is left to what the inner predicate has said.
uint32_t answer_with_flash(DrvBootPredicate board, Flash flash, uint8_t *flag, PlainText failure = {})
{
    if (flag == nullptr)
        return failed;
    uint8_t is_board = 0;
    if (board(&is_board, 0) != ok) {
        if (failure.text != nullptr)
            report_failure(failure);
        return failed;
    }
    *flag = is_board != 0 && (DrvBootGetFlashType() == flash.type) == flash.has;
    return ok;
}

constexpr Flash spi = {DRVBOOT_FLASH_SPI, true};
constexpr Flash not_spi = {DRVBOOT_FLASH_SPI, false};
constexpr Flash not_nand = {DRVBOOT_FLASH_NAND, false};

} // namespace

bool moxboot::read_hard_type(PlainText failure, uint32_t *hard_type)
{
    *hard_type = 0;
    if (MOX_GetBoardHardType(hard_type) != 0)
        return true;
    report_failure(failure);
    return false;
}

uint32_t moxboot::answer_family(std::span<const uint32_t> types, PlainText failure, uint8_t *flag)
{
    uint32_t hard_type = 0;
    if (flag == nullptr || !read_hard_type(failure, &hard_type))
        return failed;
    *flag = contains(types, hard_type);
    return ok;
}

uint32_t DrvBoot_Qs3540ExcludeNgBoard(uint8_t *flag, uintptr_t)
{
    return answer_family(qs3540_without_ng, "Drvboot get board type unsuccess.\n", flag);
}

uint32_t DrvBoot_Qs3540(uint8_t *flag, uintptr_t)
{
    return answer_family(qs3540, type_unread, flag);
}

uint32_t DrvBoot_Qs3540OriginalBios(uint8_t *flag, uintptr_t)
{
    return answer_family(qs3540_first_bios, type_unread, flag);
}

uint32_t DrvBoot_A53le(uint8_t *flag, uintptr_t)
{
    return answer_family(a53le, type_unread, flag);
}

uint32_t DrvBoot_Qs3520(uint8_t *flag, uintptr_t)
{
    return answer_family(qs3520, type_unread, flag);
}

uint32_t DrvBoot_Qs3520SpiFlash(uint8_t *flag, uintptr_t)
{
    return answer_with_flash(DrvBoot_Qs3520, spi, flag);
}

uint32_t DrvBoot_Qs3520NotSpiFlash(uint8_t *flag, uintptr_t)
{
    return answer_with_flash(DrvBoot_Qs3520, not_spi, flag);
}

uint32_t DrvBoot_Qs3520_nextg(uint8_t *flag, uintptr_t)
{
    return answer_family(qs3520_next, type_unread, flag);
}

uint32_t DrvBootIs3520NextGenBiosBoard(uint8_t *flag, uintptr_t)
{
    return answer_family(qs3520_next, run_file_unread, flag);
}

uint32_t DrvBoot_IsNgBoard(uint8_t *flag, uintptr_t)
{
    return answer_family(g_ng_board_list, type_unread, flag);
}

uint32_t DrvBoot_IsNg3540Board(uint8_t *flag, uintptr_t)
{
    return answer_family(g_ng_3540_board_list, type_unread, flag);
}

uint32_t DrvBootIs3540NextGenBiosBoard(uint8_t *flag, uintptr_t)
{
    return answer_family(qs3540_next_bios, run_file_unread, flag);
}

uint32_t DrvBootIsSfc3540Board(uint8_t *flag, uintptr_t)
{
    return answer_family(sfc_3540, run_file_unread, flag);
}

uint32_t DrvBootInstallBiosQs3520NextGen(uint8_t *flag, uintptr_t)
{
    return answer_with_flash(
        DrvBootIs3520NextGenBiosBoard, not_nand, flag,
        "Drvboot Install Runfile By Hardtype NOK for get 3520 next gen bios hard type NOK\n");
}

uint32_t DrvBootInstallBiosQs3540NextGen(uint8_t *flag, uintptr_t)
{
    return answer_with_flash(
        DrvBootIs3540NextGenBiosBoard, not_nand, flag,
        "Drvboot Install Runfile By Hardtype NOK for get 3540 next gen bios hard type NOK\n");
}

uint32_t DrvBootIsNg3540OtherFlash(uint8_t *flag, uintptr_t)
{
    return answer_with_flash(DrvBoot_IsNg3540Board, not_nand, flag,
                             "Drvboot Install Runfile for get 3540 otherFlash hard type NOK\n");
}

uint32_t DrvBootIsNg3540NandFlashBoard(uint8_t *flag, uintptr_t)
{
    if (flag == nullptr)
        return failed;
    uint8_t ng = 0;
    uint8_t next_bios = 0;
    // Both are asked before either answer is looked at.
    uint32_t ng_result = DrvBoot_IsNg3540Board(&ng, 0);
    uint32_t next_bios_result = DrvBootIs3540NextGenBiosBoard(&next_bios, 0);
    if (ng_result != ok || next_bios_result != ok) {
        report_failure("Drvboot Install Runfile By Hardtype NOK for get 3540 nandFlash hard type NOK\n");
        return failed;
    }
    *flag = (ng != 0 || next_bios != 0) && DrvBootGetFlashType() == DRVBOOT_FLASH_NAND;
    return ok;
}
