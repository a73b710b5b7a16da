// SPDX-License-Identifier: Apache-2.0
#include "output.hpp"

#include "reason.hpp"

#include <algorithm>

namespace moxctl
{

namespace
{

// Texts from the board must not steer a terminal, nor break the table's lines.
std::string printable(const std::string &text)
{
    std::string result = text;
    for (char &c : result) {
        const auto byte = static_cast<unsigned char>(c);
        if (byte < 0x20 || byte == 0x7f)
            c = '?';
    }
    return result;
}

// Columns that a text takes: the bytes of UTF-8 that go on with a character do not count.
std::size_t width(const std::string &text)
{
    return static_cast<std::size_t>(std::count_if(
        text.begin(), text.end(), [](char c) { return (static_cast<unsigned char>(c) & 0xc0) != 0x80; }));
}

std::string columns(std::vector<Row> rows)
{
    std::vector<std::size_t> widths;
    for (Row &row : rows) {
        widths.resize(std::max(widths.size(), row.size()));
        for (std::size_t i = 0; i < row.size(); ++i) {
            row[i] = printable(row[i]);
            widths[i] = std::max(widths[i], width(row[i]));
        }
    }
    std::string result;
    for (const Row &row : rows) {
        std::string line;
        for (std::size_t i = 0; i < row.size(); ++i)
            line += row[i] + std::string(widths[i] - width(row[i]) + 2, ' ');
        line.erase(line.find_last_not_of(' ') + 1);
        result += line + '\n';
    }
    return result;
}

std::string meaning_of(const Answer &answer)
{
    return answer.failure ? describe(*answer.failure) : answer.meaning;
}

constexpr int on_one_line = -1;

std::string json_text(const Outcome &outcome, int indent)
{
    if (outcome.facts.empty())
        return {};
    Json object = Json::object();
    Json errors = Json::object();
    for (const Fact &fact : outcome.facts) {
        object[fact.key] = fact.answer.value;
        if (const auto &failure = fact.answer.failure)
            errors[fact.key] = {{"code", failure->code}, {"text", failure->reason}};
    }
    if (errors.size() != 0)
        object["errors"] = errors;
    // A boot variable may hold any bytes; those that are no UTF-8 are replaced.
    return object.dump(indent) + '\n';
}

} // namespace

std::string as_text(const Outcome &outcome)
{
    if (outcome.style == Style::silent || outcome.facts.empty())
        return {};
    if (outcome.style == Style::raw)
        return outcome.facts.back().answer.text;
    if (outcome.style == Style::bare)
        return outcome.facts.back().answer.text + '\n';
    std::vector<Row> rows;
    std::string below;
    for (const Fact &fact : outcome.facts) {
        rows.push_back({fact.name, fact.answer.text, meaning_of(fact.answer)});
        if (!fact.rows.empty())
            below += '\n' + columns(fact.rows);
    }
    return columns(std::move(rows)) + below;
}

std::string as_json(const Outcome &outcome)
{
    constexpr int indent = 2;
    return json_text(outcome, indent);
}

std::string as_json_line(const Outcome &outcome)
{
    return json_text(outcome, on_one_line);
}

} // namespace moxctl
