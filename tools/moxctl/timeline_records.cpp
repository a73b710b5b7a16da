// SPDX-License-Identifier: Apache-2.0
// Reads what a timeline is made of: one JSON object a line.
#include "timeline.hpp"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <functional>
#include <nlohmann/json.hpp>
#include <stdexcept>

namespace moxctl
{

namespace
{

using Object = nlohmann::json;

constexpr std::array operations{"open", "ioctl", "read", "write", "lseek", "reset"};

std::string hex(std::uint64_t value)
{
    std::array<char, 24> text{};
    std::snprintf(text.data(), text.size(), "0x%llx", static_cast<unsigned long long>(value));
    return text.data();
}

std::string without_line_ends(std::string text)
{
    text.erase(0, text.find_first_not_of("\r\n"));
    text.erase(text.find_last_not_of("\r\n") + 1);
    return text;
}

void read_lines(const std::string &file, const std::function<void(const Object &)> &take)
{
    std::ifstream stream(file, std::ios::binary);
    if (!stream)
        throw std::runtime_error("cannot read " + file + ": " + std::strerror(errno));
    std::size_t number = 0;
    for (std::string line; std::getline(stream, line);) {
        ++number;
        const std::string place = file + ":" + std::to_string(number) + ": ";
        const Object object = Object::parse(line, nullptr, false);
        if (object.is_discarded())
            throw std::runtime_error(place + "this is no JSON object, but damaged");
        try {
            take(object);
        } catch (const std::exception &error) {
            throw std::runtime_error(place + error.what());
        }
    }
    if (stream.bad())
        throw std::runtime_error("cannot read " + file + ": " + std::strerror(errno));
}

const Object &member(const Object &object, const char *name)
{
    const auto found = object.is_object() ? object.find(name) : object.end();
    if (!object.is_object() || found == object.end())
        throw std::runtime_error(std::string("\"") + name + "\" is missing");
    return *found;
}

double seconds(const Object &object, const char *name)
{
    const Object &value = member(object, name);
    if (!value.is_number() || !std::isfinite(value.get<double>()) || value.get<double>() < 0)
        throw std::runtime_error(std::string("\"") + name + "\" is no time");
    return value.get<double>();
}

template <typename Number>
Number whole(const Object &object, const char *name)
{
    const Object &value = member(object, name);
    if (!value.is_number_integer())
        throw std::runtime_error(std::string("\"") + name + "\" is no whole number");
    return value.get<Number>();
}

std::string text(const Object &object, const char *name)
{
    const Object &value = member(object, name);
    if (!value.is_string())
        throw std::runtime_error(std::string("\"") + name + "\" is no text");
    return value.get<std::string>();
}

std::string text_if_any(const Object &object, const char *name)
{
    return object.contains(name) ? text(object, name) : std::string();
}

// An item with its name, where the journal has it: "0x10002987 board role".
std::string item(const Object &object, std::size_t at)
{
    const Object &code = object.at("items").at(at);
    if (!code.is_number_integer())
        throw std::runtime_error("\"items\" are no codes");
    const std::string shown = hex(code.get<std::uint64_t>());
    if (!object.contains("item_names"))
        return shown;
    const std::string name = object.at("item_names").at(at).get<std::string>();
    return name.empty() ? shown : shown + ' ' + name;
}

// In a few words: what was done, to which item or variable.
std::string name_of(const Object &object)
{
    const std::string operation = text(object, "op");
    const std::string what = text_if_any(object, "what");
    std::string name = what.empty() ? operation : what;
    if (object.contains("items") && !object.at("items").empty()) {
        const std::string first = item(object, 0);
        const std::size_t behind_code = first.find(' ');
        name += ' ' + (behind_code == std::string::npos ? first : first.substr(behind_code + 1));
    }
    const std::string variable = text_if_any(object, "name");
    return variable.empty() ? name : name + ' ' + variable;
}

void add_number(Json &args, const Object &object, const char *name)
{
    if (object.contains(name))
        args[name] = whole<std::int64_t>(object, name);
}

Json args_of(const Object &object)
{
    Json args = Json::object();
    args["operation"] = text(object, "op");
    if (object.contains("device") && !text(object, "device").empty())
        args["device"] = text(object, "device");
    if (object.contains("request"))
        args["request"] = hex(whole<std::uint64_t>(object, "request"));
    if (object.contains("items")) {
        Json items = Json::array();
        for (std::size_t i = 0; i < object.at("items").size(); ++i)
            items.push_back(item(object, i));
        args["item"] = std::move(items);
    }
    for (const char *name : {"sent", "answer", "code"})
        add_number(args, object, name);
    for (const auto &[from, to] : {std::pair{"name", "variable"}, std::pair{"value", "value"}})
        if (const std::string value = text_if_any(object, from); !value.empty())
            args[to] = value;
    add_number(args, object, "result");
    if (object.contains("error")) {
        const int error = whole<int>(object, "error");
        const char *const name = ::strerrorname_np(error);
        args["errno"] = name != nullptr ? Json(name) : Json(error);
    }
    if (object.contains("faulted"))
        args["planned_fault"] = true;
    add_number(args, object, "number");
    return args;
}

DriverRequest request_of(const Object &object)
{
    DriverRequest request;
    const std::string operation = text(object, "op");
    if (std::find(operations.begin(), operations.end(), operation) == operations.end())
        throw std::runtime_error("\"" + operation + "\" is no operation");
    request.time = seconds(object, "time");
    if (object.contains("duration"))
        request.duration = seconds(object, "duration");
    request.process = whole<int>(object, "pid");
    request.number = whole<std::uint64_t>(object, "number");
    request.reset = operation == "reset";
    request.device = text(object, "device");
    request.name = name_of(object);
    request.args = args_of(object);
    const bool refused = object.contains("code") && whole<std::int64_t>(object, "code") != 0;
    request.failed = refused || whole<std::int64_t>(object, "result") == -1;
    return request;
}

} // namespace

std::vector<DriverRequest> read_journal(const std::string &file)
{
    std::vector<DriverRequest> requests;
    read_lines(file, [&](const Object &object) { requests.push_back(request_of(object)); });
    return requests;
}

std::vector<TraceLine> read_trace(const std::string &file)
{
    std::vector<TraceLine> lines;
    read_lines(file, [&](const Object &object) {
        lines.push_back({seconds(object, "time"), whole<int>(object, "process"),
                         whole<std::uint32_t>(object, "code"), whole<std::uint32_t>(object, "level"),
                         without_line_ends(text(object, "text"))});
    });
    return lines;
}

} // namespace moxctl
