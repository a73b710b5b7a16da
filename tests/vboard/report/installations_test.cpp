// SPDX-License-Identifier: Apache-2.0
// Installations, by what the library traces.
#include "vboard/report/past.hpp"

using namespace past;

namespace
{

using Installations = Past;
constexpr std::uint32_t failure = 4;

TEST_F(Installations, AreToldStepByStep)
{
    trace(start, "Drvboot install pkg /tmp/all.tar.xz, Phase 0, install path /opt/moxv8/install\n");
    trace(start + 1, "Drvboot install pkg end\n");
    trace(start + 2, "\nDrvboot install run file begin...\n");
    trace(start + 3, "[DRVBOOT]Succeeded to link /opt/moxv8/install/../data/paf.dat\n");
    trace(start + 3.5, "somebody else's line", failure, 8);
    trace(start + 4, "Drvboot install run file end\n");
    trace(start + 5, "Drvboot pre install os begin\n");
    trace(start + 6, "Drvboot pre install os end(ret is 0x0)\n");
    const json all = facts().at("installations");
    ASSERT_EQ(all.size(), 1U);
    EXPECT_EQ(all[0]["package"], "/tmp/all.tar.xz");
    EXPECT_EQ(all[0]["ok"], true);
    ASSERT_EQ(all[0]["steps"].size(), 3U);
    EXPECT_EQ(all[0]["steps"][0]["name"], "boot files");
    EXPECT_EQ(all[0]["steps"][1]["links"], 1);
    EXPECT_EQ(all[0]["steps"][2]["to"], start + 6);
    EXPECT_EQ(facts().at("figures")["installations_failed"], 0);
}

TEST_F(Installations, TellTheirFailures)
{
    trace(start, "Drvboot install pkg p, Phase 0, install path r\n");
    trace(start + 1, "Drvboot extract Image unsuccessfully\n", failure);
    trace(start + 2, "Drvboot install pkg end\n");
    trace(start + 3, "Drvboot pre install os begin\n");
    trace(start + 4, "Drvboot pre install os end(ret is 0xffffffff)\n");
    const json all = facts().at("installations");
    ASSERT_EQ(all.size(), 1U);
    EXPECT_EQ(all[0]["ok"], false);
    EXPECT_EQ(all[0]["steps"][0]["failures"], json::array({"Drvboot extract Image unsuccessfully"}));
    EXPECT_EQ(all[0]["steps"][1]["failures"].size(), 1U);
    EXPECT_EQ(facts().at("figures")["installations_failed"], 1);
    EXPECT_THAT(vboard::report::markup(facts()),
                testing::HasSubstr("1 failure: Drvboot extract Image unsuccessfully"));
}

TEST_F(Installations, ThatWereCutShortHaveNoEnd)
{
    trace(start, "Drvboot install pkg p, Phase 0, install path r\n");
    trace(start + 1, "Drvboot install pkg q, Phase 0, install path r\n", 1, 9);
    trace(start + 2, "Drvboot install pkg end\n", 1, 9);
    const json all = facts().at("installations");
    ASSERT_EQ(all.size(), 2U);
    EXPECT_EQ(all[0]["steps"][0]["to"], nullptr);
    EXPECT_EQ(all[0]["ok"], false);
    EXPECT_EQ(all[1]["ok"], true);
    EXPECT_THAT(vboard::report::markup(facts()), testing::HasSubstr("cut short"));
}

TEST_F(Installations, OfOneProcessFollowEachOther)
{
    for (const double at : {start, start + 10}) {
        trace(at, "Drvboot install pkg p, Phase 0, install path r\n");
        trace(at + 1, "Drvboot install pkg end\n");
    }
    EXPECT_EQ(facts().at("installations").size(), 2U);
}

} // namespace
