// SPDX-License-Identifier: Apache-2.0
#include "report/report.hpp"

#include "model/items.hpp"
#include "report/parts.hpp"

#include <algorithm>

namespace vboard::report
{

using nlohmann::json;

namespace
{

// What a reader wants to know first.
json figures(const json &facts)
{
    const json &boots = facts["boots"];
    const json &traffic = facts["traffic"];
    const json &installations = facts["installations"];
    const auto sum = [&](const char *key) {
        std::size_t whole = 0;
        for (const json &row : traffic)
            whole += row[key].get<std::size_t>();
        return whole;
    };
    const auto started_by_reset = std::ranges::count_if(boots, [](const json &boot) {
        return boot["start"] != "switched on" && boot["start"] != "first heard of";
    });
    const auto gone_wrong =
        std::ranges::count_if(installations, [](const json &one) { return !one["ok"].get<bool>(); });
    return {{"boots", boots.size()},
            {"resets", started_by_reset},
            {"requests", sum("count")},
            {"failed", sum("failed")},
            {"faults_planned", facts["faults"]["planned"].size()},
            {"faults_met", facts["faults"]["met_count"]},
            {"installations", installations.size()},
            {"installations_failed", gone_wrong},
            {"feeds", facts["watchdog"]["feeds"]},
            {"late_feeds", facts["watchdog"]["gaps"].size()}};
}

std::uint32_t hard_type(const Profile &profile)
{
    const auto items = profile.items.find("/dev/board0");
    if (items == profile.items.end())
        return 0;
    const auto item = items->second.find(item_code::hard_type);
    return item == items->second.end() ? 0 : item->second;
}

} // namespace

json facts(const Subject &subject)
{
    const Records records = read_records(subject.state);
    json facts = {{"board", subject.profile.name},
                  {"description", subject.profile.description},
                  {"hard_type", hard_type(subject.profile)},
                  {"running", subject.running},
                  {"from", records.first()},
                  {"to", subject.running ? subject.now : records.last()},
                  {"odd_lines", records.odd_lines}};
    // What is on for ever ends, on the page, with it.
    facts["boots"] = boots(records, subject.running, facts["to"].get<double>());
    facts["traffic"] = traffic(records);
    facts["faults"] = faults(records);
    facts["installations"] = installations(records);
    facts["watchdog"] = feeding(records, subject.profile, facts["boots"]);
    facts["figures"] = figures(facts);
    return facts;
}

} // namespace vboard::report
