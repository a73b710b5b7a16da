// SPDX-License-Identifier: Apache-2.0
// Which hard types belong to which class of boards.
#include "board/hard_types.hpp"

#include <moxboot/board.h>

namespace moxboot
{
namespace
{

constexpr uint32_t mpu_types[] = {
    0x9000054a, 0x9000054b, 0x9000059d, 0x900005d1, 0x900005d2, 0x900005d3, 0x900005d9, 0x900005da,
    0x900005db, 0x900005e2, 0x900005e3, 0x900005e6, 0x900005e7, 0x900005f2, 0x900005f3, 0x900005f4,
    0x900005f5, 0x900005f8, 0x900005fd, 0x90000706, 0x90000713, 0x90000758, 0x90020708, 0x90020709,
    0x9002071c, 0x9002071f, 0x90020720, 0x90020751, 0x90020752, 0x90020757, 0x90020759, 0x9002077b,
    0x90020784, 0x90020786, 0x90020787, 0x90022028, 0x9002202a, 0x90322022, 0x90322023, 0x90422022,
    0x90422023, 0x90422024, 0x90422025, 0x90b2077d,
};
static_assert(std::size(mpu_types) == 44 && all_different(mpu_types));

constexpr uint32_t ha_types[] = {
    0x9000054a, 0x9000059d, 0x900005d1, 0x900005e6, 0x900005e7, 0x900005f3, 0x900005f4, 0x900005f5,
    0x900005fd, 0x90020708, 0x90020709, 0x9002071c, 0x9002071f, 0x90020751, 0x90020752, 0x90020759,
    0x90322022, 0x90322023, 0x90422022, 0x90422023, 0x90422024, 0x90422025,
};
static_assert(std::size(ha_types) == 22 && all_different(ha_types));

// Line cards also fill this whole range.
constexpr uint32_t lpu_first = 0x10000a40;
constexpr uint32_t lpu_last = 0x10000a84;
constexpr uint32_t lpu_types[] = {
    0x90003491, 0x900034b9, 0x900034ba, 0x900034bb, 0x900034bc, 0x900035b9, 0x900035e9, 0x900035ea,
    0x90003612, 0x90003674, 0x900036e9, 0x900036fa, 0x900036fb, 0x90003771, 0x900037f8, 0x900037f9,
    0x900037fa, 0x90003da3, 0x90003ec0, 0x90007401, 0x9000b202, 0x9000b302,
};
static_assert(std::size(lpu_types) == 22 && all_different(lpu_types));

constexpr uint32_t rootbak_types[] = {
    0x900005f3, 0x900005d1, 0x900005f4, 0x900005f5, 0x900005fd, 0x900005e6, 0x9000054a,
    0x90422022, 0x90422024, 0x90322022, 0x900005e7, 0x90000706, 0x90020709, 0x90020708,
    0x9002071c, 0x90020752, 0x9002071f, 0x90020759, 0x90020720, 0x90020757, 0x9002077b,
    0x90b2077d, 0x90020784, 0x90020786, 0x90020787, 0x9002202a,
};
static_assert(std::size(rootbak_types) == 26 && all_different(rootbak_types));

} // namespace
} // namespace moxboot

using namespace moxboot;

uint32_t drvboot_impl_is_mpu_by_hardtype(uint32_t hard_type)
{
    return contains(mpu_types, hard_type);
}

uint32_t drvboot_IsMpu(uint32_t hard_type)
{
    return drvboot_impl_is_mpu_by_hardtype(hard_type);
}

uint32_t drvboot_IsHaBoard(uint32_t hard_type)
{
    return contains(ha_types, hard_type);
}

uint32_t drvboot_IsLpu(uint32_t hard_type)
{
    return (hard_type >= lpu_first && hard_type <= lpu_last) || contains(lpu_types, hard_type);
}

uint32_t drvboot_IsUseRootbak(uint32_t hard_type)
{
    return contains(rootbak_types, hard_type);
}
