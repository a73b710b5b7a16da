// SPDX-License-Identifier: Apache-2.0
// When the board was on, by which start, to which end.
#include "vboard/report/past.hpp"

using namespace past;

namespace
{

constexpr std::uint32_t role = 0x10002987;

using Boots = Past;

TEST_F(Boots, RunFromASwitchOrAResetToTheNextEnd)
{
    up(start);
    get(start + 1, role);
    reset(start + 10, "soft reset", 0x10100d9);
    get(start + 11, role);
    get(start + 12, role);
    reset(start + 20, "power cut");
    down(start + 30);
    const json boots = facts().at("boots");
    ASSERT_EQ(boots.size(), 3U);
    EXPECT_EQ(boots[0]["start"], "switched on");
    EXPECT_EQ(boots[0]["from"], start);
    EXPECT_EQ(boots[0]["to"], start + 10);
    EXPECT_EQ(boots[0]["end"], "soft reset");
    EXPECT_EQ(boots[0]["requests"], 1);
    EXPECT_EQ(boots[1]["start"], "soft reset");
    EXPECT_EQ(boots[1]["reason"], 0x10100d9);
    EXPECT_EQ(boots[1]["end"], "power cut");
    EXPECT_EQ(boots[1]["requests"], 2);
    EXPECT_EQ(boots[2]["reason"], nullptr);
    EXPECT_EQ(boots[2]["end"], "switched off");
    EXPECT_EQ(boots[2]["to"], start + 30);
    const json figures = facts().at("figures");
    EXPECT_EQ(figures["boots"], 3);
    EXPECT_EQ(figures["resets"], 2);
    EXPECT_EQ(figures["requests"], 3);
}

TEST_F(Boots, GoOnWhereTheBoardIsRunning)
{
    up(start);
    get(start + 1, role);
    const json facts = Past::facts(start + 50, true);
    ASSERT_EQ(facts["boots"].size(), 1U);
    EXPECT_EQ(facts["boots"][0]["to"], nullptr);
    EXPECT_EQ(facts["boots"][0]["end"], "running");
    EXPECT_EQ(facts["to"], start + 50);
}

TEST_F(Boots, ThatNobodyEndedEndWithTheLastThatWasHeardOfThem)
{
    up(start);
    get(start + 4, role);
    up(start + 100);
    get(start + 101, role);
    const json boots = facts().at("boots");
    ASSERT_EQ(boots.size(), 2U);
    EXPECT_EQ(boots[0]["end"], "ended without a word");
    EXPECT_EQ(boots[0]["to"], start + 4);
    EXPECT_EQ(boots[1]["to"], start + 101);
}

TEST_F(Boots, AreFoundInAJournalAlone)
{
    get(start + 1, role);
    reset(start + 2, "watchdog reset");
    const json boots = facts().at("boots");
    ASSERT_EQ(boots.size(), 2U);
    EXPECT_EQ(boots[0]["start"], "first heard of");
    EXPECT_EQ(boots[0]["end"], "watchdog reset");
    EXPECT_EQ(facts().at("figures")["resets"], 1);
}

TEST_F(Boots, TellWhenRequestsCame)
{
    up(start);
    get(start + 1, role);
    for (int i = 0; i < 5; ++i)
        get(start + 99, role);
    down(start + 100);
    const json activity = facts().at("boots")[0]["activity"];
    EXPECT_EQ(activity[0], 1);
    EXPECT_EQ(activity[activity.size() - 1], 5);
    int whole = 0;
    for (const json &part : activity)
        whole += part.get<int>();
    EXPECT_EQ(whole, 6);
}

TEST_F(Boots, OfABoardWithoutAPastAreNone)
{
    const json facts = Past::facts();
    EXPECT_EQ(facts["boots"], json::array());
    EXPECT_EQ(facts["from"], 0);
    EXPECT_THAT(vboard::report::markup(facts), testing::HasSubstr("Nothing is recorded yet."));
}

TEST_F(Boots, AreReadAroundDamagedLinesWhichAreCounted)
{
    up(start);
    line("journal.jsonl", "{\"number\":1,\"time\":17000\n[]\n");
    get(start + 1, role);
    line("life.jsonl", "{\"time\":\"soon\"}\n");
    line("trace.jsonl", "half a li");
    down(start + 2);
    EXPECT_EQ(facts().at("odd_lines"), 4);
    EXPECT_EQ(facts().at("figures")["requests"], 1);
    EXPECT_THAT(vboard::report::markup(facts()), testing::HasSubstr("4 lines could not be read"));
}

} // namespace
