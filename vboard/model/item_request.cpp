// SPDX-License-Identifier: Apache-2.0
#include "model/item_request.hpp"

#include "model/tlv.hpp"

namespace vboard
{

namespace
{

constexpr std::size_t outer_header = 8; // type and length, which the length does not count

} // namespace

std::optional<std::vector<ItemValue>> decode_request(const Bytes &in, std::uint32_t outer_type)
{
    Reader buffer(in);
    const std::uint32_t type = buffer.word();
    Reader inner = buffer.part(buffer.word());
    std::vector<ItemValue> items;
    while (inner.left() != 0) {
        ItemValue item;
        item.code = inner.word();
        item.value = inner.bytes(inner.word());
        items.push_back(std::move(item));
    }
    if (!inner.ok() || type != outer_type || items.empty())
        return std::nullopt;
    return items;
}

Bytes encode_reply(std::uint32_t code, const std::vector<ItemValue> &items, std::uint32_t outer_type)
{
    Writer reply;
    reply.word(outer_type);
    reply.word(0); // known at the end
    reply.word(DRVBOOT_TLV_RET_TYPE);
    reply.word(DRVBOOT_TLV_RET_LENGTH);
    reply.word(code);
    for (const ItemValue &item : items) {
        reply.word(item.code);
        reply.word(static_cast<std::uint32_t>(item.value.size()));
        reply.bytes(item.value);
    }
    reply.put(4, static_cast<std::uint32_t>(reply.size() - outer_header));
    return reply.take();
}

std::optional<std::uint32_t> reply_word(const Bytes &reply, std::size_t at)
{
    Reader reader(reply);
    reader.bytes(at);
    const std::uint32_t word = reader.word();
    return reader.ok() ? std::optional(word) : std::nullopt;
}

} // namespace vboard
