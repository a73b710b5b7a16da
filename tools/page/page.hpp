// SPDX-License-Identifier: Apache-2.0
// Pages that are whole in one file: nothing is fetched, and what they show stands in the markup, so that they
// can be read without their script, too.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace page
{

// A text as it can stand in markup, between tags as well as in a quoted attribute.
std::string escaped(std::string_view text);

// JSON as it can stand in a script element: no value of it can end the element, nor begin a comment.
std::string script_data(std::string_view json);

// A number that a reader looks for first.
struct Figure {
    std::string key; // in the attribute data-figure
    std::string value;
    std::string label;
    std::string tone = {}; // "good", "bad", "warn"; empty: neither
};
std::string figures(const std::vector<Figure> &figures);

struct Cell {
    std::string text;
    std::string tone = {}; // as of a figure; also "soft", "code"

    Cell(std::string text_, std::string tone_ = {}) : text(std::move(text_)), tone(std::move(tone_)) {}
    Cell(const char *text_) : text(text_) {}
};

struct Column {
    std::string name;
    bool number = false;
};

struct Table {
    std::string id;
    std::string caption;
    std::vector<Column> columns;
    std::vector<std::vector<Cell>> rows = {};
    std::string none = "Nothing."; // what stands in the place of a table without rows
};
// On a narrow screen each row becomes a card, in which the columns' names stand beside the values.
std::string table(const Table &table);

// `content` is markup, `heading` and `lead` are texts.
std::string section(std::string_view id, std::string_view heading, std::string_view lead,
                    std::string_view content);

// A place that the script draws into; `name` tells those who cannot see it what it is.
std::string drawing(std::string_view id, std::string_view name);

struct Document {
    std::string title;
    std::string kicker; // a line above the title
    std::string lead;   // a line below it
    std::string body;   // markup
    std::string data;   // JSON, which the script finds as `data`
    std::string_view style = {};
    std::string_view script = {};
};
std::string document(const Document &document);

} // namespace page
