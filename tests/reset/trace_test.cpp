// SPDX-License-Identifier: Apache-2.0
// The trace of a reset in the boot environment.
#include "reset/reset_test.hpp"

namespace test
{
namespace
{

constexpr std::uint32_t a_code = 0x10100d9;

class TraceTest : public ResetTest
{
  protected:
    Said write(std::uint32_t code = a_code, const MoxResetDate &date = a_date)
    {
        return during([&] { WriteResetReasonToEnv(code, &date); });
    }
    static Said chosen(const std::string &suffix = "")
    {
        return information("[Board]Get reset codeName[early_reset_code" + suffix +
                           "] timeName[early_reset_time" + suffix + "].");
    }
    void expect_written(const std::string &suffix, const std::string &code, const std::string &time) const
    {
        EXPECT_EQ(board.boot_env("early_reset_code" + suffix), code);
        EXPECT_EQ(board.boot_env("early_reset_time" + suffix), time);
    }
    void spoil(std::uint32_t request, const std::string &variable = "")
    {
        vboard::Fault fault;
        fault.request = request;
        fault.variable = variable;
        fault.error = EIO;
        board.add_fault(fault);
    }
};

const std::vector<std::string> all_requests = {
    "env read early_reset_code",
    "env write early_reset_code=0x10100d9",
    "env write early_reset_time=20240301080005",
    "env save",
};

TEST_F(TraceTest, CodeAndTimeAreWrittenAndSaved)
{
    EXPECT_EQ(
        write(),
        chosen() +
            information(
                "[Board]Set early_reset_code(0x10100d9) early_reset_time(20240301080005) env success."));
    EXPECT_EQ(requests(), all_requests);
    board.reset(vboard::Reset::power_cut);
    expect_written("", "0x10100d9", "20240301080005");
}

TEST_F(TraceTest, TheFirstTwoTracesStayAndTheThirdPlaceIsOverwritten)
{
    for (std::uint8_t minute = 1; minute <= 4; ++minute) {
        MoxResetDate date = a_date;
        date.minute = minute;
        write(minute, date);
    }
    expect_written("", "0x1", "20240301080105");
    expect_written("1", "0x2", "20240301080205");
    expect_written("2", "0x4", "20240301080405");
    write(5, a_date);
    expect_written("", "0x1", "20240301080105");
    expect_written("1", "0x2", "20240301080205");
    expect_written("2", "0x5", "20240301080005");
}

TEST_F(TraceTest, TheCodeIsHexadecimalWithoutLeadingZeros)
{
    board.set_boot_env("early_reset_code", "x");
    board.set_boot_env("early_reset_code1", "x");
    for (auto [code, shown] :
         std::map<std::uint32_t, std::string>{{0, "0x0"}, {0xab, "0xab"}, {minus_one, "0xffffffff"}}) {
        write(code);
        expect_written("2", shown, "20240301080005");
    }
}

// The hour has a sign in the trace.
TEST_F(TraceTest, AnHourFrom128OnIsNegative)
{
    board.set_boot_env("early_reset_code", "x");
    board.set_boot_env("early_reset_code1", "x");
    for (auto [hour, shown] : std::map<std::uint8_t, std::string>{
             {0, "00"}, {23, "23"}, {127, "127"}, {128, "4294967168"}, {255, "4294967295"}}) {
        write(1, {2024, 3, 1, hour, 0, 5});
        expect_written("2", "0x1", "20240301" + shown + "0005");
    }
    EXPECT_EQ(write(1, {65535, 255, 255, 128, 255, 255}),
              chosen("2") + information("[Board]Set early_reset_code2(0x1) "
                                        "early_reset_time2(655352552554294967168255255) env success."));
}

TEST_F(TraceTest, WithoutNamesItGoesOnRegardless)
{
    answer_platform("sprintf_s", -1, 0, 2);
    EXPECT_EQ(write(), information("[Board]Get reset codeName[] timeName[].") +
                           failure("[Board]get env name NOK, return 0x0") +
                           failure("[Board]Set  env NOK, return 0x17"));
    EXPECT_EQ(requests().size(), 4u);
    EXPECT_EQ(requests().back(), "env save");
}

// A sum of 0 is as bad; one of 1 is not.
TEST_F(TraceTest, OnlyNamesOfLessThanOneCharacterAreReported)
{
    answer_platform("sprintf_s", 0, 0, 2);
    Said none = write();
    EXPECT_EQ(none.trace.at(1), (TraceLine{0, 4, "[Board]get env name NOK, return 0x0"}));
    answer_platform("sprintf_s", 0);
    answer_platform("sprintf_s", 1);
    Said one = write();
    EXPECT_EQ(one.trace.size(), 2u);
}

TEST_F(TraceTest, WithoutTextsNothingIsWritten)
{
    answer_platform("sprintf_s", -1, 2, 2);
    EXPECT_EQ(write(), chosen() + failure("[Board]sprintf env[early_reset_code] NOK, return 0xfffffffe"));
    EXPECT_EQ(requests(), std::vector<std::string>{all_requests[0]});
    answer_platform("sprintf_s", 0, 2, 2);
    EXPECT_EQ(write(), chosen() + failure("[Board]sprintf env[early_reset_code] NOK, return 0x0"));
}

TEST_F(TraceTest, OneTextIsEnough)
{
    answer_platform("sprintf_s", -1, 3);
    EXPECT_EQ(write(), chosen() + information("[Board]Set early_reset_code(0x10100d9) early_reset_time() env "
                                              "success."));
    expect_written("", "0x10100d9", "");
}

// The number in the line is the sum of the lengths. The other steps are made all the same.
TEST_F(TraceTest, AFailedStepIsReportedAndTheOthersAreMade)
{
    const Said reported = chosen() + failure("[Board]Set early_reset_code env NOK, return 0x17");
    for (auto [request, variable] : std::vector<std::pair<std::uint32_t, std::string>>{
             {0x4502, "early_reset_code"}, {0x4502, "early_reset_time"}, {0x4503, ""}}) {
        board.set_boot_env("early_reset_code", std::nullopt);
        forget_journal();
        spoil(request, variable);
        EXPECT_EQ(write(), reported) << request << variable;
        EXPECT_EQ(requests(), all_requests);
    }
}

TEST_F(TraceTest, WithoutAnEnvironmentEachStepSaysSo)
{
    deny(envinfo0, ENXIO, 0);
    EXPECT_EQ(write(), all({message(1, "\n\r [Getenv_s] Can't open file /dev/envinfo0!\n"), chosen(),
                            message(1, "\n\r [Setenv_s] Can't open file /dev/envinfo0!\n"),
                            message(1, "\n\r [Setenv_s] Can't open file /dev/envinfo0!\n"),
                            message(2, "\n\r [Saveenv] Can't open file /dev/envinfo0!\n"),
                            failure("[Board]Set early_reset_code env NOK, return 0x17")}));
}

TEST_F(TraceTest, WithoutADateNothingIsDone)
{
    EXPECT_EQ(during([] { EXPECT_EQ(WriteResetReasonToEnv(a_code, nullptr), -1); }), nothing());
    EXPECT_TRUE(operations().empty());
}

} // namespace
} // namespace test
