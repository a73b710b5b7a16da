// SPDX-License-Identifier: Apache-2.0
// Every model's predicate on every hard type with every value of its second attribute, and what it says when
// the board cannot tell.
#include "board/family_rows.hpp"
#include "install/model_test.hpp"

namespace test
{
namespace
{

// A text in an environment, and the number that it stands for.
struct Text {
    std::string text;
    std::uint32_t number;
};

// The numbers that models of any kind name, and those beside them.
std::set<std::uint32_t> small_numbers()
{
    std::set<std::uint32_t> numbers = {0, 1, 12};
    for (Second named : {Second::pack_type, Second::service_type})
        for (std::uint32_t value : all_values(named))
            numbers.insert({value - 1, value, value + 1});
    return numbers;
}

// Other ways to write a number.
std::vector<Text> texts_of(std::uint32_t number)
{
    const std::string digits = std::to_string(number);
    return {{" \t" + digits, number},
            {"+" + digits, number},
            {digits + " ", number},
            {digits + "x", number},
            {digits + ".9", number},
            {digits + "0", number * 10},
            {"x" + digits, 0},
            {"-" + digits, 0 - number},
            {"0x" + digits, 0},
            {"", 0},
            {"4294967295", 0xffffffff},
            {std::string(255 - digits.size(), '0') + digits, number},
            {std::string(255 - digits.size(), ' ') + digits, number}};
}

std::set<std::uint32_t> ids_beside(std::uint32_t id)
{
    return {id - 1, id + 1, id ^ 0x10, id ^ 0x40, id ^ 0x80, id ^ 0x100, id ^ 0x10000000, id & 0xffff};
}

class PlainModelTest : public ModelTest, public testing::WithParamInterface<ModelRow>
{
  protected:
    const ModelRow &row = GetParam();
    std::uint8_t flag = 0xAA;
    unsigned answers = 0;

    void expect_answer(std::uint32_t hard_type, std::uint32_t value)
    {
        be(hard_type);
        forget_journal();
        flag = flags_before[answers++ % std::size(flags_before)];
        EXPECT_EQ(row.function(&flag, 0), 0u);
        EXPECT_EQ(flag, holds(row, hard_type, value) ? 1 : 0)
            << "hard type 0x" << std::hex << hard_type << " value 0x" << value;
        std::vector<std::string> expected = {ask_type};
        if (row.second == Second::service_type)
            expected.push_back(ask_service);
        if (row.second == Second::logic_id)
            expected.push_back(ask_id);
        EXPECT_EQ(asked(), expected) << "hard type 0x" << std::hex << hard_type;
    }
    void expect_answers_everywhere(std::uint32_t value)
    {
        for (std::uint32_t hard_type : all_hard_types())
            expect_answer(hard_type, value);
    }
    void expect_answers_on_listed(std::uint32_t value)
    {
        for (std::uint32_t type : row.types)
            expect_answer(type, value);
        expect_answer(0x90000762, value);
    }
    void have(const std::string &value)
    {
        row.second == Second::pack_type ? have_pack(value) : have_service(value);
    }
    void expect_all_answers_by_number()
    {
        for (std::uint32_t number : small_numbers()) {
            have(std::to_string(number));
            expect_answers_everywhere(number);
        }
        for (std::uint32_t value : row.values)
            for (const Text &written : texts_of(value)) {
                have(written.text);
                SCOPED_TRACE("\"" + written.text + "\"");
                expect_answers_on_listed(written.number);
            }
    }
    void expect_all_answers_by_id()
    {
        std::set<std::uint32_t> named = all_values(Second::logic_id);
        named.insert({0, 0x32F08206, 0x32F0B040, 0x32F0B0A0, 0x42F0D000});
        for (std::uint32_t id : named) {
            have_id(id);
            expect_answers_everywhere(id);
        }
        for (std::uint32_t value : all_values(Second::logic_id))
            for (std::uint32_t id : ids_beside(value)) {
                have_id(id);
                expect_answers_on_listed(id);
            }
    }
    void expect_all_answers()
    {
        if (row.second == Second::none)
            expect_answers_everywhere(0);
        else if (row.second == Second::logic_id)
            expect_all_answers_by_id();
        else
            expect_all_answers_by_number();
        be_model(row);
        for (std::uint32_t type : row.types)
            for (std::uint32_t other : {type - 1, type + 1, type & 0xffff, type ^ 0x00020000})
                expect_answer(other, row.values.empty() ? 0 : row.values.front());
    }
    void expect_failure(const Said &words)
    {
        for (std::uint8_t before : flags_before) {
            flag = before;
            EXPECT_EQ(during([&] { EXPECT_EQ(row.function(&flag, 0), minus_one); }), words);
            EXPECT_EQ(flag, before);
        }
    }
    Said no_id(const std::string &code) const
    {
        return id_unread(code) + failure(row.id_unread + code + "\n");
    }
};

TEST_P(PlainModelTest, AnswersSilentlyForEveryHardTypeAndValue)
{
    EXPECT_EQ(during([&] { expect_all_answers(); }), nothing());
}

TEST_P(PlainModelTest, HoldsOnItsBoards)
{
    be_model(row);
    for (std::uint32_t hard_type : row.types) {
        be(hard_type);
        EXPECT_EQ(row.function(&flag, 0), 0u);
        EXPECT_EQ(flag, 1) << "hard type 0x" << std::hex << hard_type;
    }
}

TEST_P(PlainModelTest, ASecondArgumentChangesNothing)
{
    be_model(row);
    for (std::uintptr_t argument : {std::uintptr_t{1}, std::uintptr_t{0x80000000}, ~std::uintptr_t{0}}) {
        be(row.types.front());
        EXPECT_EQ(row.function(&flag, argument), 0u);
        EXPECT_EQ(flag, 1);
        be(0x90000762);
        EXPECT_EQ(row.function(&flag, argument), 0u);
        EXPECT_EQ(flag, 0);
    }
}

TEST_P(PlainModelTest, AHardTypeThatCannotBeReadIsReportedAndNothingElseRead)
{
    be_model(row);
    deny(board0, EACCES, 0);
    expect_failure(type_unread("ffffffff") + failure(row.unread));
    board.clear_faults();
    refuse(board0, item_hard_type, 0);
    forget_journal();
    expect_failure(type_unread("2710") + failure(row.unread));
    EXPECT_THAT(requests(), testing::Each(ask_type));
}

TEST_P(PlainModelTest, ASecondAttributeThatIsAbsentOrRefused)
{
    for (std::uint32_t hard_type : {row.types.front(), 0x90000762u}) {
        be_model(row);
        be(hard_type);
        switch (row.second) {
        case Second::none:
            break;
        case Second::pack_type: // another one, not a failure
            answer_platform("bsp_getmemenv_s", 1);
            EXPECT_EQ(during([&] { EXPECT_EQ(row.function(&flag, 0), 0u); }), nothing());
            EXPECT_EQ(flag, 0);
            forget_plans();
            break;
        case Second::service_type:
            have_service(std::nullopt);
            expect_failure(service_unread);
            deny(envinfo0, EACCES, 0);
            expect_failure(message(1, "\n\r [Getenv_s] Can't open file /dev/envinfo0!\n") + service_unread);
            board.clear_faults();
            break;
        case Second::logic_id:
            refuse(slot3, logic_id_item, 0);
            expect_failure(no_id("2710"));
            board.clear_faults();
            deny(slot3, ENODEV, 0);
            expect_failure(no_id("ffffffff"));
            board.clear_faults();
            break;
        }
    }
}

TEST_P(PlainModelTest, ANullFlagIsRefusedUnasked)
{
    EXPECT_EQ(during([&] { EXPECT_EQ(row.function(nullptr, 0), minus_one); }), nothing());
    EXPECT_TRUE(operations().empty());
}

TEST_P(PlainModelTest, EachCallAsksAfresh)
{
    be_model(row);
    for (int round = 0; round < 2; ++round)
        for (std::uint32_t hard_type : {row.types.front(), 0u, row.types.back(), 0x90000762u}) {
            be(hard_type);
            EXPECT_EQ(row.function(&flag, 0), 0u);
            EXPECT_EQ(flag, holds(row.types, hard_type) ? 1 : 0);
        }
}

INSTANTIATE_TEST_SUITE_P(Models, PlainModelTest, testing::ValuesIn(model_rows),
                         [](const auto &instance) { return std::string(instance.param.name); });

TEST_F(ModelTest, WithoutAPackTypeNoModelThatHangsOnOneIsMeant)
{
    for (const ModelRow &row : model_rows)
        for (std::uint32_t hard_type : row.types)
            if (row.second == Second::pack_type) {
                std::uint8_t flag = 0xAA;
                be(hard_type);
                EXPECT_EQ(row.function(&flag, 0), 0u);
                EXPECT_EQ(flag, 0) << row.name;
            }
}

} // namespace
} // namespace test
