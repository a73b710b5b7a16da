// SPDX-License-Identifier: Apache-2.0
// How the board's driver answers a request that is in order.
#include "model/state.hpp"
#include "model/tlv.hpp"

#include <moxboot/driver.h>

#include <algorithm>
#include <cerrno>

namespace vboard
{

namespace
{

constexpr std::uint32_t refused = 1; // driver return code: the board has no such item

IoctlReply failed(int error)
{
    IoctlReply reply;
    reply.result = -1;
    reply.error = error;
    return reply;
}

// The item keeps its size; bytes that the caller did not send become zero.
void assign(Bytes &item, const Bytes &value)
{
    std::ranges::fill(item, std::uint8_t{0});
    std::copy_n(value.begin(), std::min(item.size(), value.size()), item.begin());
}

} // namespace

std::optional<std::string> text_in(const Bytes &buffer)
{
    const auto end = std::ranges::find(buffer, std::uint8_t{0});
    return end == buffer.end() ? std::nullopt : std::optional(std::string(buffer.begin(), end));
}

IoctlReply Board::State::answer_items(const IoctlCall &call, const std::vector<ItemValue> &asked,
                                      std::optional<std::uint32_t> forced_code)
{
    const bool set = call.request == DRVBOOT_CMD_SET;
    // A get carries no value, a set carries one.
    if (std::ranges::any_of(asked, [&](const ItemValue &item) { return item.value.empty() == set; }))
        return failed(EINVAL);

    std::map<std::uint32_t, Bytes> &values = items[call.device];
    const bool known =
        std::ranges::all_of(asked, [&](const ItemValue &item) { return values.contains(item.code); });
    const std::uint32_t code = forced_code.value_or(known ? 0 : refused);
    std::vector<ItemValue> answers;
    for (const ItemValue &item : asked) {
        const auto found = values.find(item.code);
        if (set && code == 0 && found != values.end()) {
            assign(found->second, item.value);
            item_was_set(call.device, item.code);
        }
        answers.push_back({item.code, found == values.end() ? bytes_of(0) : found->second});
    }
    IoctlReply reply;
    reply.out = encode_reply(code, answers);
    reply.status = code;
    return reply;
}

IoctlReply Board::State::answer_notice(const ResetNotice &given, std::optional<std::uint32_t> forced_code)
{
    const std::uint32_t code = forced_code.value_or(0);
    if (code == 0)
        notice = given;
    IoctlReply reply;
    reply.out = encode_reply(code, {}, DRVBOOT_TLV_SELF_RESET);
    reply.status = code;
    return reply;
}

IoctlReply Board::State::answer_environment(const IoctlCall &call)
{
    if (call.request == DRVBOOT_ENV_SAVE) {
        if (!store)
            saved = env;
        else if (!store->save(env))
            return failed(EIO);
        return {};
    }
    const std::optional<std::string> name = text_in(call.name);
    if (!name || name->empty() || name->find('=') != std::string::npos)
        return failed(EINVAL);
    if (call.request == DRVBOOT_ENV_DELETE) {
        env.erase(*name);
        return {};
    }
    if (call.request == DRVBOOT_ENV_WRITE) {
        const std::optional<std::string> value = text_in(call.value);
        if (!value)
            return failed(EINVAL);
        env[*name] = *value;
        return {};
    }
    const auto found = env.find(*name);
    if (found == env.end())
        return failed(ENOENT);
    if (call.value.empty())
        return failed(EINVAL);
    IoctlReply reply;
    const std::size_t length = std::min(found->second.size(), call.value.size() - 1);
    reply.value.emplace(found->second.begin(), found->second.begin() + static_cast<std::ptrdiff_t>(length));
    reply.value->push_back(0);
    return reply;
}

} // namespace vboard
