// SPDX-License-Identifier: Apache-2.0
// The page itself: whole in one file, and safe from what it tells of.
#include "tools/page/page.hpp"
#include "vboard/report/past.hpp"

#include <regex>

using namespace past;
using testing::HasSubstr;
using testing::Not;

namespace
{

using Markup = Past;

std::string between(const std::string &text, const std::string &begin, const std::string &end)
{
    const std::size_t from = text.find(begin);
    EXPECT_NE(from, std::string::npos) << begin;
    const std::size_t start = from + begin.size();
    return text.substr(start, text.find(end, start) - start);
}

TEST_F(Markup, CarriesItsDataInOneBlock)
{
    up(start);
    get(start + 1, 0x10002987);
    const json facts = Past::facts();
    const std::string page = vboard::report::markup(facts);
    EXPECT_EQ(json::parse(between(page, "<script id=\"data\" type=\"application/json\">", "</script>")),
              facts);
}

TEST_F(Markup, LetsNoValueBreakOut)
{
    const std::string evil = "</script><script>alert(1)</script><!-- & \" '";
    profile_.description = evil;
    life(start, "fault", {{"fault", {{"op", evil}, {"device", evil}}}});
    const std::string page = vboard::report::markup(facts());
    EXPECT_THAT(page, Not(HasSubstr("alert(1)</script>")));
    EXPECT_THAT(page, Not(HasSubstr("<!--")));
    EXPECT_THAT(page, HasSubstr("&lt;/script&gt;&lt;script&gt;alert(1)"));
    const std::string data = between(page, "type=\"application/json\">", "</script>");
    EXPECT_EQ(json::parse(data).at("description"), evil);
}

TEST_F(Markup, FetchesNothing)
{
    up(start);
    const std::string page = vboard::report::markup(facts());
    EXPECT_FALSE(std::regex_search(page, std::regex("(src|href)=|@import|url\\(|fetch\\(|XMLHttpRequest")));
    EXPECT_THAT(page, HasSubstr("default-src 'none'"));
    EXPECT_THAT(page, HasSubstr("name=\"viewport\" content=\"width=device-width"));
}

TEST_F(Markup, HasTheKeyFiguresWithoutItsScript)
{
    up(start);
    for (int i = 0; i < 1234; ++i)
        get(start + 1 + i * 0.001, 0x10002987);
    reset(start + 10, "soft reset", 0x10100d9);
    const std::string page = vboard::report::markup(facts());
    EXPECT_THAT(page, HasSubstr("<dd data-figure=\"requests\">1,234</dd>"));
    EXPECT_THAT(page, HasSubstr("<dd data-figure=\"boots\">2</dd>"));
    EXPECT_THAT(page, HasSubstr("0x10100d9"));
    EXPECT_THAT(page, HasSubstr("2023-11-14 22:13:20"));
}

TEST(ScriptData, StaysTheSameJson)
{
    const json value = {{"a", "</script> <!-- & \xe2\x80\xa8 \xe2\x80\xa9 \\u003c"}};
    const std::string data = page::script_data(value.dump());
    EXPECT_THAT(data, Not(HasSubstr("<")));
    EXPECT_THAT(data, Not(HasSubstr("&")));
    EXPECT_THAT(data, Not(HasSubstr("\xe2\x80\xa8")));
    EXPECT_EQ(json::parse(data), value);
}

} // namespace
