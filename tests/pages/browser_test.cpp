// SPDX-License-Identifier: Apache-2.0
// The browser tests see what they are there to see.
#include "pages/browser.hpp"
#include "pages/pages.hpp"

#include <fstream>

using namespace pages;

TEST(Browser, Sees_a_script_error_and_an_overflow_that_were_planted)
{
    NEEDS_A_BROWSER;
    const Folder folder;
    std::string page = life_page();
    const std::string end = "</main>";
    page.insert(page.find(end), "<p style=\"width: 900px\">wide</p><script>nobody.knows();</script>");
    std::ofstream(folder.path("bad.html")) << page;
    const json probe = probed(folder.path("bad.html"), {phone_width});
    EXPECT_EQ(probe.at("errors"), 1);
    EXPECT_THAT(probe.at("first_error"), testing::HasSubstr("nobody"));
    EXPECT_GT(probe.at("scroll_width"), probe.at("width"));
}
