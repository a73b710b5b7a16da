// SPDX-License-Identifier: Apache-2.0
// What was asked of the driver, and which planned faults were met.
#include "model/faults.hpp"
#include "model/items.hpp"
#include "model/journal.hpp"
#include "model/request_kind.hpp"
#include "report/parts.hpp"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <map>
#include <tuple>

namespace vboard::report
{

using nlohmann::json;

namespace
{

constexpr double per_second = 1e6;    // microseconds
constexpr std::size_t most_met = 500; // that are shown: a fault may strike for ever

struct Asked {
    std::size_t count = 0, failed = 0, faulted = 0;
    std::vector<double> durations = {}; // in microseconds, those that are known
};

// Device, request, item.
using Kind = std::tuple<std::string, std::string, std::string>;

std::string hex(std::uint32_t value)
{
    char text[16];
    std::snprintf(text, sizeof text, "0x%x", value);
    return text;
}

std::string item_of(const Event &event)
{
    if (!event.name.empty())
        return event.name; // a boot variable
    if (event.items.empty())
        return event.what == "unknown" && event.op == Op::ioctl ? hex(event.request) : "";
    const std::string_view name = item_name(event.device, event.items.front());
    const std::string more = event.items.size() > 1 ? " and others" : "";
    return (name.empty() ? hex(event.items.front()) : std::string(name)) + more;
}

// A board asks all its slots alike, which would be as many rows of the same.
std::string device_of(const Event &event)
{
    return slot_number(event.device) != 0 ? "/dev/slot*" : event.device;
}

Kind kind_of(const Event &event)
{
    return {device_of(event), event.what.empty() ? std::string(op_name(event.op)) : event.what,
            item_of(event)};
}

double rounded(double microseconds)
{
    return std::round(microseconds * 10) / 10;
}

json middle(std::vector<double> &values)
{
    if (values.empty())
        return nullptr;
    const auto half = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::ranges::nth_element(values, half);
    return rounded(*half);
}

// As people read it in "vboard fault list".
std::string words_of(const json &fault)
{
    std::string words = fault.value("op", "?") + " " + fault.value("device", "any device");
    for (const auto &[name, value] : fault.items())
        if (name != "op" && name != "device")
            words += ", " + name + " " + (value.is_string() ? value.get<std::string>() : value.dump());
    return words;
}

} // namespace

bool failed(const Event &event)
{
    return event.result == -1 || event.code.value_or(0) != 0;
}

json traffic(const Records &records)
{
    std::map<Kind, Asked> kinds;
    for (const Event &event : records.events) {
        if (event.op == Op::reset)
            continue;
        Asked &asked = kinds[kind_of(event)];
        ++asked.count;
        asked.failed += failed(event) ? 1 : 0;
        asked.faulted += event.faulted ? 1 : 0;
        if (event.duration > 0)
            asked.durations.push_back(event.duration * per_second);
    }
    std::vector<std::pair<Kind, Asked>> sorted(kinds.begin(), kinds.end());
    std::ranges::stable_sort(sorted, std::greater(), [](const auto &one) { return one.second.count; });
    json list = json::array();
    for (auto &[kind, asked] : sorted) {
        const json longest =
            asked.durations.empty() ? json(nullptr) : json(rounded(std::ranges::max(asked.durations)));
        list.push_back({{"device", std::get<0>(kind)},
                        {"request", std::get<1>(kind)},
                        {"item", std::get<2>(kind)},
                        {"count", asked.count},
                        {"failed", asked.failed},
                        {"faulted", asked.faulted},
                        {"median_us", middle(asked.durations)},
                        {"max_us", longest}});
    }
    return list;
}

json faults(const Records &records)
{
    json planned = json::array();
    json cleared = json::array();
    for (const LifeLine &line : records.life) {
        if (line.what == "fault")
            planned.push_back(
                {{"time", line.time}, {"words", words_of(line.more.value("fault", json::object()))}});
        else if (line.what == "faults cleared")
            cleared.push_back(line.time);
    }
    json met = json::array();
    std::size_t count = 0;
    for (const Event &event : records.events)
        if (event.faulted && ++count <= most_met)
            met.push_back({{"time", event.time}, {"words", readable(event)}});
    return {{"planned", planned}, {"cleared", cleared}, {"met", met}, {"met_count", count}};
}

} // namespace vboard::report
