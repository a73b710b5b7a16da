// SPDX-License-Identifier: Apache-2.0
// What the tests of resets and of reset notices look at: the driver's records of the last reset.
#pragma once

#include "vboard/model/requests.hpp"

#include <gtest/gtest.h>

namespace vboard_test
{

constexpr std::uint32_t reason_item = 0x10002206;
constexpr std::uint32_t date_item = 0x10002207;
constexpr std::uint32_t mode_record = 0x10002208;
constexpr std::uint32_t reason_record = 0x10002209;

// 2026/11/21 08:30:00
inline const Bytes a_date{0xea, 0x07, 11, 21, 8, 30, 0};

// The value in the reply to a get.
inline Bytes value_of(vboard::Board &board, std::uint32_t item)
{
    auto call = get(board0, item);
    call.out_size = 256;
    const Bytes out = board.ioctl(call).out;
    EXPECT_EQ(word(out, 16), 0u);
    EXPECT_EQ(word(out, 24), out.size() - 28);
    return out.size() < 28 ? Bytes() : Bytes(out.begin() + 28, out.end());
}

inline Bytes record(std::uint32_t reason, const Bytes &date)
{
    Bytes bytes = words({reason});
    bytes.insert(bytes.end(), date.begin(), date.end());
    bytes.push_back(0);
    return bytes;
}

inline const Bytes no_reason(12);

} // namespace vboard_test
