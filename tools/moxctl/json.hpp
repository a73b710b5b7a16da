// SPDX-License-Identifier: Apache-2.0
// A value as programs get it, with its members in the order in which they came. The JSON library has such a
// class too, but every file that handles one compiles many times as long; so the library is met in one file
// only, where the text is made.
#pragma once

#include <concepts>
#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <string>
#include <utility>
#include <variant>
#include <vector>

namespace moxctl
{

class Json
{
  public:
    Json() = default; // null
    Json(std::nullptr_t) {}
    Json(bool value) : value_(value) {}
    Json(double value) : value_(value) {}
    template <std::integral Number>
    requires(!std::same_as<Number, bool>) Json(Number value)
    {
        // Numbers of either kind are equal when they stand for the same.
        if constexpr (std::signed_integral<Number>) {
            if (value < 0) {
                value_ = static_cast<std::int64_t>(value);
                return;
            }
        }
        value_ = static_cast<std::uint64_t>(value);
    }
    Json(const char *text) : value_(std::string(text)) {}
    Json(std::string text) : value_(std::move(text)) {}
    // An object where all are pairs that begin with a text, else an array.
    Json(std::initializer_list<Json> parts);

    static Json array();
    static Json object();

    bool is_null() const;
    std::size_t size() const;  // of an array or object
    void push_back(Json part); // makes an array of a null
    Json &
    operator[](const std::string &name); // makes an object of a null, and the member where it is missing
    // These throw std::bad_variant_access where it is none.
    std::uint64_t number() const;
    const std::string &text() const;
    const std::vector<Json> &parts() const; // of an array

    bool operator==(const Json &other) const = default;

    // On one line where `indent` is negative. What is no UTF-8 is replaced.
    std::string dump(int indent = -1) const;

  private:
    friend struct JsonText;
    using Array = std::vector<Json>;
    using Object = std::vector<std::pair<std::string, Json>>;

    std::variant<std::nullptr_t, bool, std::int64_t, std::uint64_t, double, std::string, Array, Object>
        value_;
};

} // namespace moxctl
