// SPDX-License-Identifier: Apache-2.0
// The page of a board's life.
#include "pages/browser.hpp"
#include "pages/pages.hpp"

#include <fstream>

using namespace pages;
using testing::HasSubstr;

namespace
{

// The digits of a number that is shown in groups.
std::string digits(std::string text)
{
    std::erase(text, ',');
    return text;
}

} // namespace

TEST(ReportPage, Shows_its_figures_in_both_schemes_and_on_a_phone)
{
    NEEDS_A_BROWSER;
    const Folder folder;
    const std::string page = life_page();
    const json data = data_of(page);
    const std::string file = folder.path("life.html");
    std::ofstream(file) << page;
    const std::string script = R"(
      const count = (selector) => document.querySelectorAll(selector).length;
      return { bars: count('#bars rect.accent'), drawings: count('.drawing svg'), resets: count('#timeline path'),
               faults: count('#timeline rect.warn'), rows: count('#traffic tbody tr'),
               widest: Math.max(...[...document.querySelectorAll('svg')].map((one) => one.getBoundingClientRect().right)) };)";
    const json phone = probed(file, {phone_width, false}, script);
    const json desk = probed(file, {desk_width, true}, script);
    for (const json &probe : {phone, desk}) {
        expect_sound(probe);
        for (const auto &[key, value] : data.at("figures").items())
            if (probe.at("figures").contains(key)) {
                EXPECT_EQ(digits(probe.at("figures").at(key)), value.dump()) << key;
            }
        EXPECT_GE(probe.at("figures").size(), 8U);
        EXPECT_EQ(probe.at("drawings"), 3);
        EXPECT_EQ(probe.at("resets"), data.at("figures").at("resets"));
        EXPECT_EQ(probe.at("faults"), data.at("figures").at("faults_met"));
        EXPECT_EQ(probe.at("rows"), data.at("traffic").size());
        EXPECT_EQ(probe.at("bars"), std::min<std::size_t>(12, data.at("traffic").size()));
        EXPECT_LE(probe.at("widest"), probe.at("width"));
    }
    EXPECT_EQ(phone.at("width"), phone_width);
    EXPECT_NE(phone.at("background"), desk.at("background")) << "light and dark differ";
    EXPECT_EQ(data.at("figures").at("installations"), 1);
    EXPECT_EQ(data.at("figures").at("installations_failed"), 0);
    EXPECT_EQ(data.at("figures").at("resets"), 3);
    EXPECT_GE(data.at("figures").at("feeds"), 8) << "a reboot feeds, too";
}

TEST(ReportPage, Can_be_read_without_its_script)
{
    NEEDS_A_BROWSER;
    const Folder folder;
    const std::string page = life_page();
    const json data = data_of(page);
    std::ofstream(folder.path("life.html")) << page;
    View view;
    view.script = false;
    const json probe = probed(folder.path("life.html"), view);
    EXPECT_EQ(probe.at("drawings"), 0) << "the script did not run";
    const std::string text = probe.at("text");
    EXPECT_THAT(text, HasSubstr(data.at("figures").at("boots").dump() + "\n"));
    for (const char *const words :
         {"boots", "driver requests", "soft reset", "0x10100d9", "start-up flash", "board role"})
        EXPECT_THAT(text, HasSubstr(words));
}
