// SPDX-License-Identifier: Apache-2.0
// moxctl measurements: the images that were measured at start-up, as remote attestation gets them.
#include "question.hpp"
#include "reason.hpp"
#include "table_fact.hpp"
#include "verbs.hpp"

#include <moxboot/measurement.h>

#include <string_view>

namespace moxctl
{

namespace
{

// A field that is full has no terminator.
template <std::size_t Size>
std::string text_in(const char (&field)[Size])
{
    const std::string_view all(field, Size);
    return std::string(all.substr(0, all.find('\0')));
}

Json text_or_null(const std::string &text)
{
    return text.empty() ? Json(nullptr) : Json(text);
}

std::string shown(const std::string &text)
{
    return text.empty() ? "-" : text;
}

const char *yes_no(std::uint32_t value)
{
    return value != 0 ? "yes" : "no";
}

void add_record(Fact &table, const PdtSmlFileInfo &record)
{
    const std::string file = text_in(record.file_name);
    const std::string type = text_in(record.file_type);
    const std::string hash = text_in(record.file_hash);
    const bool valid = record.valid != 0;
    // Of a record that could not be filled only what is there is told.
    add_row(table,
            {{"file", text_or_null(file)},
             {"type", text_or_null(type)},
             {"hash", text_or_null(hash)},
             {"patched", valid ? Json(record.use_patch != 0) : Json(nullptr)},
             {"index", valid ? Json(record.measurement_index) : Json(nullptr)},
             {"valid", valid}},
            {shown(file), shown(type), shown(hash), valid ? yes_no(record.use_patch) : "-",
             valid ? std::to_string(record.measurement_index) : "-", yes_no(record.valid)});
}

// Names that the trust measurement knows; few boards have any.
Fact trust_items()
{
    Fact table = table_fact("trust_items", "Trust measurement items", {"Id", "Item"});
    std::uint32_t count = 0;
    if (MOX_GetPdtSTMItemNum(&count) == 0) {
        std::vector<PdtStmItem> items(count);
        if (const std::uint32_t result = MOX_GetPdtSTMItem(items.data(), count); result != 0)
            table.answer.failure = Failure{result, "the items could not be had"};
        else
            for (const PdtStmItem &item : items)
                add_row(table, {{"id", item.id}, {"name", text_in(item.name)}},
                        {std::to_string(item.id), text_in(item.name)});
    }
    return counted(std::move(table));
}

} // namespace

Outcome measurements()
{
    std::uint32_t count = 0;
    if (const std::uint32_t result = MOX_GetPdtSMLInfoCount(&count); result != 0)
        return failure("the board does not tell its hard type (" + describe(why(item_hard_type, result)) +
                       ")");
    std::uint32_t type = 0;
    const bool measured = PdtSMLInfoGetType(&type) == 0 && count != 0;

    Outcome outcome{{{"board_type", "Measured as board type",
                      measured ? number(type) : not_applicable("nothing is measured on this board")}}};
    Fact table =
        table_fact("measurements", "Measured images", {"File", "Type", "Hash", "Patched", "Index", "Valid"});
    if (measured) {
        std::vector<PdtSmlFileInfo> records(count);
        if (const std::uint32_t result = MOX_GetPdtSMLInfo(records.data(), count); result != 0)
            outcome.error = "not every image's record could be filled (code " + hex_text(result) + ")";
        for (const PdtSmlFileInfo &record : records)
            add_record(table, record);
    }
    outcome.facts.push_back(counted(std::move(table)));
    outcome.facts.push_back(trust_items());
    return outcome;
}

} // namespace moxctl
