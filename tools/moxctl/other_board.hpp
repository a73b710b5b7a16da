// SPDX-License-Identifier: Apache-2.0
// A board to ask about in place of this one, and what is told about the attributes that were looked at.
#pragma once

#include "facts.hpp"
#include "presumption.hpp"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace moxctl
{

// What is left out is this board's.
struct OtherBoard {
    std::optional<std::uint32_t> hard_type;
    std::string flash; // one of flash_names(); empty: left out
    std::optional<std::uint32_t> family_type;
    std::optional<std::uint32_t> pack_type;
    std::optional<std::uint32_t> service_type;
    std::optional<std::uint32_t> logic_id;
    std::optional<bool> ptn; // whether it runs in ptn mode
};

std::vector<std::string> flash_names();

Presumed presume(const OtherBoard &other);

// While the board is presumed to be like that. The hard type is null where it cannot be read.
Fact hard_type_fact(const OtherBoard &other);
Fact flash_fact(const OtherBoard &other);
Fact family_type_fact(const OtherBoard &other);
// Those that the installation looks at beside: package type, service type, logic id, ptn mode.
std::vector<Fact> model_facts(const OtherBoard &other);

} // namespace moxctl
