// SPDX-License-Identifier: Apache-2.0
// An answer of one's choice to the question for the ptn mode, as a product's own function may give it.
#pragma once

#include <cstdint>
#include <optional>

namespace test
{

struct PtnAnswer {
    std::uint32_t result;
    std::optional<std::uint8_t> flag; // none: left alone
};

// Nothing: the library's own function answers.
void answer_ptn_mode(std::optional<PtnAnswer> answer);
// How often the mode was asked since answer_ptn_mode().
unsigned ptn_mode_asked();

} // namespace test
