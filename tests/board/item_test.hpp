// SPDX-License-Identifier: Apache-2.0
// One row of the item table, called on a board and held against what the row says.
#pragma once

#include "board/item_rows.hpp"
#include "support/board_test.hpp"

namespace test
{

void PrintTo(const ItemRow &row, std::ostream *out);

constexpr std::uint32_t untouched = 0x5a5a5a5a;
constexpr std::uint32_t argument = 1; // every setter takes it

class ItemTest : public BoardTest, public testing::WithParamInterface<ItemRow>
{
  protected:
    const ItemRow &row = GetParam();
    std::uint32_t stored = untouched;

    // Calls the function: a getter stores into `stored`, a setter gets `given`.
    std::uint32_t call(std::uint32_t given = argument)
    {
        if (auto getter = std::get_if<Getter>(&row.function))
            return (*getter)(&stored);
        if (auto setter = std::get_if<Setter>(&row.function))
            return (*setter)(given);
        return std::get<Query>(row.function)();
    }

    std::string request(std::uint32_t given = argument) const
    {
        std::string line = text("%s %s 0x%x", row.set ? "set" : "get", row.device.c_str(), row.code);
        return row.set ? line + text(" %u", row.always_sends.value_or(given)) : line;
    }

    bool asks_hard_type_itself() const
    {
        return row.device == board0 && row.code == item_hard_type;
    }

    std::vector<std::string> expected_requests(std::uint32_t given = argument) const
    {
        std::vector<std::string> lines = {request(given)};
        if (row.not_mpu)
            lines.insert(lines.begin(), "get /dev/board0 0x8000001");
        return lines;
    }

    // Every operation that the item's device sees after the hard type was asked.
    vboard::Fault on_item() const
    {
        vboard::Fault fault;
        fault.device = row.device;
        fault.item = row.code;
        return fault;
    }

    Said reported(std::uint32_t code) const
    {
        Said said;
        if (row.set)
            said = failure(
                text("Not succeed to set %s l2_type=0x%x, ret=0x%x.\n", row.device.c_str(), row.code, code));
        if (!row.text.empty())
            said = said + failure(with_code(row.text, code));
        if (!row.copy.empty())
            said = said + message(2, with_code(row.copy, code));
        return said + row.said_after_failure;
    }

    std::uint32_t failure_result(std::uint32_t code) const
    {
        switch (row.fails) {
        case Fails::channel_code:
            return code;
        case Fails::minus_one:
            return minus_one;
        case Fails::zero:
            return 0;
        case Fails::one:
            return 1;
        case Fails::printed_count:
            return static_cast<std::uint32_t>(message(3, with_code(row.text, code)).out.size());
        }
        return untouched;
    }

    // Calls and expects what the row says of a failure with this channel result.
    void expect_failure(std::uint32_t code, const Said &said_before = nothing())
    {
        board.set_item(row.device, row.code, asks_hard_type_itself() ? an_mpu : 1);
        EXPECT_EQ(during([&] { EXPECT_EQ(call(), failure_result(code)); }), said_before + reported(code));
        EXPECT_EQ(stored, row.stored_on_failure.value_or(untouched));
    }
};

} // namespace test
