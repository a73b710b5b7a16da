// SPDX-License-Identifier: Apache-2.0
// Bytes from the source, taken into a buffer that tells when more is written than was asked for.
#pragma once

#include "trust/entropy_fixture.hpp"

namespace test
{

using Bytes = std::vector<std::uint8_t>;

constexpr std::uint8_t untouched = 0xa5;

// The bytes for jittery_clock(1000) and those for the other clocks that tests name were computed once by a
// program in another language, with that language's SHA-256.
inline const Bytes jittery_bytes = {0x77, 0xc7, 0x7c, 0x68, 0x0f, 0x2f, 0x92, 0xf8, 0x57, 0xf3, 0xa2, 0x2d,
                                    0x39, 0x08, 0x00, 0x09, 0x94, 0x16, 0xd2, 0x4f, 0xe5, 0xf5, 0x60, 0x42};

class EntropyReadTest : public EntropyTest
{
  protected:
    // What entropy_read() writes, which is no more than it was asked for.
    static Bytes take(std::size_t count)
    {
        Bytes output(count + guard, untouched);
        EXPECT_EQ(entropy_read(output.data(), static_cast<std::uint32_t>(count)), 0u);
        EXPECT_THAT(Bytes(output.end() - guard, output.end()), testing::Each(untouched));
        output.resize(count);
        return output;
    }

  private:
    static constexpr std::size_t guard = 16;
};

} // namespace test
