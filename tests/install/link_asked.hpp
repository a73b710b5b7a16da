// SPDX-License-Identifier: Apache-2.0
// Predicates of the test's own, which note what they are asked with.
#pragma once

#include <cstdint>
#include <optional>
#include <ostream>
#include <vector>

namespace test
{

struct Asked {
    std::uint8_t flag; // as the caller has set it
    std::uintptr_t argument;
    bool operator==(const Asked &) const = default;
};
inline void PrintTo(const Asked &asked, std::ostream *out)
{
    *out << "flag " << int{asked.flag} << " argument 0x" << std::hex << asked.argument << std::dec;
}

inline std::vector<Asked> asked;

// Writes an answer, or none when it is negative, and gives a result.
template <int answer, std::uint32_t result = 0>
std::uint32_t says(std::uint8_t *flag, std::uintptr_t argument)
{
    asked.push_back({*flag, argument});
    if (answer >= 0)
        *flag = static_cast<std::uint8_t>(answer);
    return result;
}

constexpr auto *yes = says<1>;
constexpr auto *no = says<0>;
constexpr auto *fails = says<-1, 0xFFFFFFFF>;
constexpr auto *fails_with_no = says<0, 0xFFFFFFFF>;
constexpr auto *fails_with_yes = says<1, 0xFFFFFFFF>;

} // namespace test
