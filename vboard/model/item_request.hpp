// SPDX-License-Identifier: Apache-2.0
// The wire form of item requests and replies.
#pragma once

#include "model/board.hpp"

#include <moxboot/driver.h>

namespace vboard
{

struct ItemValue {
    std::uint32_t code = 0;
    Bytes value; // empty when the item is only asked for
};

// Where the words of a reply stand that every reader looks at.
constexpr std::size_t reply_code_at = 16;
constexpr std::size_t reply_value_at = 28;

// The TLVs inside an outer one of the given type, one at least; nullopt when the buffer is malformed. Bytes
// behind the outer TLV do not matter: callers send whole buffers.
std::optional<std::vector<ItemValue>> decode_request(const Bytes &in,
                                                     std::uint32_t outer_type = DRVBOOT_TLV_L1_TYPE);

Bytes encode_reply(std::uint32_t code, const std::vector<ItemValue> &items,
                   std::uint32_t outer_type = DRVBOOT_TLV_L1_TYPE);

// The word at byte `at` of a reply, if it reaches that far.
std::optional<std::uint32_t> reply_word(const Bytes &reply, std::size_t at);

} // namespace vboard
