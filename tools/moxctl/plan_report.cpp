// SPDX-License-Identifier: Apache-2.0
// moxctl plan: what an installation would do on this board, or on another one.
#include "package_library.hpp"
#include "plan.hpp"
#include "startup_kind.hpp"
#include "table_fact.hpp"
#include "verbs.hpp"

namespace moxctl
{

namespace
{

Json row_json(const TableRow &row)
{
    return {{"table", table_name(row.table)},
            {"row", row.index},
            {"source", row.source},
            {"destination", row.destination}};
}

Fact extracted(const Plan &plan)
{
    Fact fact = table_fact("extract", "Boot files to extract", {"Boot file", "Id", "Delivered"});
    for (const PlannedFile &file : plan.extract) {
        fact.answer.value.push_back({{"file", file.name}, {"id", file.id}, {"delivered", file.delivered}});
        fact.rows.push_back(
            {file.name, hex_text(file.id), file.delivered ? "yes" : "no: the package does not hold it"});
    }
    return counted(std::move(fact));
}

Fact links(const Plan &plan)
{
    Fact fact =
        table_fact("links", "Links to make", {"Link", "Row", "Source"}, "relative to the install root");
    for (const Destination &destination : plan.destinations) {
        if (!destination.winner)
            continue;
        fact.answer.value.push_back(row_json(*destination.winner));
        fact.rows.push_back({destination.path, row_name(*destination.winner), destination.winner->source});
    }
    return counted(std::move(fact));
}

// Of the table, destinations that only one row comes to tell nothing more than the links do.
Fact destinations(const Plan &plan)
{
    Fact fact = table_fact("destinations", "Rows that do not win",
                           {"Destination", "Row that loses", "Source", "Why"});
    for (const Destination &destination : plan.destinations) {
        Json losers = Json::array();
        for (const Loser &loser : destination.losers) {
            Json row = row_json(loser.row);
            row["reason"] = loser.reason;
            losers.push_back(std::move(row));
            fact.rows.push_back({destination.path, row_name(loser.row), loser.row.source, loser.reason});
        }
        fact.answer.value.push_back(
            {{"destination", destination.path},
             {"winner", destination.winner ? row_json(*destination.winner) : Json(nullptr)},
             {"kept", destination.kept.empty() ? Json(nullptr) : Json(destination.kept)},
             {"losers", std::move(losers)}});
    }
    return counted(std::move(fact));
}

Fact preload(const Plan &plan)
{
    Fact fact =
        table_fact("preload", "Preload", {"File for the start-up flash", "Type", "Written"},
                   plan.file_by_file ? "files to write"
                                     : "no next generation board: the NOR flash data area is refreshed");
    for (const PlannedWrite &write : plan.preload) {
        const bool written = write.obstacle.empty();
        fact.answer.value.push_back({{"file", write.path},
                                     {"startup_type", write.type},
                                     {"kind", startup_kind(write.type)},
                                     {"written", written},
                                     {"reason", written ? Json(nullptr) : Json(write.obstacle)}});
        fact.rows.push_back({write.path, std::to_string(write.type) + ' ' + startup_kind(write.type),
                             written ? "yes" : "no: " + write.obstacle});
    }
    return counted(std::move(fact));
}

Delivered delivered_by(const std::string &path)
{
    Delivered delivered;
    for (const package::File &file : package_library().list(path).files) {
        delivered.ids.insert(file.id);
        delivered.names.insert(file.name);
    }
    return delivered;
}

} // namespace

Outcome plan_installation(const OtherBoard &other, const std::string &package, const std::string &root)
{
    Sources sources{std::nullopt, root};
    if (!package.empty())
        sources.package = delivered_by(package);
    const Presumed presumed = presume(other);
    const Presumption presumption(presumed);
    const Plan plan = make_plan(sources);
    Outcome outcome{{hard_type_fact(other), flash_fact(other)}};
    for (Fact &fact : model_facts(other))
        outcome.facts.push_back(std::move(fact));
    for (Fact &fact : std::vector<Fact>{extracted(plan), links(plan), destinations(plan), preload(plan)})
        outcome.facts.push_back(std::move(fact));
    return outcome;
}

} // namespace moxctl
