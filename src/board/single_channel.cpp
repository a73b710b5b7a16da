// SPDX-License-Identifier: Apache-2.0
// Whether the board has a single channel.
#include "base/result.hpp"

#include <moxboot/board.h>
#include <moxboot/driver.h>
#include <moxboot/families.h>

#include <syslog.h>

using namespace moxboot;

namespace
{
constexpr uint32_t single_channel_type = 0x90000762;
}

uint32_t MOX_IsSingleChlBoard(uint32_t *flag)
{
    if (flag == nullptr)
        return DRVBOOT_ERR_IOCTL;
    *flag = 0;
    uint32_t hard_type = 0;
    if (MOX_GetBoardHardType(&hard_type) == 0) {
        syslog(LOG_INFO, "get board type unsuccess.\n");
        return DRVBOOT_ERR_IOCTL;
    }
    *flag = hard_type == single_channel_type ? 1 : 0;
    return ok;
}
