// SPDX-License-Identifier: Apache-2.0
// The interface to boxes in board NVRAM, for boards that have none. A board with NVRAM boxes puts its own
// definitions in front of these.
#include <moxboot/blackbox.h>

namespace
{
constexpr int32_t not_found = -2;
constexpr int32_t not_served = -1;
} // namespace

uint32_t DrvBootHasNvramBlackBox(void)
{
    return 0;
}

int32_t DrvBootGetNvramBoxIndex(const char *, uint32_t)
{
    return not_found;
}

int32_t DrvBootReadNvramBoxIndex(uint32_t, uint32_t, uint32_t, uint8_t *)
{
    return not_served;
}

int32_t DrvBootWriteNvramBoxIndex(uint32_t)
{
    return not_served;
}

void DrvBootClearNvramBoxIndex(void) {}
