// SPDX-License-Identifier: Apache-2.0
// One place for an answer of the product information, whose every byte is looked at.
#pragma once

#include "support/board_test.hpp"

#include <array>
#include <cstring>

namespace test
{

constexpr std::uint32_t random_type = 0, cpu_switch_type = 3, protect_type = 5, reserve_type = 6,
                        start_time_type = 7, period_type = 8, name_type = 12, service_type = 13,
                        location_type = 14, entropy_type = 15;

inline std::string number(std::uint32_t value)
{
    std::string bytes(sizeof value, '\0');
    std::memcpy(bytes.data(), &value, sizeof value);
    return bytes;
}

class ProductTest : public BoardTest
{
  protected:
    std::array<char, 64> out = {};

    // The untouched place starts at an odd address: no caller promises another one.
    std::uint32_t ask(std::uint32_t type, std::uint32_t length)
    {
        out.fill('#');
        return MOX_PdtGetInfo(type, out.data() + 1, &length);
    }
    std::string written() const
    {
        return {out.data(), out.size()};
    }
    static std::string only(const std::string &bytes)
    {
        return "#" + bytes + std::string(out_size - 1 - bytes.size(), '#');
    }
    void expect(std::uint32_t type, std::uint32_t length, std::uint32_t result, const std::string &bytes,
                const Said &said = nothing())
    {
        EXPECT_EQ(during([&] { EXPECT_EQ(ask(type, length), result); }), said)
            << "type " << type << " length " << length;
        EXPECT_EQ(written(), only(bytes)) << "type " << type << " length " << length;
    }
    std::uint32_t ask_nowhere(std::uint32_t type, std::uint32_t length)
    {
        return MOX_PdtGetInfo(type, nullptr, &length);
    }
    void expect_nowhere(std::uint32_t type, std::uint32_t length, std::uint32_t result,
                        const Said &said = nothing())
    {
        EXPECT_EQ(during([&] { EXPECT_EQ(ask_nowhere(type, length), result); }), said)
            << "type " << type << " length " << length;
    }

  private:
    static constexpr std::size_t out_size = std::tuple_size_v<decltype(out)>;
};

} // namespace test
