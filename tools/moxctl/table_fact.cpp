// SPDX-License-Identifier: Apache-2.0
#include "table_fact.hpp"

#include <utility>

namespace moxctl
{

Fact table_fact(const char *key, const char *name, Row heading, std::string meaning)
{
    return {key, name, {Json::array(), "", std::move(meaning)}, {std::move(heading)}};
}

void add_row(Fact &table, Json object, Row row)
{
    table.answer.value.push_back(std::move(object));
    table.rows.push_back(std::move(row));
}

Fact counted(Fact table)
{
    const std::size_t count = table.rows.size() - 1;
    table.answer.text = std::to_string(count);
    if (count == 0)
        table.rows.clear();
    return table;
}

} // namespace moxctl
