// SPDX-License-Identifier: Apache-2.0
// Facts that are tables: their value is a list of objects, and beside the name stands how many there are.
#pragma once

#include "facts.hpp"

namespace moxctl
{

// Without rows; `heading` names the columns.
Fact table_fact(const char *key, const char *name, Row heading, std::string meaning = {});
void add_row(Fact &table, Json object, Row row);
// Counts the rows; a table without any is not shown.
Fact counted(Fact table);

} // namespace moxctl
