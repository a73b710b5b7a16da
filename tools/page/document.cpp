// SPDX-License-Identifier: Apache-2.0
#include "page/page.hpp"

#include <array>
#include <cstdio>
#include <utility>

namespace page
{

extern const std::string_view page_css, page_js, errors_js;

namespace
{

using Replacement = std::pair<std::string_view, std::string_view>;

template <std::size_t Count>
std::string replaced(std::string_view text, const std::array<Replacement, Count> &replacements)
{
    std::string result;
    result.reserve(text.size());
    while (!text.empty()) {
        const Replacement *found = nullptr;
        for (const Replacement &one : replacements)
            if (text.starts_with(one.first))
                found = &one;
        const std::size_t length = found != nullptr ? found->first.size() : 1;
        result += found != nullptr ? found->second : text.substr(0, 1);
        text.remove_prefix(length);
    }
    return result;
}

// Nothing is to be fetched; should a value ever get where it does not belong, the browser refuses as well.
constexpr std::string_view policy =
    "default-src 'none'; style-src 'unsafe-inline'; script-src 'unsafe-inline'; img-src data:";

std::string element(std::string_view name, std::string_view attributes, std::string_view content)
{
    const std::string space = attributes.empty() ? "" : " ";
    return "<" + std::string(name) + space + std::string(attributes) + ">" + std::string(content) + "</" +
           std::string(name) + ">\n";
}

} // namespace

std::string escaped(std::string_view text)
{
    static constexpr std::array<Replacement, 5> replacements{
        {{"&", "&amp;"}, {"<", "&lt;"}, {">", "&gt;"}, {"\"", "&quot;"}, {"'", "&#39;"}}};
    return replaced(text, replacements);
}

std::string script_data(std::string_view json)
{
    // The line separators are line ends to some readers of scripts, but none to those of JSON.
    static constexpr std::array<Replacement, 5> replacements{{{"<", "\\u003c"},
                                                              {">", "\\u003e"},
                                                              {"&", "\\u0026"},
                                                              {"\xe2\x80\xa8", "\\u2028"},
                                                              {"\xe2\x80\xa9", "\\u2029"}}};
    return replaced(json, replacements);
}

std::string figures(const std::vector<Figure> &figures)
{
    std::string list;
    for (const Figure &figure : figures)
        list += "<div class=\"figure " + figure.tone + "\"><dt>" + escaped(figure.label) +
                "</dt><dd data-figure=\"" + escaped(figure.key) + "\">" + escaped(figure.value) +
                "</dd></div>\n";
    return element("dl", "class=\"figures\"", "\n" + list);
}

std::string section(std::string_view id, std::string_view heading, std::string_view lead,
                    std::string_view content)
{
    const std::string name(id);
    const std::string below = lead.empty() ? "" : "<p class=\"lead\">" + escaped(lead) + "</p>\n";
    return element("section", "id=\"" + name + "\" aria-labelledby=\"" + name + "-heading\"",
                   "\n<h2 id=\"" + name + "-heading\">" + escaped(heading) + "</h2>\n" + below +
                       std::string(content));
}

std::string drawing(std::string_view id, std::string_view name)
{
    return element("div",
                   "class=\"drawing\" id=\"" + std::string(id) + "\" role=\"img\" aria-label=\"" +
                       escaped(name) + "\"",
                   "");
}

std::string document(const Document &document)
{
    const std::string title = escaped(document.title);
    std::string text = "<!DOCTYPE html>\n<html lang=\"en\" data-errors=\"0\">\n<head>\n"
                       "<meta charset=\"utf-8\">\n"
                       "<meta name=\"viewport\" content=\"width=device-width, initial-scale=1\">\n"
                       "<meta name=\"color-scheme\" content=\"light dark\">\n";
    text += "<meta http-equiv=\"Content-Security-Policy\" content=\"" + std::string(policy) + "\">\n";
    text += element("title", "", title);
    text += element("style", "", "\n" + std::string(page_css) + std::string(document.style));
    text += element("script", "", "\n" + std::string(errors_js));
    text += "</head>\n<body>\n<header class=\"top\">\n";
    if (!document.kicker.empty())
        text += element("p", "class=\"kicker\"", escaped(document.kicker));
    text += element("h1", "", title);
    if (!document.lead.empty())
        text += element("p", "class=\"lead\"", escaped(document.lead));
    text += "</header>\n<main>\n" + document.body + "</main>\n";
    text += element("script", "id=\"data\" type=\"application/json\"", script_data(document.data));
    text += element("script", "",
                    "\n(() => {\n'use strict';\n" + std::string(page_js) + std::string(document.script) +
                        "})();\n");
    return text + "</body>\n</html>\n";
}

} // namespace page
