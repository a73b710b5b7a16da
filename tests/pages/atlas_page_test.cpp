// SPDX-License-Identifier: Apache-2.0
// The atlas of boards, operated.
#include "pages/browser.hpp"
#include "pages/pages.hpp"

#include <algorithm>
#include <fstream>
#include <map>

using namespace pages;

namespace
{

const json &board(const json &data, const std::string &name)
{
    for (const json &one : data.at("boards"))
        if (one.at("name") == name)
            return one;
    throw std::runtime_error("there is no board " + name);
}

std::size_t with_file(const json &data, const std::string &part)
{
    std::size_t count = 0;
    for (const json &one : data.at("boards")) {
        std::string files;
        for (const json &at : one.at("boot_files"))
            files += data.at("boot_files").at(at.get<std::size_t>()).get<std::string>() + '\n';
        for (const json &at : one.at("links")) {
            const json &row = data.at("links").at(at.get<std::size_t>());
            files +=
                row.at("source").get<std::string>() + '\n' + row.at("destination").get<std::string>() + '\n';
        }
        count += files.find(part) != std::string::npos ? 1 : 0;
    }
    return count;
}

// Links by destination that are not the same on both.
std::size_t differing_links(const json &data, const std::string &left, const std::string &right)
{
    std::map<std::string, std::pair<std::string, std::string>> sources;
    for (const json &at : board(data, left).at("links")) {
        const json &row = data.at("links").at(at.get<std::size_t>());
        sources[row.at("destination")].first = row.at("source");
    }
    for (const json &at : board(data, right).at("links")) {
        const json &row = data.at("links").at(at.get<std::size_t>());
        sources[row.at("destination")].second = row.at("source");
    }
    return static_cast<std::size_t>(std::ranges::count_if(
        sources, [](const auto &one) { return one.second.first != one.second.second; }));
}

constexpr const char *operate = R"(
  const find = (selector) => document.querySelector(selector);
  const shown = () => [...document.querySelectorAll('#boards-table tbody tr:not(.detail)')].filter((row) => row.offsetParent !== null || row.getClientRects().length).length;
  const set = (selector, value) => { const one = find(selector); one.value = value; one.dispatchEvent(new Event('input')); one.dispatchEvent(new Event('change')); };
  const choose = (selector, name) => set(selector, [...find(selector).options].find((one) => one.text === name).value);
  const result = { all: shown() };
  set('#filter', 'paf_GL6264_Q2H.bin'); result.by_file = shown(); result.hits = find('#boards-table tr:not(.closed) .hits').textContent;
  set('#filter', 'gl6264-q2h'); result.by_name = shown();
  set('#filter', 'no such thing'); result.by_nothing = shown(); result.told = find('#shown').value;
  set('#filter', ''); set('#kind', 'named'); result.named = shown(); set('#kind', 'types'); result.types = shown(); set('#kind', '');
  find('#boards-table .name').focus(); result.focused = document.activeElement.className;
  find('#boards-table .name').click(); result.expanded = find('#boards-table .name').getAttribute('aria-expanded');
  result.detail = find('.detail').textContent.length; result.open_width = document.documentElement.scrollWidth;
  find('#boards-table .name').click(); result.closed = document.querySelectorAll('.detail').length;
  choose('#left', 'wox467'); choose('#right', 'wox475u');
  const rows = (part) => document.querySelectorAll(`[data-part="${part}"] .row`).length;
  result.differing = Number(find('#summary').dataset.differing); result.rows = document.querySelectorAll('.difference .row').length;
  result.links = rows('Links'); result.families = rows('Families'); result.heads = [...document.querySelectorAll('.difference thead th')].map((one) => one.textContent);
  find('#swap').click(); result.swapped = [...document.querySelectorAll('.difference thead th')].map((one) => one.textContent);
  choose('#right', find('#left').selectedOptions[0].text); result.same = find('#summary').textContent;
  choose('#left', 'gl6264-q2h'); result.compared_width = document.documentElement.scrollWidth;
  result.unlabelled = [...document.querySelectorAll('input, select')].filter((one) => !one.labels.length).length;
  return result;)";

} // namespace

TEST(AtlasPage, Finds_boards_and_compares_them_in_both_schemes_and_on_a_phone)
{
    NEEDS_A_BROWSER;
    const Folder folder;
    const std::string page = atlas_page();
    const json data = data_of(page);
    const std::string file = folder.path("atlas.html");
    std::ofstream(file) << page;
    const std::size_t boards = data.at("boards").size();
    const auto named = static_cast<std::size_t>(
        std::ranges::count_if(data.at("boards"), [](const json &one) { return one.at("named") == true; }));
    const json phone = probed(file, {phone_width, true}, operate);
    const json desk = probed(file, {desk_width, false}, operate);
    for (const json &probe : {phone, desk}) {
        expect_sound(probe);
        EXPECT_EQ(probe.at("figures").at("named_boards"), std::to_string(named));
        EXPECT_EQ(probe.at("figures").at("hard_types"), std::to_string(boards - named));
        EXPECT_EQ(probe.at("figures").at("links"), std::to_string(data.at("links").size()));
        EXPECT_EQ(probe.at("all"), boards);
        EXPECT_EQ(probe.at("by_file"), with_file(data, "paf_GL6264_Q2H.bin"));
        EXPECT_GE(probe.at("by_file"), 1);
        EXPECT_THAT(probe.at("hits"), testing::HasSubstr("paf_GL6264_Q2H.bin"));
        EXPECT_EQ(probe.at("by_name"), 1);
        EXPECT_EQ(probe.at("by_nothing"), 0);
        EXPECT_EQ(probe.at("told"), "0 boards of " + std::to_string(boards));
        EXPECT_EQ(probe.at("named"), named);
        EXPECT_EQ(probe.at("types"), boards - named);
        EXPECT_EQ(probe.at("focused"), "name") << "a board can be reached by the keyboard";
        EXPECT_EQ(probe.at("expanded"), "true");
        EXPECT_GT(probe.at("detail"), 200);
        EXPECT_EQ(probe.at("closed"), 0);
        EXPECT_EQ(probe.at("links"), differing_links(data, "wox467", "wox475u"));
        EXPECT_GE(probe.at("links"), 1);
        EXPECT_EQ(probe.at("rows"), probe.at("differing"));
        EXPECT_EQ(probe.at("heads"), json({"What", "wox467", "wox475u"}));
        EXPECT_EQ(probe.at("swapped"), json({"What", "wox475u", "wox467"}));
        EXPECT_EQ(probe.at("same"), "Choose two different boards.");
        EXPECT_EQ(probe.at("unlabelled"), 0);
        EXPECT_LE(probe.at("open_width"), probe.at("width"));
        EXPECT_LE(probe.at("compared_width"), probe.at("width"));
    }
    EXPECT_EQ(phone.at("width"), phone_width);
    EXPECT_NE(phone.at("background"), desk.at("background")) << "light and dark differ";
}
