// SPDX-License-Identifier: Apache-2.0
#include "model/driver.hpp"

#include "model/words.hpp"

#include <moxboot/driver.h>

#include <algorithm>
#include <cerrno>

namespace vboard
{
namespace
{

constexpr std::uint32_t address_item = 0x1000280f; // the only item whose value is no 32-bit word
constexpr std::uint32_t entry_header = 8;          // type and length
constexpr std::uint32_t code_refused = 1;          // the driver's return code for an item it does not have

struct ItemRequest {
    std::vector<std::uint32_t> items;
    std::optional<std::uint32_t> value; // set: the first word of the data
    bool whole = false;
};

// Header, then (type, length, data) entries until the outer length is used up.
ItemRequest parse(const IoctlCall &call)
{
    ItemRequest request;
    WordReader words(call.in);
    std::uint32_t type = words.next();
    std::uint32_t left = words.next();
    while (!words.failed() && left >= entry_header) {
        request.items.push_back(words.next());
        std::uint32_t length = words.next();
        left -= entry_header;
        if (length > left || length > call.in.size())
            return request;
        left -= length;
        for (std::uint32_t got = 0; got < length; got += sizeof(std::uint32_t)) {
            std::uint32_t word = words.next();
            if (!request.value)
                request.value = word;
        }
    }
    request.whole = !words.failed() && left == 0 && type == DRVBOOT_TLV_L1_TYPE && !request.items.empty();
    return request;
}

IoctlReply fails(int error)
{
    IoctlReply reply;
    reply.result = -1;
    reply.error = error;
    return reply;
}

std::string text_of(const Bytes &buffer)
{
    auto end = std::find(buffer.begin(), buffer.end(), std::uint8_t{0});
    return std::string(buffer.begin(), end);
}

const char *environment_name(std::uint32_t request)
{
    switch (request) {
    case DRVBOOT_ENV_READ:
        return "env read";
    case DRVBOOT_ENV_WRITE:
        return "env write";
    case DRVBOOT_ENV_SAVE:
        return "env save";
    case DRVBOOT_ENV_DELETE:
        return "env delete";
    default:
        return "unknown";
    }
}

// The header of every item reply.
WordWriter header(std::uint32_t entries_size, std::uint32_t code)
{
    WordWriter out;
    out.put(DRVBOOT_TLV_L1_TYPE);
    out.put(3 * static_cast<std::uint32_t>(sizeof(std::uint32_t)) + entries_size);
    out.put(DRVBOOT_TLV_RET_TYPE);
    out.put(DRVBOOT_TLV_RET_LENGTH);
    out.put(code);
    return out;
}

void put_entry(WordWriter &out, std::uint32_t item, std::uint32_t value)
{
    out.put(item);
    out.put(sizeof value);
    out.put(value);
}

std::optional<std::uint32_t> lookup(const Items &items, const std::string &device, std::uint32_t item)
{
    auto found = items.find(device);
    if (found == items.end())
        return std::nullopt;
    auto value = found->second.find(item);
    return value == found->second.end() ? std::nullopt : std::optional(value->second);
}

} // namespace

void decode_request(const IoctlCall &call, Event &event)
{
    event.what = "unknown";
    if (call.device == environment_device) {
        event.what = environment_name(call.request);
        event.name = text_of(call.name);
        if (call.request == DRVBOOT_ENV_WRITE)
            event.value = text_of(call.value);
        return;
    }
    if (call.request != DRVBOOT_CMD_GET && call.request != DRVBOOT_CMD_SET)
        return;
    ItemRequest request = parse(call);
    event.items = request.items;
    if (call.request == DRVBOOT_CMD_SET) {
        event.what = "set";
        event.sent = request.value;
    } else {
        event.what = request.items.size() > 1 ? "hard info" : "get";
    }
}

IoctlReply answer_items(const IoctlCall &call, const Profile &profile, Items &items, const Twist &twist,
                        Event &event)
{
    if (event.what == "unknown")
        return fails(ENOTTY);
    ItemRequest request = parse(call);
    bool set = call.request == DRVBOOT_CMD_SET;
    if (!request.whole || (set && (request.items.size() != 1 || !request.value)))
        return fails(EINVAL);

    std::uint32_t code = 0;
    for (std::uint32_t item : request.items)
        if (item != address_item && !lookup(items, call.device, item))
            code = code_refused;
    if (twist.code)
        code = *twist.code;
    if (set && code == 0)
        items[call.device][request.items[0]] = *request.value;

    constexpr std::uint32_t entry_size = 12;
    WordWriter out = header(static_cast<std::uint32_t>(request.items.size()) * entry_size, code);
    for (std::uint32_t item : request.items) {
        std::uint32_t value = code == 0 ? lookup(items, call.device, item).value_or(0) : 0;
        if (item != address_item) {
            put_entry(out, item, value);
        } else {
            out.put(item);
            out.put(static_cast<std::uint32_t>(profile.address.size()));
            out.put(profile.address.data(), profile.address.size());
        }
        if (!event.answer && request.items.size() == 1)
            event.answer = value;
    }
    event.code = code;
    IoctlReply reply;
    reply.out = out.take();
    if (reply.out.size() > call.out_size)
        reply.out.resize(call.out_size);
    reply.status = 0;
    return reply;
}

IoctlReply answer_environment(const IoctlCall &call, Variables &variables, EnvStore *store, Event &event)
{
    std::string name = text_of(call.name);
    IoctlReply reply;
    switch (call.request) {
    case DRVBOOT_ENV_READ: {
        auto found = variables.find(name);
        if (found == variables.end())
            return fails(ENOENT);
        event.value = found->second;
        Bytes value(found->second.begin(), found->second.end());
        value.push_back(0);
        reply.value_size = static_cast<std::uint32_t>(call.value.size());
        reply.value = std::move(value);
        return reply;
    }
    case DRVBOOT_ENV_WRITE:
        if (name.empty() || name.find('=') != std::string::npos)
            return fails(EINVAL);
        variables[name] = text_of(call.value);
        return reply;
    case DRVBOOT_ENV_SAVE:
        return store == nullptr || store->save(variables) ? reply : fails(EIO);
    case DRVBOOT_ENV_DELETE:
        return variables.erase(name) != 0 ? reply : fails(ENOENT);
    default:
        return fails(ENOTTY);
    }
}

} // namespace vboard
