// SPDX-License-Identifier: Apache-2.0
// What the platform asks of the TPM, and whom that question reaches: list, library, variable, in this order.
#include "trust/tpm_fixture.hpp"

#include "trust/trust_boards.hpp"

#include <cerrno>
#include <filesystem>
#include <fstream>

namespace test
{
namespace
{
namespace fs = std::filesystem;

const Said no_environment = message(1, "\n\r [Getenv_s] Can't open file /dev/envinfo0!\n");

// ---- the TPM is active, the TPM is there: two questions of one shape -------------------------------------

struct Question {
    const char *name;
    const char *function;
    std::uint32_t (*ask)();
    std::uint32_t yes;    // its answer
    std::uint32_t good;   // status of the library
    const char *variable; // asked when the library does not say yes
    const char *text;     // what the variable then must be
    bool no_is_answer;    // a no of the library is the answer, too
    Said (*told)(std::uint32_t result, std::uint32_t status);
};
void PrintTo(const Question &question, std::ostream *out)
{
    *out << question.name;
}

class TpmQuestionTest : public TpmTest, public testing::WithParamInterface<Question>
{
  protected:
    const Question &question = GetParam();
    const std::string ask_variable = std::string("env read ") + question.variable;

    void variable(const std::optional<std::string> &value)
    {
        board.set_boot_env(question.variable, value);
    }
    void expect(std::uint32_t answer, const Said &said, const std::vector<std::string> &wanted)
    {
        EXPECT_EQ(heard([&] { EXPECT_EQ(question.ask(), answer); }), said);
        EXPECT_EQ(requests(), wanted);
    }
};

TEST_P(TpmQuestionTest, AYesOfTheLibraryIsTheAnswer)
{
    for (const std::optional<std::string> &value :
         {std::optional<std::string>("no"), std::optional<std::string>()}) {
        variable(value);
        give(question.function, 0, question.good);
        expect(question.yes, question.told(0, question.good), {ask_type});
        expect_asked();
    }
}

TEST_P(TpmQuestionTest, ANoOfTheLibraryIsTheAnswerOrLeavesItToTheVariable)
{
    variable(question.text);
    for (const auto &[result, status] : {std::pair{0u, 1 - question.good},
                                         {0u, 2u},
                                         {1u, question.good},
                                         {0xffffffffu, question.good},
                                         {0x80000000u, 0u}}) {
        give(question.function, result, status);
        if (question.no_is_answer)
            expect(0, question.told(result, status), {ask_type});
        else
            expect(question.yes, question.told(result, status), {ask_type, ask_variable});
        expect_asked();
    }
}

TEST_P(TpmQuestionTest, ALibraryThatCannotAnswerLeavesItToTheVariable)
{
    for (const auto &[value, answer] : {std::pair{question.text, question.yes}, {"other", 0u}}) {
        variable(value);
        give(question.function, cannot_ask, question.good);
        expect(answer, question.told(cannot_ask, question.good), {ask_type, ask_variable});
        expect_asked();
    }
}

TEST_P(TpmQuestionTest, WithoutALibraryTheVariableIsTheAnswer)
{
    const std::string pid = text("pid:%d ", getpid());
    const bool online = question.function == std::string(online_function);
    for (const auto &[value, answer] : {std::pair{question.text, question.yes}, {"other", 0u}}) {
        variable(value);
        fail_libc("dlopen", ENOENT);
        const Said line =
            information("[drv_boot]" + (online ? pid : "") + "dlopen libdrv_basic.so unsuccessfully.\n");
        expect(answer, online ? once(said_already.online, line) : line, {ask_type, ask_variable});
    }
}

TEST_P(TpmQuestionTest, OnBoardsWithoutATpmTheLibraryIsNotAsked)
{
    give(question.function, 0, question.good);
    unsigned ready = 0;
    for (std::uint32_t hard_type : trust_candidates()) {
        SCOPED_TRACE(text("hard type 0x%x", hard_type));
        be(hard_type);
        if (among(tpm_boards, hard_type)) {
            ++ready;
            variable(std::nullopt);
            expect(question.yes, question.told(0, question.good), {ask_type});
            expect_asked();
            continue;
        }
        variable(question.text);
        expect(question.yes, nothing(), {ask_type, ask_variable});
        expect_nobody_asked();
        variable(std::nullopt);
        expect(0, nothing(), {ask_type, ask_variable});
    }
    EXPECT_EQ(ready, 17u);
}

TEST_P(TpmQuestionTest, ABoardThatCannotTellItsTypeHasTheVariable)
{
    give(question.function, 0, question.good);
    for (const auto &[value, answer] : {std::pair{question.text, question.yes}, {"other", 0u}}) {
        variable(value);
        refuse(board0, item_hard_type);
        expect(answer, not_ready_told(), {ask_type, ask_variable});
        expect_nobody_asked();
    }
}

TEST_P(TpmQuestionTest, TheVariableMustBeExactlyTheText)
{
    be(a_line_card);
    const std::string good = question.text;
    std::string capital = good;
    capital[0] = static_cast<char>(std::toupper(capital[0]));
    std::string capitals = good;
    for (char &letter : capitals)
        letter = static_cast<char>(std::toupper(letter));
    variable(good);
    expect(question.yes, nothing(), {ask_type, ask_variable});
    for (const std::string &value :
         {capital, capitals, good + " ", " " + good, good + "\n", good + good, good + "x",
          good.substr(0, good.size() - 1), good + std::string(9 - good.size(), ' '),
          good + std::string(10, '.'), good + std::string(250 - good.size(), '.'), std::string(),
          std::string("1"), std::string("on"), std::string(good == "yes" ? "true" : "yes")}) {
        variable(value);
        expect(0, nothing(), {ask_type, ask_variable});
    }
}

TEST_P(TpmQuestionTest, AVariableThatCannotBeReadSaysNo)
{
    be(a_line_card);
    variable(question.text);
    deny(envinfo0, EACCES);
    expect(0, no_environment, {ask_type});
    vboard::Fault fault;
    fault.device = envinfo0;
    fault.error = EIO;
    board.add_fault(fault);
    expect(0, nothing(), {ask_type, ask_variable});
    expect(question.yes, nothing(), {ask_type, ask_variable}); // nothing is remembered
}

INSTANTIATE_TEST_SUITE_P(Both, TpmQuestionTest,
                         testing::Values(Question{"IsActive", active_function, MOX_IsTpmActived, 1, 1,
                                                  "tpm_is_actived", "true", true, active_told},
                                         Question{"IsThere", online_function, MOX_GetBoardTpmType, 2, 0,
                                                  "brd_is_sp_tpm", "yes", false, online_told}),
                         [](const auto &each) { return each.param.name; });

// ---- TPM 2.0 and the key store ---------------------------------------------------------------------------

class Tpm2Test : public TpmTest
{
  protected:
    void expect_tpm2(std::uint32_t answer)
    {
        EXPECT_EQ(heard([&] { EXPECT_EQ(MOX_IsTpm2Type(), answer); }),
                  answer == 1 ? nothing() : no_tpm2_told());
        EXPECT_TRUE(operations().empty());
        for (const Call &line : calls("syslog"))
            EXPECT_EQ(line.size, 6u);
    }
};

TEST_F(Tpm2Test, IsWhereItsDeviceIsAndItsAbsenceIsToldOnce)
{
    std::ofstream(tpm_device) << "";
    expect_tpm2(1);
    fs::remove(tpm_device);
    expect_tpm2(0);
    EXPECT_TRUE(said_already.tpm2);
    for (int i = 0; i < 3; ++i)
        expect_tpm2(0);
    fs::create_directory(tpm_device);
    expect_tpm2(1);
    fs::remove(tpm_device);
    fs::create_symlink("/dev/nowhere", tpm_device);
    expect_tpm2(0);
}

TEST_F(Tpm2Test, AKeyStoreNeedsATpmAndOneOfItsSecondKind)
{
    be(a_line_card);
    const auto expect_store = [&](std::uint32_t answer, const Said &said) {
        EXPECT_EQ(heard([&] { EXPECT_EQ(MOX_IsSupportKeyStore(), answer); }), said);
        EXPECT_EQ(requests(), (std::vector<std::string>{ask_type, "env read brd_is_sp_tpm"}));
    };
    expect_store(0, nothing()); // the device is then not looked for
    std::ofstream(tpm_device) << "";
    expect_store(0, nothing());
    board.set_boot_env("brd_is_sp_tpm", "yes");
    expect_store(1, nothing());
    fs::remove(tpm_device);
    expect_store(0, no_tpm2_told());
    expect_store(0, no_tpm2_told());
}

TEST_F(Tpm2Test, AKeyStoreTakesTheLibrarysWordForTheTpm)
{
    std::ofstream(tpm_device) << "";
    for (std::uint32_t status : {0u, 1u}) {
        give(online_function, 0, status);
        EXPECT_EQ(heard([&] { EXPECT_EQ(MOX_IsSupportKeyStore(), 1 - status); }), online_told(0, status));
        expect_asked();
    }
}

} // namespace
} // namespace test
