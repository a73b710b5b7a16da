// SPDX-License-Identifier: Apache-2.0
// How moxctl info asks: a question is a row of a table, and its answer is checked where the library's own
// answer cannot tell a value from a failure.
#pragma once

#include "facts.hpp"

#include <moxboot/board.h>

#include <cstdint>
#include <functional>
#include <vector>

namespace moxctl
{

// An item of the board driver, by which an answer is checked.
struct Item {
    const char *device;
    std::uint32_t code;
};

inline constexpr Item item_hard_type = {"/dev/board0", 0x8000001};
inline constexpr Item item_board_role = {"/dev/board0", 0x10002987};

// What other answers depend on, asked once.
struct Board {
    std::optional<Failure> hard_type_failure;
    std::uint32_t hard_type = 0;
    std::optional<Failure> hard_info_failure;
    MoxHardInfo hard_info = {};

    static Board ask();
    // A board that cannot tell its hard type counts as a main processing unit, as it does in the library.
    bool counts_as_mpu() const;
};

struct Question {
    const char *key;
    const char *name;
    Answer (*ask)(const Board &board);
    bool mpu_only = false;  // other boards do not have it
    bool from_board = true; // needs an answer of the board driver
};

std::vector<Question> identity_questions();
std::vector<Question> state_questions();

// Whether the system can be reset softly.
Answer soft_reset_supported();
// An item that no function of the library tells, as it is.
Answer item_as_it_is(const Item &item);

// Why an item could not be read: the channel's result of asking it once more, because many functions of the
// library tell only that they failed. `result` is what the function told.
Failure why(const Item &item, std::uint32_t result);

// Some functions answer a failed read with a value that could as well be true. Hands on such an answer only
// when the item can be read and fits it.
Answer confirmed(Answer answer, const Item &item, const std::function<bool(std::uint32_t)> &fits);

} // namespace moxctl
