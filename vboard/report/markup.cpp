// SPDX-License-Identifier: Apache-2.0
// The facts as a page that can be read without its script.
#include "page/page.hpp"
#include "report/report.hpp"
#include "report/words.hpp"

#include <string_view>

namespace vboard
{
extern const std::string_view report_css, report_js;
}

namespace vboard::report
{

using nlohmann::json;

namespace
{

constexpr const char *unknown = "–";
constexpr std::size_t most_rows = 25; // of a table that is not folded up

double seconds(const json &fact)
{
    return fact.get<double>();
}

std::string microseconds(const json &fact)
{
    return fact.is_null() ? unknown : time_span(fact.get<double>() / 1e6);
}

std::string key_figures(const json &facts)
{
    const json &count = facts["figures"];
    const auto of = [&](const char *key) { return count[key].get<std::uint64_t>(); };
    const auto figure = [&](const char *key, const char *label, const char *tone = "") {
        return page::Figure{key, grouped(of(key)), label, of(key) == 0 ? "" : tone};
    };
    return page::figures({figure("boots", "boots"), figure("resets", "resets"),
                          figure("requests", "driver requests"), figure("failed", "of them failed", "bad"),
                          figure("faults_met", "planned faults met", "warn"),
                          figure("installations", "installations"),
                          figure("installations_failed", "of them with failures", "bad"),
                          figure("feeds", "watchdog feeds"), figure("late_feeds", "gaps in feeding", "bad")});
}

std::string life(const json &facts)
{
    page::Table table{"boots",
                      "Boots, with what started and what ended them",
                      {{"Started"}, {"By"}, {"Reason"}, {"Ended by"}, {"Lasted", true}, {"Requests", true}},
                      {},
                      "Nothing is recorded of this board yet."};
    for (const json &boot : facts["boots"]) {
        const double to = boot["to"].is_null() ? seconds(facts["to"]) : seconds(boot["to"]);
        const bool lost = boot["end"] == "ended without a word" || boot["end"] == "watchdog reset";
        table.rows.push_back({day_and_time(seconds(boot["from"])),
                              boot["start"].get<std::string>(),
                              boot["reason"].is_null()
                                  ? page::Cell(unknown, "soft")
                                  : page::Cell(hexadecimal(boot["reason"].get<std::uint32_t>()), "code"),
                              {boot["end"].get<std::string>(), lost ? "bad" : ""},
                              time_span(to - seconds(boot["from"])),
                              grouped(boot["requests"].get<std::uint64_t>())});
    }
    return page::section(
        "life", "Boots and resets",
        "Times are UTC. The time for which the board was switched off is cut out of the drawing.",
        page::drawing("timeline", "Boots, resets, requests, faults, installations and feeds over time") +
            page::table(table));
}

std::vector<page::Cell> traffic_row(const json &row)
{
    const auto tone = [&](const char *key, const char *name) {
        return page::Cell(grouped(row[key].get<std::uint64_t>()), row[key] == 0 ? "soft" : name);
    };
    const auto item = row["item"].get<std::string>();
    return {{row["device"].get<std::string>(), "code"},
            row["request"].get<std::string>(),
            item.empty() ? page::Cell(unknown, "soft") : page::Cell(item),
            grouped(row["count"].get<std::uint64_t>()),
            tone("failed", "bad"),
            tone("faulted", "warn"),
            microseconds(row["median_us"]),
            microseconds(row["max_us"])};
}

std::string traffic(const json &facts)
{
    page::Table often{"traffic-table",
                      "Requests to the driver by item",
                      {{"Device"},
                       {"Request"},
                       {"Item"},
                       {"Count", true},
                       {"Failed", true},
                       {"Planned faults", true},
                       {"Usual time", true},
                       {"Longest", true}},
                      {},
                      "No program has asked the driver."};
    page::Table seldom = often;
    seldom.id = "seldom-table";
    seldom.caption = "Requests to the driver by item, those that are rarer";
    for (const json &row : facts["traffic"])
        (often.rows.size() < most_rows ? often : seldom).rows.push_back(traffic_row(row));
    std::string content = page::drawing("bars", "The most frequent requests") + page::table(often);
    if (!seldom.rows.empty())
        content += "<details><summary>" + times(seldom.rows.size(), "more row") + "</summary>\n" +
                   page::table(seldom) + "</details>\n";
    return page::section("traffic", "Driver traffic by item",
                         "What programs asked, how often, and how long the driver took to answer.", content);
}

std::string faults(const json &facts)
{
    const json &all = facts["faults"];
    const auto listed = [&](const char *key, const char *caption, const char *none) {
        page::Table table{std::string("faults-") + key, caption, {{"When"}, {"What"}}, {}, none};
        for (const json &row : all[key])
            table.rows.push_back(
                {day_and_time(seconds(row["time"])), {row["words"].get<std::string>(), "code"}});
        return page::table(table);
    };
    const auto count = all["met_count"].get<std::uint64_t>();
    const std::string more = count > all["met"].size() ? "Only the first " + grouped(all["met"].size()) +
                                                             " that were met are listed."
                                                       : "";
    return page::section("faults", "Planned faults", more,
                         "<h3>Planned</h3>\n" +
                             listed("planned", "Faults that were planned", "None was planned.") +
                             "<h3>Met by programs</h3>\n" +
                             listed("met", "Requests that a planned fault struck", "None was met."));
}

std::string installations(const json &facts)
{
    page::Table table{"installations-table",
                      "Installations, step by step",
                      {{"When"}, {"Package"}, {"Step"}, {"Took", true}, {"Result"}},
                      {},
                      "Nothing was installed."};
    for (const json &one : facts["installations"]) {
        for (const json &step : one["steps"]) {
            const bool ended = !step["to"].is_null();
            std::string result = ended ? "done" : "cut short";
            if (!step["failures"].empty()) {
                result =
                    times(step["failures"].size(), "failure") + ": " + step["failures"][0].get<std::string>();
            }
            const bool well = ended && step["failures"].empty();
            table.rows.push_back(
                {day_and_time(seconds(step["from"])),
                 {one["package"].is_null() ? unknown : one["package"].get<std::string>(), "code"},
                 step["name"].get<std::string>(),
                 ended ? time_span(seconds(step["to"]) - seconds(step["from"])) : unknown,
                 {result, well ? "good" : "bad"}});
        }
    }
    return page::section("installations", "Installations", "By what the library traced of its steps.",
                         page::table(table));
}

std::string feeding(const json &facts)
{
    const json &watchdog = facts["watchdog"];
    std::string lead = "Nobody fed the watchdog.";
    if (watchdog["feeds"] != 0) {
        lead = "The watchdog bites after " + time_span(seconds(watchdog["limit_ms"]) / 1000) +
               " without a feed; a feed that comes after half of that is a gap.";
        if (!watchdog["median_ms"].is_null())
            lead += " Feeds came " + time_span(seconds(watchdog["median_ms"]) / 1000) + " apart as a rule, " +
                    time_span(seconds(watchdog["max_ms"]) / 1000) + " at most.";
    }
    page::Table table{
        "gaps", "Gaps in feeding", {{"From"}, {"To"}, {"Length", true}, {"Then"}}, {}, "There were no gaps."};
    for (const json &gap : watchdog["gaps"])
        table.rows.push_back({day_and_time(seconds(gap["from"])), exact_time(seconds(gap["to"])),
                              time_span(seconds(gap["ms"]) / 1000),
                              gap["bitten"].get<bool>() ? page::Cell("the watchdog reset the board", "bad")
                                                        : page::Cell("a late feed", "warn")});
    return page::section("feeding", "Watchdog feeding", lead,
                         page::drawing("intervals", "Time from each feed to the next") + page::table(table));
}

std::string lead(const json &facts)
{
    std::string text = facts["description"].get<std::string>();
    if (facts["from"] == 0)
        return text + ". Nothing is recorded yet.";
    text += ", hard type " + hexadecimal(facts["hard_type"].get<std::uint32_t>()) + ". From " +
            day_and_time(seconds(facts["from"])) + " to " + day_and_time(seconds(facts["to"])) + " UTC; " +
            (facts["running"].get<bool>() ? "the board is running." : "the board is switched off.");
    if (facts["odd_lines"] != 0)
        text += " Of its records " + times(facts["odd_lines"].get<std::uint64_t>(), "line") +
                " could not be read.";
    return text;
}

} // namespace

std::string markup(const json &facts)
{
    page::Document document;
    document.title = facts["board"].get<std::string>();
    document.kicker = "A board's life";
    document.lead = lead(facts);
    document.body = key_figures(facts) + life(facts) + traffic(facts) + faults(facts) + installations(facts) +
                    feeding(facts);
    document.data = facts.dump(-1, ' ', false, json::error_handler_t::replace);
    document.style = report_css;
    document.script = report_js;
    return page::document(document);
}

} // namespace vboard::report
