// SPDX-License-Identifier: Apache-2.0
// Watchdog feeding: intervals and gaps. The watchdog waits for a second.
#include "vboard/report/past.hpp"

using namespace past;

namespace
{

constexpr std::uint32_t enable = 0x10002808;

using Feeding = Past;

TEST_F(Feeding, TellsIntervals)
{
    up(start);
    for (int i = 0; i <= 4; ++i)
        feed(start + 1 + i * 0.25);
    const json watchdog = facts().at("watchdog");
    EXPECT_EQ(watchdog["feeds"], 5);
    EXPECT_EQ(watchdog["median_ms"], 250);
    EXPECT_EQ(watchdog["limit_ms"], 1000);
    EXPECT_EQ(watchdog["intervals"].size(), 4U);
    EXPECT_EQ(watchdog["gaps"], json::array());
}

TEST_F(Feeding, CallsALateFeedAGap)
{
    up(start);
    feed(start + 1);
    feed(start + 1.4);
    feed(start + 2.2);
    const json watchdog = facts().at("watchdog");
    ASSERT_EQ(watchdog["gaps"].size(), 1U);
    EXPECT_NEAR(watchdog["gaps"][0]["ms"].get<double>(), 800, 0.01);
    EXPECT_EQ(watchdog["gaps"][0]["bitten"], false);
    EXPECT_EQ(facts().at("figures")["late_feeds"], 1);
}

TEST_F(Feeding, TellsTheGapAfterWhichItBit)
{
    up(start);
    feed(start + 1);
    reset(start + 2.1, "watchdog reset");
    feed(start + 60);
    const json gaps = facts().at("watchdog")["gaps"];
    ASSERT_EQ(gaps.size(), 1U) << "a boot begins anew";
    EXPECT_EQ(gaps[0]["bitten"], true);
    EXPECT_EQ(gaps[0]["to"], start + 2.1);
}

TEST_F(Feeding, HoldsTimeOffAgainstNobody)
{
    up(start);
    feed(start + 1);
    set(start + 1.2, enable, 0);
    set(start + 30, enable, 1);
    feed(start + 30.1);
    down(start + 31);
    up(start + 100);
    feed(start + 101);
    EXPECT_EQ(facts().at("watchdog")["gaps"], json::array());
    EXPECT_EQ(facts().at("watchdog")["switches"].size(), 2U);
}

TEST_F(Feeding, GoesByTheThresholdThatWasSet)
{
    up(start);
    Event threshold;
    threshold.op = vboard::Op::write;
    threshold.device = "/proc/wdt";
    threshold.what = "wdt set threshold";
    threshold.sent = 100;
    event(start + 1, threshold);
    feed(start + 2);
    feed(start + 4);
    EXPECT_EQ(facts().at("watchdog")["gaps"], json::array());
    EXPECT_EQ(facts().at("watchdog")["limit_ms"], 10000);
}

} // namespace
