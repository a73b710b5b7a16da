// SPDX-License-Identifier: Apache-2.0
#include "pages/browser.hpp"

#include "moxctl/process.hpp"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>

namespace pages
{

namespace fs = std::filesystem;

namespace
{

constexpr const char *end_of_page = "</body>";
constexpr const char *probe_mark = "data-probe=\"";

std::string content(const std::string &file)
{
    std::ifstream stream(file, std::ios::binary);
    std::ostringstream text;
    text << stream.rdbuf();
    return text.str();
}

// Attributes come with their quotes escaped.
std::string unescaped(std::string text)
{
    static constexpr std::array<std::pair<const char *, const char *>, 5> names{
        {{"&quot;", "\""}, {"&lt;", "<"}, {"&gt;", ">"}, {"&nbsp;", "\xc2\xa0"}, {"&amp;", "&"}}};
    for (const auto &[name, character] : names)
        for (std::size_t at = 0; (at = text.find(name, at)) != std::string::npos; at += 1)
            text.replace(at, std::string(name).size(), character);
    return text;
}

// For a page whose own scripts do not run.
constexpr const char *look_from_outside = R"(<script>
document.querySelector('iframe').addEventListener('load', (event) => {
  const page = event.target.contentDocument;
  document.documentElement.dataset.probe = JSON.stringify({ text: page.body.innerText,
    drawings: page.querySelectorAll('svg').length });
});
</script>)";

// The page as it is in a window of that width: a browser without a screen makes no window as narrow as a
// phone's, but a frame is a window to the page in it. What the page tells goes to the outer one.
std::string framed(const std::string &page, const View &view)
{
    std::string text = "<!DOCTYPE html>\n<html style=\"color-scheme: light dark\"><body style=\"margin: 0\">"
                       "<iframe style=\"border: 0\" height=\"844\" width=\"" +
                       std::to_string(view.width) +
                       (view.script ? "\"" : "\" sandbox=\"allow-same-origin\"") + " srcdoc=\"";
    for (const char c : page) {
        if (c == '&')
            text += "&amp;";
        else if (c == '"')
            text += "&quot;";
        else
            text += c;
    }
    text += "\"></iframe>";
    if (!view.script)
        text += look_from_outside;
    return text + "</body></html>\n";
}

// Runs when the page is loaded, before the outer one is: the browser tells of it as soon as that is over.
std::string with_probe(std::string page, const std::string &script)
{
    const std::string probe = R"(<script>
addEventListener('load', () => {
  const own = (() => {)" + script +
                              R"(})();
  const root = document.documentElement, style = getComputedStyle(document.body);
  const figures = {};
  for (const one of document.querySelectorAll('[data-figure]')) figures[one.dataset.figure] = one.textContent;
  parent.document.documentElement.dataset.probe = JSON.stringify({ ...own, figures, errors: Number(root.dataset.errors),
    first_error: root.dataset.firstError ?? '', width: innerWidth, scroll_width: root.scrollWidth,
    background: style.backgroundColor, ink: style.color });
});
</script>
)";
    const std::size_t at = page.rfind(end_of_page);
    if (at == std::string::npos)
        throw std::runtime_error("this is no page");
    return page.insert(at, probe);
}

// Relative luminance of "rgb(1, 2, 3)".
double luminance(const std::string &colour)
{
    std::istringstream text(colour.substr(colour.find('(') + 1));
    std::array<double, 3> parts{};
    char comma = 0;
    for (double &part : parts) {
        text >> part >> comma;
        part /= 255;
        part = part <= 0.03928 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
    }
    return 0.2126 * parts[0] + 0.7152 * parts[1] + 0.0722 * parts[2];
}

} // namespace

std::string browser()
{
    std::istringstream path(std::getenv("PATH") != nullptr ? std::getenv("PATH") : "");
    for (std::string folder; std::getline(path, folder, ':');)
        if (fs::exists(folder + "/chromium"))
            return folder + "/chromium";
    return {};
}

Folder::Folder()
{
    if (::mkdtemp(path_.data()) == nullptr)
        throw std::runtime_error("cannot make a folder");
}

Folder::~Folder()
{
    std::error_code error;
    fs::remove_all(path_, error);
}

std::string Folder::path(const std::string &name) const
{
    return path_ + '/' + name;
}

namespace
{

// The document as the browser has it when the page has come to rest.
std::string dumped(const std::string &page, const View &view)
{
    const Folder profile;
    // For the colour scheme 0 is dark and 1 is light.
    const std::string settings =
        std::string("--blink-settings=preferredColorScheme=") + (view.dark ? "0" : "1");
    const test::Ended ended = test::run(
        {"timeout", "-k", "5", "120", browser(), "--headless", "--no-sandbox", "--disable-gpu",
         "--disable-dev-shm-usage", "--disable-background-networking", "--disable-component-update",
         "--no-first-run", "--hide-scrollbars", "--user-data-dir=" + profile.path("profile"), settings,
         "--window-size=1400,900", "--dump-dom", "file://" + fs::absolute(page).string()});
    if (ended.status != 0)
        throw std::runtime_error("the browser failed: " + ended.err);
    return ended.out;
}

} // namespace

json probed(const std::string &page, const View &view, const std::string &script)
{
    const Folder folder;
    const std::string copy = folder.path("page.html");
    std::ofstream(copy, std::ios::binary)
        << framed(view.script ? with_probe(content(page), script) : content(page), view);
    const std::string dom = dumped(copy, view);
    const std::size_t at = dom.find(probe_mark);
    if (at == std::string::npos)
        throw std::runtime_error("the page did not get to its end: " + dom.substr(0, 300));
    const std::size_t start = at + std::string(probe_mark).size();
    return json::parse(unescaped(dom.substr(start, dom.find('"', start) - start)));
}

void expect_sound(const json &probe)
{
    EXPECT_EQ(probe.at("errors"), 0) << probe.at("first_error");
    EXPECT_LE(probe.at("scroll_width"), probe.at("width"));
    const double paper = luminance(probe.at("background")), ink = luminance(probe.at("ink"));
    EXPECT_GE((std::max(paper, ink) + 0.05) / (std::min(paper, ink) + 0.05), 7) << "contrast of the text";
}

} // namespace pages
