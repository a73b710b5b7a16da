// SPDX-License-Identifier: Apache-2.0
// Whether the TPM is active and whether it is there, as the board-support library tells.
#include "trust/tpm_fixture.hpp"

#include <cerrno>

namespace test
{
namespace
{

constexpr std::uint32_t results[] = {0,          1,          2,          0x2710,    0x80000000,
                                     0xfffffff1, cannot_ask, 0xfffffff3, 0xffffffff};
constexpr std::uint32_t statuses[] = {0, 1, 2, 0x100, 0x80000000, 0xffffffff};

// One of the two questions.
struct Question {
    const char *name;
    const char *function;
    std::uint32_t (*ask)();
    std::uint32_t good;
    Said (*told)(std::uint32_t result, std::uint32_t status);
};
void PrintTo(const Question &question, std::ostream *out)
{
    *out << question.name;
}

class TpmStatusTest : public TpmTest, public testing::WithParamInterface<Question>
{
  protected:
    const Question &question = GetParam();

    void expect(std::uint32_t answer, const Said &said)
    {
        EXPECT_EQ(heard([&] { EXPECT_EQ(question.ask(), answer); }), said);
    }
    void expect_answer(std::uint32_t result, std::uint32_t status)
    {
        SCOPED_TRACE(text("result 0x%x, status 0x%x", result, status));
        give(question.function, result, status);
        const std::uint32_t good = result == 0 && status == question.good ? 1 : 0;
        expect(result == cannot_ask ? cannot_ask : good, question.told(result, status));
        expect_asked();
        EXPECT_TRUE(operations().empty());
    }
};

TEST_P(TpmStatusTest, EachResultWithEachStatus)
{
    for (std::uint32_t result : results)
        for (std::uint32_t status : statuses)
            expect_answer(result, status);
}

TEST_P(TpmStatusTest, AFirstAnswerThatIsNoneIsReportedToo)
{
    expect_answer(cannot_ask, 5);
    expect_answer(0, question.good);
}

TEST_P(TpmStatusTest, AFirstRefusalIsReportedWithItsStatus)
{
    expect_answer(7, question.good);
    expect_answer(7, 1 - question.good);
}

TEST_P(TpmStatusTest, AnAnswerIsReportedOnceInAProcess)
{
    give(question.function, 0, 1);
    const Said first = heard([&] { question.ask(); });
    EXPECT_EQ(first, question.told(0, 1));
    for (int i = 0; i < 3; ++i)
        EXPECT_EQ(heard([&] { question.ask(); }), nothing());
}

INSTANTIATE_TEST_SUITE_P(
    Both, TpmStatusTest,
    testing::Values(Question{"Active", active_function, DrvBootGetTpmActiveStatus, 1, active_told},
                    Question{"Online", online_function, DrvBootGetTpmBoardType, 0, online_told}),
    [](const auto &each) { return each.param.name; });

// ---- what stands in the way of asking --------------------------------------------------------------------

// The ways in which nobody can be asked.
enum class Way { no_file, spoilt, no_function };

class TpmHindranceTest : public TpmTest
{
  protected:
    void expect_hindrance(std::uint32_t (*ask)(), const std::string &function, Way way, const Said &said)
    {
        SCOPED_TRACE(static_cast<int>(way));
        if (way == Way::no_file)
            fail_libc("dlopen", ENOENT);
        else if (way == Way::spoilt)
            spoil_front(drv_basic);
        else
            give_another(function);
        EXPECT_EQ(heard([&] { EXPECT_EQ(ask(), cannot_ask); }), said);
        EXPECT_EQ(asked, 0u);
        expect_one_use(drv_basic, 10, way == Way::no_function, false);
    }
    void expect_active_hindrance(Way way)
    {
        expect_hindrance(
            DrvBootGetTpmActiveStatus, active_function, way,
            information(way == Way::no_function
                            ? "[drv_boot]dlsym func:drv_board_get_tpm_active_status unsuccessfully.\n"
                            : "[drv_boot]dlopen libdrv_basic.so unsuccessfully.\n"));
    }
    void expect_online_hindrance(Way way)
    {
        const std::string line =
            way == Way::no_function
                ? text("[drv_boot]pid:%d dlsym func:drv_board_get_tpm_online_status unsuccessfully.\n",
                       getpid())
                : text("[drv_boot]pid:%d dlopen libdrv_basic.so unsuccessfully.\n", getpid());
        expect_hindrance(DrvBootGetTpmBoardType, online_function, way,
                         once(said_already.online, information(line)));
    }
    void expect_online_answer()
    {
        give(online_function, 0, 0);
        EXPECT_EQ(heard([] { EXPECT_EQ(DrvBootGetTpmBoardType(), 1u); }), online_told(0, 0));
        expect_asked();
    }
};

TEST_F(TpmHindranceTest, TheActiveStatusTellsEachAndTheFirstAnswerStill)
{
    for (int round = 0; round < 2; ++round) {
        for (Way way : {Way::no_file, Way::spoilt, Way::no_function})
            expect_active_hindrance(way);
        give(active_function, 0, 1);
        EXPECT_EQ(heard([] { EXPECT_EQ(DrvBootGetTpmActiveStatus(), 1u); }), active_told(0, 1));
        expect_asked();
    }
}

// The three messages of the online status share one count: the first of them is the last.
TEST_F(TpmHindranceTest, OfTheOnlineStatusAMissingLibraryIsTheOneMessage)
{
    expect_online_hindrance(Way::no_file);
    expect_online_hindrance(Way::no_file);
    expect_online_hindrance(Way::no_function);
    expect_online_answer();
}

TEST_F(TpmHindranceTest, OfTheOnlineStatusASpoiltLibraryIsTheOneMessage)
{
    expect_online_hindrance(Way::spoilt);
    expect_online_hindrance(Way::spoilt);
    expect_online_answer();
    expect_online_hindrance(Way::no_function);
}

TEST_F(TpmHindranceTest, OfTheOnlineStatusAMissingFunctionIsTheOneMessage)
{
    expect_online_hindrance(Way::no_function);
    expect_online_hindrance(Way::no_function);
    expect_online_answer();
    expect_online_hindrance(Way::no_file);
}

TEST_F(TpmHindranceTest, OfTheOnlineStatusAnAnswerIsTheOneMessage)
{
    expect_online_answer();
    expect_online_hindrance(Way::no_file);
    expect_online_hindrance(Way::no_function);
    expect_online_answer();
}

TEST_F(TpmHindranceTest, TheTwoQuestionsCountApart)
{
    expect_online_hindrance(Way::no_file);
    give(active_function, 0, 0);
    EXPECT_EQ(heard([] { EXPECT_EQ(DrvBootGetTpmActiveStatus(), 0u); }), active_told(0, 0));
    EXPECT_EQ(heard([] { EXPECT_EQ(MOX_IsTpm2Type(), 0u); }), no_tpm2_told());
    expect_online_hindrance(Way::no_function);
}

} // namespace
} // namespace test
