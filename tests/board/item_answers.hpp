// SPDX-License-Identifier: Apache-2.0
// What the values of items come to, by kind of function.
#pragma once

#include "board/item_rows.hpp"

namespace test
{

// The code 0, and the value stored.
std::vector<Answer> value_is_stored();
std::vector<Answer> value_is_result();
// Stored is always the same, and so is the result.
std::vector<Answer> always(std::uint32_t result, std::optional<std::uint32_t> stored);
std::vector<Answer> taken();
// 1 for the one kind of value, 0 for the other.
std::vector<Answer> yes_for_zero();
std::vector<Answer> yes_for_others();
std::vector<Answer> hard_type_answers();
// A line only when the value is another one than the last; at load the last one is 0.
std::vector<Answer> all_ha_answers();
// The raw value only when it is another one than the last, the peer's half every time.
std::vector<Answer> hard_bad_answers();

} // namespace test
