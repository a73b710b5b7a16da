// SPDX-License-Identifier: Apache-2.0
// One driver request as the kernel sees it, with a reply of the test's choice.
#pragma once

#include "channel/raw_calls.hpp"

#include <moxboot/moxboot.h>

#include <gtest/gtest.h>

#include <cstring>

namespace test
{

using Bytes = std::vector<std::uint8_t>;

// Words as they lie in memory, filled up with zeros.
Bytes words(const std::vector<std::uint32_t> &values, std::size_t size);

class RawReset : public testing::Test
{
  protected:
    void SetUp() override;
    void TearDown() override;

    // Of the latest request.
    unsigned long request = 0;
    std::uint32_t in_length = 0;
    std::uint32_t out_length = 0;
    Bytes in;         // `in_shown` bytes
    Bytes out_before; // out_length bytes
    std::size_t in_shown = 64;
    Bytes reply;
};

} // namespace test
