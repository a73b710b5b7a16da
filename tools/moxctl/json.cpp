// SPDX-License-Identifier: Apache-2.0
#include "json.hpp"

#include <nlohmann/json.hpp>

#include <algorithm>

namespace moxctl
{

// Makes the JSON library's value of ours.
struct JsonText {
    using Library = nlohmann::ordered_json;

    static Library made(const Json &json)
    {
        return std::visit([](const auto &value) { return made_of(value); }, json.value_);
    }

  private:
    template <typename Plain>
    static Library made_of(const Plain &value)
    {
        return value;
    }
    static Library made_of(const Json::Array &array)
    {
        Library result = Library::array();
        for (const Json &part : array)
            result.push_back(made(part));
        return result;
    }
    static Library made_of(const Json::Object &object)
    {
        Library result = Library::object();
        for (const auto &[name, part] : object)
            result[name] = made(part);
        return result;
    }
};

Json::Json(std::initializer_list<Json> parts)
{
    const auto is_member = [](const Json &part) {
        const Array *const pair = std::get_if<Array>(&part.value_);
        return pair != nullptr && pair->size() == 2 &&
               std::holds_alternative<std::string>(pair->front().value_);
    };
    if (!std::all_of(parts.begin(), parts.end(), is_member)) {
        value_ = Array(parts);
        return;
    }
    *this = object();
    for (const Json &part : parts) {
        const Array &pair = std::get<Array>(part.value_);
        (*this)[std::get<std::string>(pair.front().value_)] = pair.back();
    }
}

Json Json::array()
{
    Json json;
    json.value_ = Array();
    return json;
}

Json Json::object()
{
    Json json;
    json.value_ = Object();
    return json;
}

bool Json::is_null() const
{
    return std::holds_alternative<std::nullptr_t>(value_);
}

std::size_t Json::size() const
{
    if (const Array *const array = std::get_if<Array>(&value_))
        return array->size();
    const Object *const object = std::get_if<Object>(&value_);
    return object != nullptr ? object->size() : 0;
}

void Json::push_back(Json part)
{
    if (is_null())
        value_ = Array();
    std::get<Array>(value_).push_back(std::move(part));
}

Json &Json::operator[](const std::string &name)
{
    if (is_null())
        value_ = Object();
    Object &members = std::get<Object>(value_);
    for (auto &[key, value] : members)
        if (key == name)
            return value;
    return members.emplace_back(name, Json()).second;
}

std::uint64_t Json::number() const
{
    return std::get<std::uint64_t>(value_);
}

const std::string &Json::text() const
{
    return std::get<std::string>(value_);
}

const std::vector<Json> &Json::parts() const
{
    return std::get<Array>(value_);
}

std::string Json::dump(int indent) const
{
    return JsonText::made(*this).dump(indent, ' ', false, nlohmann::ordered_json::error_handler_t::replace);
}

} // namespace moxctl
