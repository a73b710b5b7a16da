// SPDX-License-Identifier: Apache-2.0
#include "model/journal.hpp"

#include "model/items.hpp"

#include <array>
#include <stdexcept>

namespace vboard
{

using nlohmann::json;

namespace
{

constexpr std::array<std::string_view, 6> op_names{"open", "ioctl", "read", "write", "lseek", "reset"};

template <class Value>
void put(json &object, const char *name, const std::optional<Value> &value)
{
    if (value)
        object[name] = *value;
}

// What people call the items; who reads a journal has no table of them. Left out where none has a name.
void put_item_names(json &object, const Event &event)
{
    json names = json::array();
    bool named = false;
    for (const std::uint32_t code : event.items) {
        names.push_back(item_name(event.device, code));
        named = named || names.back() != "";
    }
    if (named)
        object["item_names"] = std::move(names);
}

template <class Value>
void take(const json &object, const char *name, std::optional<Value> &value)
{
    if (const auto found = object.find(name); found != object.end())
        value = found->get<Value>();
}

template <class Value>
void take(const json &object, const char *name, Value &value)
{
    if (const auto found = object.find(name); found != object.end())
        value = found->get<Value>();
}

} // namespace

std::string_view op_name(Op op)
{
    return op_names[static_cast<std::size_t>(op)];
}

std::optional<Op> op_by_name(std::string_view name)
{
    for (std::size_t i = 0; i < op_names.size(); ++i)
        if (op_names[i] == name)
            return static_cast<Op>(i);
    return std::nullopt;
}

json to_json(const Event &event)
{
    json object = {{"number", event.number},  {"time", event.time},     {"pid", event.pid},
                   {"op", op_name(event.op)}, {"device", event.device}, {"result", event.result}};
    if (event.duration != 0)
        object["duration"] = event.duration;
    if (event.op == Op::ioctl)
        object["request"] = event.request;
    if (!event.what.empty())
        object["what"] = event.what;
    if (!event.items.empty())
        object["items"] = event.items;
    put_item_names(object, event);
    put(object, "sent", event.sent);
    put(object, "answer", event.answer);
    put(object, "code", event.code);
    if (!event.name.empty())
        object["name"] = event.name;
    if (!event.value.empty())
        object["value"] = event.value;
    if (event.error != 0)
        object["error"] = event.error;
    if (event.faulted)
        object["faulted"] = true;
    return object;
}

Event event_from_json(const json &object)
{
    try {
        Event event;
        const auto op = op_by_name(object.at("op").get<std::string>());
        if (!op)
            throw std::invalid_argument("not an event: unknown operation " + object["op"].dump());
        event.op = *op;
        event.device = object.at("device").get<std::string>();
        take(object, "number", event.number);
        take(object, "time", event.time);
        take(object, "duration", event.duration);
        take(object, "pid", event.pid);
        take(object, "request", event.request);
        take(object, "what", event.what);
        take(object, "items", event.items);
        take(object, "sent", event.sent);
        take(object, "answer", event.answer);
        take(object, "code", event.code);
        take(object, "name", event.name);
        take(object, "value", event.value);
        take(object, "result", event.result);
        take(object, "error", event.error);
        take(object, "faulted", event.faulted);
        return event;
    } catch (const json::exception &error) {
        throw std::invalid_argument(std::string("not an event: ") + error.what());
    }
}

} // namespace vboard
