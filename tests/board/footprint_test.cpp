// SPDX-License-Identifier: Apache-2.0
// The start-up footprint: what is made of its keys.
#include "board/footprint_test.hpp"

#include <algorithm>

namespace test
{
namespace
{

TEST_F(FootprintTest, OneStepOfTwoFillsTheFirstAndEmptiesTheSecond)
{
    parse("t0_s=12\nt0_ms=345\nt0_des=biosrun\n", 2);
    expect_step(0, 12, 345, "biosrun");
    expect_step(1, 0, 0, "");
}

TEST_F(FootprintTest, RecordsBehindTheFirstMissingStepAreNotTouched)
{
    parse(step_text(0, 1, 2, "first"), 4);
    expect_step(0, 1, 2, "first");
    expect_step(1, 0, 0, "");
    expect_untouched(2);
    expect_untouched(3);
}

TEST_F(FootprintTest, NoMoreStepsAreFilledThanAskedFor)
{
    std::string text =
        step_text(0, 1, 2, "first") + step_text(1, 3, 4, "second") + step_text(2, 5, 6, "third");
    write(text);
    records(3);
    during([&] { EXPECT_EQ(MOX_GetBSPRunTime(steps.data(), 2), 0u); });
    expect_step(0, 1, 2, "first");
    expect_step(1, 3, 4, "second");
    expect_untouched(2);
}

TEST_F(FootprintTest, ManyStepsAreReadInOrder)
{
    std::string text;
    for (unsigned i = 0; i < 25; ++i)
        text += step_text(i, 100 + i, i, "s" + std::to_string(i));
    ASSERT_LT(text.size(), 1024u);
    parse(text, 25);
    for (unsigned i = 0; i < 25; ++i)
        expect_step(i, 100 + i, i, "s" + std::to_string(i));
}

TEST_F(FootprintTest, AStepWithoutOneOfItsThreeKeysCountsAsMissing)
{
    const std::string first = step_text(0, 1, 2, "first");
    for (const char *second : {"t1_ms=4\nt1_des=second\n", "t1_s=3\nt1_des=second\n", "t1_s=3\nt1_ms=4\n",
                               "t1_s=3\n", "t1_ms=4\n", "t1_des=second\n", ""}) {
        SCOPED_TRACE(second);
        parse(first + second + step_text(2, 5, 6, "third"), 3);
        expect_step(0, 1, 2, "first");
        expect_step(1, 0, 0, "");
        expect_untouched(2);
    }
}

TEST_F(FootprintTest, AnEmptyFileHasNoSteps)
{
    parse("", 2);
    expect_step(0, 0, 0, "");
    expect_untouched(1);
}

// A step's keys are looked for behind the description key of the step before.
TEST_F(FootprintTest, KeysThatStandBeforeTheLastDescriptionAreNotFound)
{
    parse("t1_s=3\nt1_ms=4\nt0_s=1\nt0_ms=2\nt0_des=first\nt1_des=second\n", 2);
    expect_step(0, 1, 2, "first");
    expect_step(1, 0, 0, "");
}

TEST_F(FootprintTest, TheThreeKeysOfAStepMayStandInAnyOrder)
{
    parse("t0_des=first\nt0_ms=2\nt0_s=1\n", 1);
    expect_step(0, 1, 2, "first");
}

TEST_F(FootprintTest, TheFirstOfTwoLikeKeysCounts)
{
    parse("t0_s=1\nt0_s=9\nt0_ms=2\nt0_ms=9\nt0_des=first\nt0_des=ninth\n", 1);
    expect_step(0, 1, 2, "first");
}

TEST_F(FootprintTest, KeysOfStepsWithTwoDigitsAreNoKeysOfStepsWithOne)
{
    parse(step_text(0, 1, 2, "zero") + step_text(11, 7, 8, "eleven") + step_text(1, 3, 4, "one"), 2);
    expect_step(0, 1, 2, "zero");
    expect_step(1, 3, 4, "one");
    // ... and a footprint that has only the former lacks the latter.
    parse(step_text(0, 1, 2, "zero") + step_text(11, 7, 8, "eleven"), 2);
    expect_step(1, 0, 0, "");
}

TEST_F(FootprintTest, AKeyIsFoundWhereverItStands)
{
    parse("boot t0_s=1 t0_ms=2 at0_des=free text", 1);
    expect_step(0, 1, 2, "free text");
}

TEST_F(FootprintTest, KeysInsideADescriptionCount)
{
    parse("t0_s=1\nt0_ms=2\nt0_des=then t1_s=3 t1_ms=4 t1_des=x\n", 2);
    expect_step(0, 1, 2, "then t1_s=3 t1_ms=4 t1_des=x");
    expect_step(1, 3, 4, "x");
}

TEST_F(FootprintTest, NumbersAreDecimal)
{
    parse("t0_s=010\nt0_ms=0x10\nt0_des=a\nt1_s=4294967295\nt1_ms= "
          "7ms\nt1_des=b\nt2_s=none\nt2_ms=\nt2_des=c\n",
          3);
    expect_step(0, 10, 0, "a");
    expect_step(1, 4294967295, 7, "b");
    EXPECT_EQ(steps[2].seconds, 0u);
    EXPECT_STREQ(steps[2].description, "c");
}

TEST_F(FootprintTest, ADescriptionEndsAtTheFirstLineEnd)
{
    for (const char *rest : {"\n", "\r\n", "\r", "\n\r", "\nmore", "\rmore", ""}) {
        SCOPED_TRACE(rest);
        parse(std::string("t0_s=1\nt0_ms=2\nt0_des=seven77") + rest, 1);
        expect_step(0, 1, 2, "seven77");
    }
}

TEST_F(FootprintTest, ADescriptionEndsAtTheEndOfText)
{
    std::string text("t0_s=1\nt0_ms=2\nt0_des=seven\0rest\n", 32);
    parse(text, 2);
    expect_step(0, 1, 2, "seven");
    expect_step(1, 0, 0, "");
}

TEST_F(FootprintTest, ADescriptionMayBeEmpty)
{
    for (const char *end : {"\n", "\r\n", ""}) {
        parse(std::string("t0_s=1\nt0_ms=2\nt0_des=") + end, 1);
        expect_step(0, 1, 2, "");
    }
}

TEST_F(FootprintTest, ADescriptionIsCutAt31Characters)
{
    const std::string letters = "abcdefghijklmnopqrstuvwxyz0123456789";
    for (std::size_t length : {30u, 31u, 32u, 36u}) {
        parse(step_text(0, 1, 2, letters.substr(0, length)) + step_text(1, 3, 4, "next"), 2);
        expect_step(0, 1, 2, letters.substr(0, std::min<std::size_t>(length, 31)));
        expect_step(1, 3, 4, "next");
    }
}

} // namespace
} // namespace test
