// SPDX-License-Identifier: Apache-2.0
// Setting the clock, and the time that the boot environment keeps. The machine's own clock is out of reach.
#include "support/board_test.hpp"
#include "trust/system_time_clock.hpp"

#include <cerrno>

namespace test
{
namespace
{

using testing::ElementsAre;
using testing::IsEmpty;

constexpr std::uint32_t item_active = 0x10002982;
constexpr const char *variable = "board_system_time";

class SystemTimeTest : public BoardTest
{
  protected:
    void SetUp() override
    {
        BoardTest::SetUp();
        if (!clock_is_guarded()) {
            std::fputs("the clock is not guarded: these tests would set the machine's\n", stderr);
            std::_Exit(1);
        }
        clock_settings.clear();
        clock_setting_error = 0;
        board.set_item(board0, item_active, 0);
        forget_journal();
    }
    void expect(std::int32_t seconds, std::int32_t microseconds, std::uint32_t result, const Said &said)
    {
        clock_settings.clear();
        forget_journal();
        EXPECT_EQ(during([&] { EXPECT_EQ(MOX_PdtSetSystemTime(seconds, microseconds), result); }), said);
    }
    static ClockSetting set_to(std::int32_t seconds, std::int32_t microseconds)
    {
        return {seconds, microseconds, false};
    }
    static Said line(const char *what, int seconds, int microseconds, const char *kept)
    {
        const std::string words =
            text("%s iSec = %d, iUsec = %d, buf = %s\r\n\n", what, seconds, microseconds, kept);
        return what[1] == 'O' ? information(words) : failure(words);
    }
    static Said kept(int seconds, int microseconds)
    {
        return line("[OK] MOX_PdtSetSystemTime", seconds, microseconds, std::to_string(seconds).c_str());
    }
    void fault(std::uint32_t request)
    {
        vboard::Fault refused;
        refused.device = envinfo0;
        refused.request = request;
        refused.error = EIO;
        board.add_fault(refused);
    }
    std::vector<std::string> changes() const
    {
        std::vector<std::string> some;
        for (const std::string &request : requests())
            if (request.compare(0, 3, "env") == 0)
                some.push_back(request);
        return some;
    }
};

TEST_F(SystemTimeTest, TheClockIsSetAndTheSecondsAreKept)
{
    expect(1700000000, 250000, 0, kept(1700000000, 250000));
    EXPECT_THAT(clock_settings, ElementsAre(set_to(1700000000, 250000)));
    EXPECT_EQ(board.boot_env(variable), "1700000000");
    EXPECT_THAT(changes(), ElementsAre("env write board_system_time=1700000000", "env save"));
}

TEST_F(SystemTimeTest, SecondsAreKeptInDecimalAndMicrosecondsAreNot)
{
    for (std::int32_t seconds : {0, 1, 7, 10, 1000000, 0x7fffffff}) {
        for (std::int32_t microseconds : {0, 1, 999999, 1000000, 0x7fffffff}) { // not judged here
            expect(seconds, microseconds, 0, kept(seconds, microseconds));
            EXPECT_THAT(clock_settings, ElementsAre(set_to(seconds, microseconds)));
            EXPECT_EQ(board.boot_env(variable), std::to_string(seconds));
        }
    }
    EXPECT_EQ(board.boot_env(variable), "2147483647");
}

TEST_F(SystemTimeTest, WhatIsKeptSurvivesARestart)
{
    board.set_boot_env(variable, "1");
    expect(86400, 0, 0, kept(86400, 0));
    board.reset(vboard::Reset::power_cut);
    EXPECT_EQ(board.boot_env(variable), "86400");
}

TEST_F(SystemTimeTest, NegativeTimesAreRefusedSilently)
{
    for (auto [seconds, microseconds] :
         {std::pair{-1, 0}, {0, -1}, {-1, -1}, {INT32_MIN, 5}, {5, INT32_MIN}}) {
        expect(seconds, microseconds, 1, nothing());
        EXPECT_THAT(clock_settings, IsEmpty());
        EXPECT_THAT(operations(), IsEmpty());
    }
}

TEST_F(SystemTimeTest, TheFirstThreeFailuresOfAProcessAreReported)
{
    // Refusals and successes do not count.
    expect(-1, 0, 1, nothing());
    expect(5, 6, 0, kept(5, 6));
    board.set_boot_env(variable, "old");
    for (int failures = 1; failures <= 5; ++failures) {
        clock_setting_error = failures % 2 == 0 ? EPERM : EINVAL;
        expect(100 + failures, failures, 1,
               failures <= 3 ? line("[ERR] settimeofday", 100 + failures, failures, "") : nothing());
        EXPECT_THAT(clock_settings, ElementsAre(set_to(100 + failures, failures)));
        EXPECT_THAT(operations(), IsEmpty()) << "the board was asked";
        EXPECT_EQ(board.boot_env(variable), "old");
        clock_setting_error = 0;
        if (failures == 2)
            expect(7, 8, 0, kept(7, 8));
        board.set_boot_env(variable, "old");
    }
    expect(9, 9, 0, kept(9, 9)); // only the failures of the clock fell silent
    fault(DRVBOOT_ENV_SAVE);
    expect(9, 9, 1, failure("[ERR] Cant't saveenv \r\n\n"));
}

TEST_F(SystemTimeTest, ABoardInHardActiveStateOneKeepsNothing)
{
    board.set_item(board0, item_active, 1);
    board.set_boot_env(variable, "1234");
    expect(1700000000, 5, 0, nothing());
    EXPECT_THAT(clock_settings, ElementsAre(set_to(1700000000, 5)));
    EXPECT_THAT(changes(), IsEmpty());
    EXPECT_EQ(board.boot_env(variable), "1234");
}

TEST_F(SystemTimeTest, ABoardInAnyOtherStateKeepsTheSeconds)
{
    for (std::uint32_t state : {0u, 2u, 3u, 0x101u, 0xffffffffu}) {
        board.set_item(board0, item_active, state);
        const int seconds = 1000 + static_cast<int>(state % 100);
        expect(seconds, 0, 0, kept(seconds, 0));
        EXPECT_EQ(board.boot_env(variable), std::to_string(seconds));
    }
}

TEST_F(SystemTimeTest, ALineCardKeepsTheSeconds)
{
    be(a_line_card);
    board.set_item(board0, item_active, 1); // is not asked for it
    expect(77, 0, 0, kept(77, 0));
    EXPECT_EQ(board.boot_env(variable), "77");
}

TEST_F(SystemTimeTest, WithoutAHardActiveStateTheClockIsSetAndNothingKept)
{
    refuse(board0, item_active);
    board.set_boot_env(variable, "1234");
    Said said;
    clock_settings.clear();
    said = during([] { EXPECT_EQ(MOX_PdtSetSystemTime(5, 6), 1u); });
    ASSERT_EQ(said.trace.size(), 1u) << "the query's own report, and no other";
    EXPECT_EQ(said, failure(said.trace[0].text));
    EXPECT_EQ(said.trace[0].text.find("Drvboot get board hard active state not success"), 0u);
    EXPECT_THAT(clock_settings, ElementsAre(set_to(5, 6)));
    EXPECT_THAT(changes(), IsEmpty());
    EXPECT_EQ(board.boot_env(variable), "1234");
}

TEST_F(SystemTimeTest, TheClockIsSetBeforeTheBoardIsAsked)
{
    deny(board0, ENODEV, 10);
    during([] { EXPECT_EQ(MOX_PdtSetSystemTime(5, 6), 1u); });
    EXPECT_THAT(clock_settings, ElementsAre(set_to(5, 6)));
}

TEST_F(SystemTimeTest, AVariableThatCannotBeSetIsReported)
{
    board.set_boot_env(variable, "1234");
    fault(DRVBOOT_ENV_WRITE);
    expect(55, 66, 1, line("[ERR] MOX_PdtSetSystemTime", 55, 66, "55"));
    EXPECT_EQ(changes().size(), 1u) << "nothing is saved";
    deny(envinfo0, EACCES);
    expect(55, 66, 1,
           message(1, "\n\r [Setenv_s] Can't open file /dev/envinfo0!\n") +
               line("[ERR] MOX_PdtSetSystemTime", 55, 66, "55"));
    EXPECT_THAT(changes(), IsEmpty());
    EXPECT_EQ(board.boot_env(variable), "1234");
}

TEST_F(SystemTimeTest, AnEnvironmentThatCannotBeSavedIsReported)
{
    fault(DRVBOOT_ENV_SAVE);
    expect(55, 66, 1, failure("[ERR] Cant't saveenv \r\n\n"));
    EXPECT_THAT(changes(), ElementsAre("env write board_system_time=55", "env save"));
    vboard::Fault denied;
    denied.op = vboard::Op::open;
    denied.device = envinfo0;
    denied.error = EACCES;
    denied.skip = 1;
    board.add_fault(denied);
    expect(55, 66, 1,
           message(2, "\n\r [Saveenv] Can't open file /dev/envinfo0!\n") +
               failure("[ERR] Cant't saveenv \r\n\n"));
}

TEST_F(SystemTimeTest, FixedAnswersAreFixed)
{
    EXPECT_EQ(during([] {
                  EXPECT_EQ(DEV_HardwareOmPosition(), 2u);
                  EXPECT_EQ(MOX_GetHardMngMode(), 0u);
              }),
              nothing());
    EXPECT_THAT(operations(), IsEmpty());
}

} // namespace
} // namespace test
