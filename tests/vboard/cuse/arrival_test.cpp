// SPDX-License-Identifier: Apache-2.0
// What took a board down, told from what it left.
#include "vboard/cuse/arrival.hpp"

#include "vboard/model/items.hpp"
#include "vboard/model/tlv.hpp"

#include <gtest/gtest.h>

using namespace vboard;

namespace
{

KeptDriver left(bool ended, bool notice, bool watchdog)
{
    KeptDriver kept;
    kept.boot = "before";
    kept.ended = ended;
    if (notice)
        kept.state.notice = Bytes(12);
    kept.state.items["/dev/board0"][item_code::watchdog_enable] = bytes_of(watchdog ? 1 : 0);
    return kept;
}

std::optional<Reset> told(const KeptDriver &kept, Cause cause = Cause::automatic)
{
    return reset_since(kept, "now", Reset::soft, cause);
}

} // namespace

TEST(Arrival, IsAfterARebootOfABoardThatWasSwitchedOffOrGaveNotice)
{
    EXPECT_EQ(told(left(true, false, true)), Reset::soft);
    EXPECT_EQ(told(left(false, true, true)), Reset::soft);
}

TEST(Arrival, IsAfterABiteOrAPowerCutOfOneThatWentWithoutAWord)
{
    EXPECT_EQ(told(left(false, false, true)), Reset::watchdog);
    EXPECT_EQ(told(left(false, false, false)), Reset::power_cut);
    EXPECT_EQ(told(KeptDriver{{}, "before", false}), Reset::power_cut) << "a board without a watchdog";
}

TEST(Arrival, IsNoResetWhileTheMachineStaysUp)
{
    EXPECT_EQ(reset_since(left(true, true, true), "before", Reset::soft, Cause::automatic), std::nullopt);
}

TEST(Arrival, IsAsItIsToldByWhoeverKnows)
{
    const KeptDriver kept = left(true, true, true);
    EXPECT_EQ(told(kept, Cause::nothing), std::nullopt);
    EXPECT_EQ(told(kept, Cause::soft), Reset::soft);
    EXPECT_EQ(told(kept, Cause::cold), Reset::cold);
    EXPECT_EQ(told(kept, Cause::watchdog), Reset::watchdog);
    EXPECT_EQ(told(kept, Cause::power_cut), Reset::power_cut);
    EXPECT_EQ(cause_by_name("power-cut"), Cause::power_cut);
    EXPECT_EQ(cause_by_name("auto"), Cause::automatic);
    EXPECT_THROW(cause_by_name("lightning"), std::runtime_error);
}
