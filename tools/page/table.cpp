// SPDX-License-Identifier: Apache-2.0
#include "page/page.hpp"

namespace page
{

namespace
{

std::string classes(const Column &column, const Cell *cell)
{
    std::string names = column.number ? "number" : "";
    if (cell != nullptr && !cell->tone.empty())
        names += (names.empty() ? "" : " ") + cell->tone;
    return names.empty() ? "" : " class=\"" + names + "\"";
}

std::string heading(const Table &table)
{
    std::string cells;
    for (const Column &column : table.columns)
        cells += "<th scope=\"col\"" + classes(column, nullptr) + ">" + escaped(column.name) + "</th>";
    return "<thead><tr>" + cells + "</tr></thead>\n";
}

} // namespace

std::string table(const Table &table)
{
    if (table.rows.empty())
        return "<p class=\"none\" id=\"" + table.id + "\">" + escaped(table.none) + "</p>\n";
    std::string text = "<table class=\"stack\" id=\"" + table.id + "\">\n<caption>" + escaped(table.caption) +
                       "</caption>\n" + heading(table) + "<tbody>\n";
    for (const std::vector<Cell> &row : table.rows) {
        text += "<tr>";
        for (std::size_t i = 0; i < row.size() && i < table.columns.size(); ++i)
            text += "<td data-label=\"" + escaped(table.columns[i].name) + "\"" +
                    classes(table.columns[i], &row[i]) + ">" + escaped(row[i].text) + "</td>";
        text += "</tr>\n";
    }
    return text + "</tbody>\n</table>\n";
}

} // namespace page
