// SPDX-License-Identifier: Apache-2.0
#include "daemon/requests.hpp"

#include "model/faults.hpp"
#include "model/journal.hpp"
#include "model/request_kind.hpp"

#include <algorithm>
#include <array>
#include <cstdio>
#include <stdexcept>
#include <unistd.h>

namespace vboard
{

using nlohmann::json;

namespace
{

std::string text(const json &request, const char *name)
{
    return request.at(name).get<std::string>();
}

std::string known_device(const RequestContext &context, const json &request)
{
    std::string device = text(request, "device");
    if (std::find(context.devices.begin(), context.devices.end(), device) != context.devices.end())
        return device;
    std::string names;
    for (const std::string &name : context.devices)
        names += (names.empty() ? "" : ", ") + name;
    throw std::runtime_error("this board has no device \"" + device + "\"; it has " + names);
}

std::string hex(std::uint32_t value)
{
    char digits[16];
    std::snprintf(digits, sizeof digits, "0x%x", value);
    return digits;
}

json status(const RequestContext &context, const json &)
{
    const Profile &profile = context.board.profile();
    const Resets::History resets = context.resets.history();
    return {{"board", profile.name},
            {"description", profile.description},
            {"pid", getpid()},
            {"state", context.state.directory()},
            {"front", context.front},
            {"devices", context.devices},
            {"open_files", context.board.open_files()},
            {"crl_bytes", profile.crl_module ? json(context.board.crl().size()) : json(nullptr)},
            {"events", context.board.journal().size()},
            {"faults", context.board.faults().size()},
            {"resets", resets.since_power_on},
            {"last_reset", resets.last.empty() ? json(nullptr) : json(resets.last)}};
}

json get_item(const RequestContext &context, const json &request)
{
    const std::string device = known_device(context, request);
    if (request.at("code").is_null()) {
        if (device != crl_device)
            throw std::runtime_error(device + " has items; say which one by its code");
        return {{"bytes", context.board.crl().size()}};
    }
    const auto code = request["code"].get<std::uint32_t>();
    const std::optional<std::uint32_t> value = context.board.item(device, code);
    if (!value)
        throw std::runtime_error(device + " has no item " + hex(code));
    return {{"value", *value}};
}

json set_item(const RequestContext &context, const json &request)
{
    const std::string device = known_device(context, request);
    const auto code = request.at("code").get<std::uint32_t>();
    std::optional<std::uint32_t> value;
    if (!request.at("value").is_null())
        value = request["value"].get<std::uint32_t>();
    context.state.keep_item(device, code, value);
    if (value)
        context.board.set_item(device, code, *value);
    else
        context.board.remove_item(device, code);
    if (context.changed)
        context.changed();
    return json::object();
}

json get_variable(const RequestContext &context, const json &request)
{
    const std::string name = text(request, "name");
    const std::optional<std::string> value = context.board.boot_env(name);
    if (!value)
        throw std::runtime_error("the boot environment has no variable \"" + name + "\"");
    return {{"value", *value}};
}

json set_variable(const RequestContext &context, const json &request)
{
    const std::string name = text(request, "name");
    if (name.empty() || name.find('=') != std::string::npos)
        throw std::runtime_error("\"" + name + "\" cannot be the name of a boot variable");
    std::optional<std::string> value;
    if (!request.at("value").is_null())
        value = text(request, "value");
    context.board.set_boot_env(name, value);
    return json::object();
}

// A part of the journal, as much as one answer holds: "after" is the number of the last event that is known,
// "last" that of the last one that there is.
json journal(const RequestContext &context, const json &request)
{
    constexpr std::size_t most = 1000;
    const auto after = request.at("after").get<std::uint64_t>();
    json events = json::array();
    const std::vector<Event> all = context.board.journal();
    for (const Event &event : all)
        if (event.number > after && events.size() < most)
            events.push_back(to_json(event));
    return {{"events", events}, {"last", all.empty() ? 0 : all.back().number}};
}

json add_fault(const RequestContext &context, const json &request)
{
    const Fault fault = fault_from_json(request.at("fault"));
    context.board.add_fault(fault);
    context.state.append_life("fault", {{"fault", to_json(fault)}});
    return json::object();
}

json list_faults(const RequestContext &context, const json &)
{
    json list = json::array();
    for (const Fault &fault : context.board.faults())
        list.push_back(to_json(fault));
    return {{"faults", list}};
}

json clear_faults(const RequestContext &context, const json &)
{
    context.board.clear_faults();
    context.state.append_life("faults cleared", json::object());
    return json::object();
}

json ready(const RequestContext &, const json &)
{
    return json::object();
}

json reset(const RequestContext &context, const json &request)
{
    const bool cold = request.at("cold").get<bool>();
    return {{"reset", context.resets.want(cold ? Reset::cold : context.reboot_kind()).get()}};
}

json power_cut(const RequestContext &context, const json &)
{
    return {{"reset", context.resets.want(Reset::power_cut).get()}};
}

json down(const RequestContext &context, const json &)
{
    context.stop();
    return json::object();
}

struct Row {
    const char *name;
    json (*function)(const RequestContext &, const json &);
    bool resets = false; // the others wait for a reset that goes on
};
constexpr std::array<Row, 13> rows{{{"status", status},
                                    {"ready", ready},
                                    {"reset", reset, true},
                                    {"power-cut", power_cut, true},
                                    {"get", get_item},
                                    {"set", set_item},
                                    {"getenv", get_variable},
                                    {"setenv", set_variable},
                                    {"journal", journal},
                                    {"fault-add", add_fault},
                                    {"fault-list", list_faults},
                                    {"fault-clear", clear_faults},
                                    {"down", down}}};

} // namespace

json fulfil(const RequestContext &context, const json &request)
{
    const std::string name = text(request, "do");
    for (const Row &row : rows) {
        if (name != row.name)
            continue;
        std::shared_lock gate(context.gate, std::defer_lock);
        if (!row.resets)
            gate.lock();
        return row.function(context, request);
    }
    throw std::runtime_error("the board does not know the request \"" + name + "\"");
}

} // namespace vboard
