// SPDX-License-Identifier: Apache-2.0
// Every item under every name: what is asked, what each kind of answer comes to, and what is said of it.
#include "board/hard_type_lists.hpp"
#include "board/item_test.hpp"

namespace test
{

void PrintTo(const ItemRow &row, std::ostream *out)
{
    *out << row.name;
}

namespace
{

class MpuItemTest : public ItemTest
{
};

class EveryBoardsItemTest : public ItemTest
{
};

class ItemWithOutputTest : public ItemTest
{
};

TEST_P(ItemTest, AnswersAsTheValueSays)
{
    ASSERT_FALSE(row.answers.empty());
    for (const Answer &answer : row.answers) {
        SCOPED_TRACE(text("value 0x%x", answer.value));
        board.set_item(row.device, row.code, row.set ? untouched : answer.value);
        forget_journal();
        stored = untouched;
        EXPECT_EQ(during([&] { EXPECT_EQ(call(answer.value), answer.result); }), answer.said);
        EXPECT_EQ(stored, answer.stored.value_or(untouched));
        EXPECT_EQ(requests(), expected_requests(answer.value));
        if (row.set) {
            EXPECT_EQ(board.item(row.device, row.code), row.always_sends.value_or(answer.value));
        }
    }
}

TEST_P(ItemTest, MakesOneOpenOneIoctlAndOneCloseForEachRequest)
{
    board.set_item(row.device, row.code, an_mpu);
    forget_calls();
    forget_journal();
    during([&] { call(); });
    std::vector<std::string> expected;
    for (const std::string &line : expected_requests()) {
        expected.push_back("open " + (line == request() ? row.device : std::string(board0)));
        expected.push_back(line);
    }
    EXPECT_EQ(operations(), expected);
    EXPECT_EQ(calls("open").size(), expected_requests().size());
    EXPECT_EQ(calls("ioctl").size(), expected_requests().size());
    EXPECT_EQ(calls("close").size(), expected_requests().size());
}

TEST_P(ItemTest, ARefusedRequestFails)
{
    vboard::Fault fault = on_item();
    fault.code = 1;
    board.add_fault(fault);
    expect_failure(err_ioctl);
}

TEST_P(ItemTest, AFailedIoctlFails)
{
    vboard::Fault fault = on_item();
    fault.error = EIO;
    board.add_fault(fault);
    expect_failure(err_ioctl);
}

TEST_P(ItemTest, AReplyWithAWrongHeaderFails)
{
    vboard::Fault fault = on_item();
    fault.reply_words[8] = 0x101;
    board.add_fault(fault);
    expect_failure(err_ioctl);
}

TEST_P(ItemTest, AReplyForAnotherItemFails)
{
    vboard::Fault fault = on_item();
    fault.reply_words[20] = 0x1234;
    board.add_fault(fault);
    expect_failure(minus_one,
                   failure(text("Drvboot excute cmd not success for data dismatch, output cmd type "
                                "0x1234, input cmd type 0x%x\n",
                                row.code)));
}

TEST_P(ItemTest, ADeviceThatDoesNotOpenFails)
{
    vboard::Fault fault;
    fault.op = vboard::Op::open;
    fault.device = row.device;
    fault.error = ENXIO;
    fault.skip = row.not_mpu && row.device == board0 ? 1 : 0; // the hard type is read on the same device
    board.add_fault(fault);
    expect_failure(minus_one);
    std::vector<std::string> asked = expected_requests();
    asked.pop_back();
    EXPECT_EQ(requests(), asked);
}

TEST_P(MpuItemTest, ABoardThatIsNoMpuGetsItsAnswerUnasked)
{
    board.set_item(row.device, row.code, 1);
    for (std::uint32_t hard_type : {a_line_card, first_lpu, 0x90000869u, 0u}) {
        SCOPED_TRACE(text("hard type 0x%x", hard_type));
        be(hard_type);
        forget_journal();
        stored = untouched;
        Said said = row.not_mpu->text.empty() ? nothing() : failure(row.not_mpu->text);
        EXPECT_EQ(during([&] { EXPECT_EQ(call(), row.not_mpu->result); }), said);
        EXPECT_EQ(stored, row.not_mpu->stored.value_or(untouched));
        EXPECT_EQ(requests(), (std::vector<std::string>{"get /dev/board0 0x8000001"}));
    }
}

TEST_P(MpuItemTest, ABoardThatCannotTellItsTypeIsAskedLikeAnMpu)
{
    const Answer &answer = row.answers.front();
    board.set_item(row.device, row.code, answer.value);
    be(a_line_card);
    refuse(board0, item_hard_type);
    EXPECT_EQ(during([&] { EXPECT_EQ(call(answer.value), answer.result); }),
              failure("Not succeed to get board hardtype,ret=0x2710.\n") +
                  failure("[DRVBOOT MPU]Unable to get hard type\n") + answer.said);
    EXPECT_EQ(stored, answer.stored.value_or(untouched));
    EXPECT_EQ(requests(), expected_requests(answer.value));
}

TEST_P(EveryBoardsItemTest, AnItemOfEveryBoardIsAskedWithoutAskingForItsType)
{
    const Answer &answer = row.answers.front();
    board.set_item(row.device, row.code, answer.value);
    board.remove_item(board0, item_hard_type);
    EXPECT_EQ(during([&] { EXPECT_EQ(call(answer.value), answer.result); }), answer.said);
    EXPECT_EQ(requests(), std::vector<std::string>{request(answer.value)});
}

TEST_P(ItemWithOutputTest, ANullOutputIsAFailureAndNoCrash)
{
    auto getter = std::get_if<Getter>(&row.function);
    ASSERT_NE(getter, nullptr);
    board.set_item(row.device, row.code, an_mpu);
    during([&] { EXPECT_EQ((*getter)(nullptr), row.fails == Fails::zero ? 0u : minus_one); });
    if (!row.stored_on_failure) {
        EXPECT_THAT(requests(), testing::Not(testing::Contains(request())));
    }
}

template <typename Condition>
auto rows_that(Condition condition)
{
    std::vector<ItemRow> chosen;
    for (const ItemRow &row : item_rows())
        if (condition(row))
            chosen.push_back(row);
    return testing::ValuesIn(chosen);
}

std::string name_of(const testing::TestParamInfo<ItemRow> &info)
{
    return info.param.name;
}

INSTANTIATE_TEST_SUITE_P(All, ItemTest, testing::ValuesIn(item_rows()), name_of);
INSTANTIATE_TEST_SUITE_P(MpuOnly, MpuItemTest,
                         rows_that([](const ItemRow &row) { return row.not_mpu.has_value(); }), name_of);
INSTANTIATE_TEST_SUITE_P(Any, EveryBoardsItemTest, rows_that([](const ItemRow &row) {
                             return !row.not_mpu && !(row.device == board0 && row.code == item_hard_type);
                         }),
                         name_of);
INSTANTIATE_TEST_SUITE_P(Storing, ItemWithOutputTest, rows_that([](const ItemRow &row) {
                             return std::holds_alternative<Getter>(row.function);
                         }),
                         name_of);

} // namespace
} // namespace test
