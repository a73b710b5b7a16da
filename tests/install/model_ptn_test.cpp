// SPDX-License-Identifier: Apache-2.0
// Models in ptn mode: the plain answer, the mode's, and what a failure of either comes to.
#include "install/model_ptn_mode.hpp"
#include "install/model_test.hpp"

namespace test
{
namespace
{

class PtnModelTest : public ModelTest, public testing::WithParamInterface<PtnRow>
{
  protected:
    void TearDown() override
    {
        answer_ptn_mode(std::nullopt);
        ModelTest::TearDown();
    }

    const PtnRow &row = GetParam();
    const ModelRow &plain = model(row.model);
    std::uint8_t flag = 0xAA;

    void expect(std::uint32_t result, std::optional<std::uint8_t> wanted, const PtnAnswer &mode)
    {
        for (std::uint8_t before : flags_before) {
            flag = before;
            answer_ptn_mode(mode);
            EXPECT_EQ(during([&] { EXPECT_EQ(row.function(&flag, 0), result); }), nothing());
            EXPECT_EQ(flag, wanted.value_or(before));
            EXPECT_EQ(ptn_mode_asked(), 1u);
        }
    }
    // What every answer of the mode comes to when the plain answer is `yes` or not.
    void expect_for_every_mode(bool yes)
    {
        expect(0, yes, {0, 1});
        expect(0, 0, {0, 0});
        expect(0, 0, {0, 2}); // only 1 is a yes
        for (std::uint32_t code : {1u, 10000u, 0xFFFFFFFFu})
            if (row.ptn_failure_counts) {
                expect(minus_one, std::nullopt, {code, std::nullopt});
                expect(minus_one, std::nullopt, {code, 1});
            } else {
                expect(0, 0, {code, std::nullopt});
                expect(0, yes, {code, 1});
            }
    }
    void expect_failure(const Said &words)
    {
        for (std::uint8_t before : flags_before) {
            flag = before;
            answer_ptn_mode(PtnAnswer{0, 1});
            EXPECT_EQ(during([&] { EXPECT_EQ(row.function(&flag, 0), minus_one); }), words);
            EXPECT_EQ(flag, before);
            EXPECT_EQ(ptn_mode_asked(), 0u);
        }
    }
};

TEST_P(PtnModelTest, OnItsBoardsTheModeDecides)
{
    be_model(plain);
    for (std::uint32_t hard_type : plain.types) {
        be(hard_type);
        expect_for_every_mode(true);
    }
    for (std::uint32_t hard_type : plain.always) {
        be(hard_type);
        expect_for_every_mode(true);
    }
}

TEST_P(PtnModelTest, OnOtherBoardsItIsANoAndTheModeIsAskedAllTheSame)
{
    be_model(plain);
    be(0x90000762);
    expect_for_every_mode(false);
    be(plain.types.front());
    if (plain.second == Second::pack_type)
        have_pack("113");
    if (plain.second == Second::service_type)
        have_service("12");
    if (plain.second == Second::logic_id)
        have_id(0x32F08206);
    if (plain.second != Second::none)
        expect_for_every_mode(false);
}

TEST_P(PtnModelTest, WhenTheModelCannotBeToldItsWordsAreAllAndTheModeIsNotAsked)
{
    be_model(plain);
    deny(board0, EACCES, 0);
    expect_failure(type_unread("ffffffff") + failure(plain.unread));
    board.clear_faults();
    if (plain.second == Second::service_type) {
        have_service(std::nullopt);
        expect_failure(service_unread);
    }
    if (plain.second == Second::logic_id) {
        refuse(slot3, logic_id_item, 0);
        expect_failure(id_unread("2710") + failure(plain.id_unread + "2710\n"));
    }
}

TEST_P(PtnModelTest, ItsModelIsThePlainOne)
{
    answer_ptn_mode(PtnAnswer{0, 1});
    for (const ModelRow &other : model_rows) {
        be_model(other);
        std::uint8_t is_model = 0xAA;
        EXPECT_EQ(plain.function(&is_model, 0), 0u);
        EXPECT_EQ(row.function(&flag, 0), 0u);
        EXPECT_EQ(flag, is_model) << other.name;
    }
}

TEST_P(PtnModelTest, ASecondArgumentChangesNothing)
{
    answer_ptn_mode(PtnAnswer{0, 1});
    be_model(plain);
    for (std::uintptr_t argument : {std::uintptr_t{1}, ~std::uintptr_t{0}}) {
        EXPECT_EQ(row.function(&flag, argument), 0u);
        EXPECT_EQ(flag, 1);
    }
}

TEST_P(PtnModelTest, ANullFlagIsRefusedUnasked)
{
    answer_ptn_mode(PtnAnswer{0, 1});
    EXPECT_EQ(during([&] { EXPECT_EQ(row.function(nullptr, 0), minus_one); }), nothing());
    EXPECT_TRUE(operations().empty());
    EXPECT_EQ(ptn_mode_asked(), 0u);
}

TEST_P(PtnModelTest, TheModeIsThatOfThePlatformEnvironment)
{
    be_model(plain);
    during([&] {
        for (bool ptn : {true, false, true}) {
            EXPECT_EQ(SetEnv("nextworkmode", ptn ? "ptn_iot" : "base"), 0u);
            EXPECT_EQ(row.function(&flag, 0), 0u);
            EXPECT_EQ(flag, ptn ? 1 : 0);
            char current[256] = {};
            EXPECT_EQ(GetEnv("curworkmode", current), 0u);
            EXPECT_STREQ(current, ptn ? "ptn_iot" : "base");
        }
    });
}

INSTANTIATE_TEST_SUITE_P(Models, PtnModelTest, testing::ValuesIn(ptn_rows),
                         [](const auto &instance) { return std::string(instance.param.name); });

} // namespace
} // namespace test
