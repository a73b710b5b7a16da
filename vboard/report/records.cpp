// SPDX-License-Identifier: Apache-2.0
#include "report/records.hpp"

#include "model/journal.hpp"

#include <algorithm>
#include <fstream>
#include <functional>

namespace vboard::report
{

using nlohmann::json;

namespace
{

std::string without_line_ends(std::string text)
{
    text.erase(0, text.find_first_not_of("\r\n"));
    text.erase(text.find_last_not_of("\r\n") + 1);
    return text;
}

template <class Line>
void read(const std::filesystem::path &path, std::vector<Line> &lines, std::size_t &odd,
          const std::function<Line(const json &)> &line_of)
{
    std::ifstream file(path, std::ios::binary);
    for (std::string text; std::getline(file, text);) {
        try {
            lines.push_back(line_of(json::parse(text)));
        } catch (const std::exception &) {
            ++odd;
        }
    }
    std::ranges::stable_sort(lines, {}, &Line::time);
}

} // namespace

double Records::first() const
{
    double time = 0;
    const auto earlier = [&](double other) { time = time == 0 ? other : std::min(time, other); };
    if (!events.empty())
        earlier(events.front().time - events.front().duration);
    if (!trace.empty())
        earlier(trace.front().time);
    if (!life.empty())
        earlier(life.front().time);
    return time;
}

double Records::last() const
{
    return std::max({events.empty() ? 0 : events.back().time, trace.empty() ? 0 : trace.back().time,
                     life.empty() ? 0 : life.back().time});
}

Records read_records(const std::filesystem::path &state)
{
    Records records;
    read<Event>(state / "journal.jsonl", records.events, records.odd_lines,
                [](const json &object) { return event_from_json(object); });
    read<TraceLine>(state / "trace.jsonl", records.trace, records.odd_lines, [](const json &object) {
        return TraceLine{object.at("time").get<double>(), object.at("process").get<int>(),
                         object.at("level").get<std::uint32_t>(),
                         without_line_ends(object.at("text").get<std::string>())};
    });
    read<LifeLine>(state / "life.jsonl", records.life, records.odd_lines, [](const json &object) {
        return LifeLine{object.at("time").get<double>(), object.at("what").get<std::string>(), object};
    });
    return records;
}

} // namespace vboard::report
