// SPDX-License-Identifier: Apache-2.0
// What the library can be asked about a board's families.
#pragma once

#include <cstdint>
#include <optional>
#include <span>

namespace moxctl
{

struct FamilyAnswer {
    bool belongs = false;
    std::optional<std::uint32_t> failure = {}; // the code, when there is no answer
};

struct FamilyQuestion {
    const char *name; // of the library's function
    const char *meaning;
    // Exactly one of these is the function.
    std::uint32_t (*predicate)(std::uint8_t *flag, std::uintptr_t argument);
    std::uint32_t (*channel)(std::uint32_t *flag);
    std::uint32_t (*by_type)(std::uint32_t hard_type);

    // About the board as it is presumed to be.
    FamilyAnswer ask() const;
};

std::span<const FamilyQuestion> family_questions();

} // namespace moxctl
