// SPDX-License-Identifier: Apache-2.0
// The board items as the tests know them: each function with what it asks the driver and what it makes of
// every kind of answer.
#pragma once

#include "support/said.hpp"

#include <cstdint>
#include <optional>
#include <string>
#include <variant>
#include <vector>

namespace test
{

using Getter = std::uint32_t (*)(std::uint32_t *); // gives a code and stores the value
using Query = std::uint32_t (*)();                 // gives the value itself, or a code
using Setter = std::uint32_t (*)(std::uint32_t);

// What a function gives when the item fails.
enum class Fails { channel_code, minus_one, zero, one, printed_count };

// What one value (the driver's for a getter, the argument for a setter) comes to. A table's answers are tried
// one after the other in one process.
struct Answer {
    std::uint32_t value;
    std::uint32_t result;
    std::optional<std::uint32_t> stored;
    Said said;
};

// What a board that is not an MPU gets.
struct NotMpu {
    std::uint32_t result;
    std::string text; // of a reported failure; empty: nothing is said
    std::optional<std::uint32_t> stored;
};

struct ItemRow {
    std::string name;
    std::variant<Getter, Query, Setter> function;
    bool set = false;
    std::string device;
    std::uint32_t code = 0;
    std::optional<NotMpu> not_mpu; // none: the kind of board is not asked
    Fails fails = Fails::channel_code;
    std::string text; // of the failure, with one conversion for the channel's result; empty: nothing is said
    std::vector<Answer> answers;

    std::string copy; // second text of the failure, at level 2
    std::optional<std::uint32_t> stored_on_failure;
    Said said_after_failure;
    std::optional<std::uint32_t> always_sends; // a setter that sends this whatever it is given
};

// Every function of the table: the exported ones and their implementations.
std::vector<ItemRow> item_rows();

// The text with the channel's result in place of its conversion.
std::string with_code(const std::string &text, std::uint32_t code);

} // namespace test
