// SPDX-License-Identifier: Apache-2.0
// Which boards take the generic key file: those without a key file of their model.
#include "base/result.hpp"
#include "board/family.hpp"

#include <moxboot/board.h>
#include <moxboot/model.h>

#include <algorithm>
#include <iterator>

using namespace moxboot;

// The first row of a hard type counts.
constexpr DrvbootKeyFileBoard g_noNeedLinkKeyFileMoxBoard[DRVBOOT_KEY_FILE_BOARDS] = {
    {0x90020720, 0},   {0x9002202A, 0},   {0x9002071C, 253}, {0x90000713, 254},
    {0x90020757, 165}, {0x9002077B, 165}, {0x90020709, 0},   {0x9002071F, 0},
};
static_assert(g_noNeedLinkKeyFileMoxBoard[DRVBOOT_KEY_FILE_BOARDS - 1].hard_type != 0, "a row is missing");

namespace
{

// This model has a key file of its own, whatever its service type.
constexpr uint32_t q7z_board = 0x9002071C;
constexpr uint32_t q7z_logic_id = 0x32F08300;

bool takes_generic(uint32_t hard_type, uint32_t service_type, uint32_t logic_id)
{
    const auto *board = std::find_if(
        std::begin(g_noNeedLinkKeyFileMoxBoard), std::end(g_noNeedLinkKeyFileMoxBoard),
        [hard_type](const DrvbootKeyFileBoard &candidate) { return candidate.hard_type == hard_type; });
    if (board == std::end(g_noNeedLinkKeyFileMoxBoard))
        return true;
    if (hard_type == q7z_board && logic_id == q7z_logic_id)
        return false;
    return board->service_type != 0 && board->service_type != service_type;
}

} // namespace

uint32_t DrvBoot_KeyFileNoNeedLink(uint8_t *flag, uintptr_t)
{
    uint32_t hard_type = 0;
    uint32_t service_type = 0;
    uint32_t logic_id = 0;
    if (flag == nullptr || !read_hard_type(run_file_unread, &hard_type) ||
        DrvBoot_GetProductServiceType(&service_type) != ok)
        return failed;
    if (MOX_GetSelfEncapLogicId(&logic_id) != ok) {
        REPORT_FAILURE("Drvboot get local encap logic id NOK\n");
        return failed;
    }
    *flag = takes_generic(hard_type, service_type, logic_id);
    return ok;
}
