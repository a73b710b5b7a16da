// SPDX-License-Identifier: Apache-2.0
// Where the next traced reset goes: the first two places keep what they have, the third takes all the rest.
#include "reset/reset_test.hpp"

namespace test
{
namespace
{

class TraceSlotTest : public ResetTest
{
  protected:
    char code_name[32] = "#";
    char time_name[32] = "#";

    std::int32_t choose(std::uint32_t length = 32)
    {
        return drvBootGetRstEnvName(code_name, time_name, length);
    }
    // A reading of the variable that fails.
    void unreadable(const std::string &variable)
    {
        vboard::Fault fault;
        fault.request = 0x4501;
        fault.variable = variable;
        fault.error = EIO;
        board.add_fault(fault);
    }
    void expect_place(const std::string &suffix, std::int32_t sum)
    {
        EXPECT_EQ(during([&] { EXPECT_EQ(choose(), sum); }),
                  information("[Board]Get reset codeName[early_reset_code" + suffix +
                              "] timeName[early_reset_time" + suffix + "]."));
        EXPECT_EQ(code_name, "early_reset_code" + suffix);
        EXPECT_EQ(time_name, "early_reset_time" + suffix);
    }
};

TEST_F(TraceSlotTest, TheFirstPlaceIsTakenFirst)
{
    expect_place("", 32);
    EXPECT_EQ(requests(), std::vector<std::string>{"env read early_reset_code"});
}

TEST_F(TraceSlotTest, TheSecondPlaceIsTakenNext)
{
    board.set_boot_env("early_reset_code", "0x1");
    expect_place("1", 34);
    EXPECT_EQ(requests(),
              (std::vector<std::string>{"env read early_reset_code", "env read early_reset_code1"}));
}

TEST_F(TraceSlotTest, TheThirdPlaceIsTakenEverAfter)
{
    board.set_boot_env("early_reset_code", "0x1");
    board.set_boot_env("early_reset_code1", "0x2");
    expect_place("2", 34);
    board.set_boot_env("early_reset_code2", "0x3");
    expect_place("2", 34);
}

TEST_F(TraceSlotTest, AnEmptyVariableIsFree)
{
    board.set_boot_env("early_reset_code", "");
    board.set_boot_env("early_reset_code1", "0x2");
    expect_place("", 32);
    board.set_boot_env("early_reset_code", "0x1");
    board.set_boot_env("early_reset_code1", "");
    expect_place("1", 34);
}

// Only the codes count.
TEST_F(TraceSlotTest, TheTimesAreNotLookedAt)
{
    board.set_boot_env("early_reset_time", "20240301080005");
    board.set_boot_env("early_reset_time1", "20240301080005");
    expect_place("", 32);
    board.set_boot_env("early_reset_code", "0x1");
    expect_place("1", 34);
}

TEST_F(TraceSlotTest, AnUnreadableVariableIsFree)
{
    board.set_boot_env("early_reset_code", "0x1");
    board.set_boot_env("early_reset_code1", "0x2");
    unreadable("early_reset_code");
    expect_place("", 32);
    unreadable("early_reset_code1");
    expect_place("1", 34);
}

// Longer than the buffer it is read into: cut, but taken.
TEST_F(TraceSlotTest, ALongValueIsTaken)
{
    board.set_boot_env("early_reset_code", std::string(200, 'x'));
    expect_place("1", 34);
}

TEST_F(TraceSlotTest, WithoutAnEnvironmentItIsTheFirstPlace)
{
    deny(envinfo0, ENOENT);
    EXPECT_EQ(during([&] { EXPECT_EQ(choose(), 32); }),
              message(1, "\n\r [Getenv_s] Can't open file /dev/envinfo0!\n") +
                  information("[Board]Get reset codeName[early_reset_code] timeName[early_reset_time]."));
}

TEST_F(TraceSlotTest, NamesThatDoNotFitCountAsMinusOneEach)
{
    EXPECT_EQ(choose(17), 32);
    EXPECT_STREQ(code_name, "early_reset_code");
    EXPECT_EQ(during([&] { EXPECT_EQ(choose(16), -2); }),
              information("[Board]Get reset codeName[] timeName[]."));
    board.set_boot_env("early_reset_code", "0x1");
    EXPECT_EQ(choose(17), -2);
    EXPECT_STREQ(time_name, "");
    answer_platform("sprintf_s", -1, 1);
    EXPECT_EQ(choose(), 16);
}

} // namespace
} // namespace test
