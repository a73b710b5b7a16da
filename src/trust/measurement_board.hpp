// SPDX-License-Identifier: Apache-2.0
// The kinds of boards whose images are measured.
#pragma once

#include <cstdint>

namespace moxboot
{

enum MeasuredBoard : uint32_t { measured_by_attestation = 1, measured_with_esbc = 2, measured_alone = 3 };
constexpr uint32_t not_measured = 0xFFFFFFFF;

constexpr uint32_t measured_board(uint32_t hard_type)
{
    switch (hard_type) {
    case 0x90000713:
        return measured_by_attestation;
    case 0x9002077B:
    case 0x90020757:
    case 0x9002202A:
    case 0x90020720:
        return measured_with_esbc;
    case 0x90B2077D:
        return measured_alone;
    default:
        return not_measured;
    }
}

} // namespace moxboot
