// SPDX-License-Identifier: Apache-2.0
// The hard types of the board families that products see by name.
#include "board/hard_types.hpp"

#include <moxboot/families.h>

using namespace moxboot;

constexpr uint32_t g_ng_board_list[DRVBOOT_NG_BOARDS] = {
    0x90020709, 0x90020708, 0x90022028, 0x9002071C, 0x9002071F, 0x90020751, 0x90020720,
    0x9002202A, 0x90020757, 0x9002077B, 0x90020752, 0x90422022, 0x90422024, 0x90322022,
    0x90422023, 0x90422025, 0x90322023, 0x90B2077D, 0x90020784, 0x90020786, 0x90020787,
};
static_assert(all_different(g_ng_board_list));

constexpr uint32_t g_ng_3540_board_list[DRVBOOT_NG_3540_BOARDS] = {
    0x90020709, 0x90020708, 0x9002071C, 0x9002071F, 0x90020751,
    0x90020752, 0x90422022, 0x90422024, 0x90422023, 0x90422025,
};
static_assert(all_different(g_ng_3540_board_list));
