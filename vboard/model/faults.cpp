// SPDX-License-Identifier: Apache-2.0
#include "model/faults.hpp"

#include "model/errno_name.hpp"
#include "model/journal.hpp"

#include <algorithm>
#include <array>
#include <limits>
#include <stdexcept>

namespace vboard
{

using nlohmann::json;

namespace
{

[[noreturn]] void wrong(const std::string &what)
{
    throw std::invalid_argument("not a fault: " + what);
}

template <class Number>
Number whole(const std::string &name, const json &value)
{
    using Limits = std::numeric_limits<Number>;
    if (!value.is_number_integer())
        wrong("\"" + name + "\" must be a whole number");
    const bool fits = value.is_number_unsigned()
                          ? value.get<std::uint64_t>() <= static_cast<std::uint64_t>(Limits::max())
                          : value.get<std::int64_t>() >= static_cast<std::int64_t>(Limits::min());
    if (!fits)
        wrong("\"" + name + "\" is out of range");
    return value.get<Number>();
}

std::string text(const std::string &name, const json &value)
{
    if (!value.is_string())
        wrong("\"" + name + "\" must be a text");
    return value.get<std::string>();
}

int error_number(const json &value)
{
    if (!value.is_string())
        return whole<int>("error", value);
    const auto known = errno_from_name(value.get<std::string>());
    if (!known)
        wrong("there is no error " + value.dump());
    return *known;
}

Bytes byte_list(const json &value)
{
    if (value.is_string()) {
        const auto characters = value.get<std::string>();
        return {characters.begin(), characters.end()};
    }
    if (!value.is_array())
        wrong("\"value\" must be a text or a list of bytes");
    Bytes bytes;
    for (const json &byte : value)
        bytes.push_back(whole<std::uint8_t>("value", byte));
    return bytes;
}

std::uint32_t offset(const std::string &key)
{
    std::size_t used = 0;
    unsigned long number = 0;
    try {
        number = std::stoul(key, &used, 0);
    } catch (const std::exception &) {
        used = 0;
    }
    if (used == 0 || used != key.size() || number > 0xffff)
        wrong("\"" + key + "\" is no offset in a reply");
    return static_cast<std::uint32_t>(number);
}

std::map<std::uint32_t, std::uint32_t> words(const json &value)
{
    if (!value.is_object())
        wrong("\"reply_words\" must map offsets to words");
    std::map<std::uint32_t, std::uint32_t> result;
    for (const auto &[key, word] : value.items())
        result[offset(key)] = whole<std::uint32_t>("reply_words", word);
    return result;
}

struct Field {
    const char *name;
    void (*take)(Fault &, const std::string &, const json &);
};

constexpr std::array<Field, 15> fields{{
    {"op",
     [](Fault &fault, const std::string &name, const json &value) {
         const auto op = op_by_name(text(name, value));
         if (!op || *op == Op::reset)
             wrong("\"op\" must be open, ioctl, read, write or lseek");
         fault.op = *op;
     }},
    {"device",
     [](Fault &fault, const std::string &name, const json &value) { fault.device = text(name, value); }},
    {"request", [](Fault &fault, const std::string &name,
                   const json &value) { fault.request = whole<std::uint32_t>(name, value); }},
    {"item", [](Fault &fault, const std::string &name,
                const json &value) { fault.item = whole<std::uint32_t>(name, value); }},
    {"variable",
     [](Fault &fault, const std::string &name, const json &value) { fault.variable = text(name, value); }},
    {"skip", [](Fault &fault, const std::string &name,
                const json &value) { fault.skip = whole<unsigned>(name, value); }},
    {"times", [](Fault &fault, const std::string &name,
                 const json &value) { fault.times = whole<unsigned>(name, value); }},
    {"error",
     [](Fault &fault, const std::string &, const json &value) { fault.error = error_number(value); }},
    {"result", [](Fault &fault, const std::string &name,
                  const json &value) { fault.result = whole<int>(name, value); }},
    {"code", [](Fault &fault, const std::string &name,
                const json &value) { fault.code = whole<std::uint32_t>(name, value); }},
    {"reply_words",
     [](Fault &fault, const std::string &, const json &value) { fault.reply_words = words(value); }},
    {"cut", [](Fault &fault, const std::string &name,
               const json &value) { fault.cut = whole<std::uint32_t>(name, value); }},
    {"value_size", [](Fault &fault, const std::string &name,
                      const json &value) { fault.value_size = whole<std::uint32_t>(name, value); }},
    {"value", [](Fault &fault, const std::string &, const json &value) { fault.value = byte_list(value); }},
    {"delay_ms", [](Fault &fault, const std::string &name,
                    const json &value) { fault.delay_ms = whole<unsigned>(name, value); }},
}};

void take_field(Fault &fault, const std::string &name, const json &value)
{
    const auto field = std::ranges::find_if(fields, [&](const Field &one) { return name == one.name; });
    if (field == fields.end())
        wrong("unknown field \"" + name + "\"");
    field->take(fault, name, value);
}

json bytes_json(const Bytes &bytes)
{
    const bool printable =
        std::ranges::all_of(bytes, [](std::uint8_t byte) { return byte >= 0x20 && byte < 0x7f; });
    return printable ? json(std::string(bytes.begin(), bytes.end())) : json(bytes);
}

} // namespace

json to_json(const Fault &fault)
{
    json object = {{"op", op_name(fault.op)}, {"times", fault.times}};
    const auto put = [&](const char *name, const auto &value) {
        if (value)
            object[name] = *value;
    };
    if (!fault.device.empty())
        object["device"] = fault.device;
    put("request", fault.request);
    put("item", fault.item);
    if (!fault.variable.empty())
        object["variable"] = fault.variable;
    if (fault.skip != 0)
        object["skip"] = fault.skip;
    if (fault.error != 0)
        object["error"] =
            errno_from_name(errno_name(fault.error)) ? json(errno_name(fault.error)) : json(fault.error);
    put("result", fault.result);
    put("code", fault.code);
    for (const auto &[at, word] : fault.reply_words)
        object["reply_words"][std::to_string(at)] = word;
    put("cut", fault.cut);
    put("value_size", fault.value_size);
    if (fault.value)
        object["value"] = bytes_json(*fault.value);
    if (fault.delay_ms != 0)
        object["delay_ms"] = fault.delay_ms;
    return object;
}

Fault fault_from_json(const json &object)
{
    if (!object.is_object())
        wrong("it must be an object");
    Fault fault;
    for (const auto &[name, value] : object.items())
        take_field(fault, name, value);
    return fault;
}

} // namespace vboard
