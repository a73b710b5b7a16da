// SPDX-License-Identifier: Apache-2.0
// What a verb has found out, kept apart from how it is printed.
#pragma once

#include "json.hpp"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace moxctl
{

// Why something could not be had.
struct Failure {
    std::uint32_t code;
    std::string reason;
};

// A value in all its forms. A value that is not to be had is null in JSON. A value and a failure together
// stand for a value of which a part could not be read.
struct Answer {
    Json value;
    std::string text;    // as a person reads it
    std::string meaning; // in words, or the unit; may be empty
    std::optional<Failure> failure = {};
};

using Row = std::vector<std::string>;

struct Fact {
    std::string key;  // in JSON
    std::string name; // in the table
    Answer answer;
    std::vector<Row> rows = {}; // a value that is a table itself; its first row is the heading
};

enum class Style {
    table,  // all facts
    bare,   // the last fact's text alone, for scripts
    raw,    // the same, with no end of line after it
    silent, // nothing: it was done
};

// What a verb hands back. JSON shows all facts whatever the style is.
struct Outcome {
    std::vector<Fact> facts;
    Style style = Style::table;
    std::string error = {}; // in words; empty: done
};

Answer yes_or_no(bool value, std::string meaning = {});
Answer number(std::uint64_t value, std::string meaning = {});
Answer hexadecimal(std::uint32_t value, std::string meaning = {});
Answer words(std::string text);
Answer not_applicable(std::string why);
Answer unreadable(Failure failure);
Answer unreadable(std::uint32_t code, std::string reason);

std::string hex_text(std::uint32_t value);

// A failed verb that has nothing to show.
Outcome failure(std::string error);

} // namespace moxctl
