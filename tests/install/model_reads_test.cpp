// SPDX-License-Identifier: Apache-2.0
// What each model's predicate reads of the board, in which order, and where it stops.
#include "board/family_rows.hpp"
#include "install/fake_board.hpp"
#include "install/model_rows.hpp"

#include <moxboot/model.h>

#include <gtest/gtest.h>

namespace test
{
namespace
{

using Reads = std::vector<std::string>;

const Reads mode_reads = {"memory lcs_reset_flag", "platform curworkmode", "platform nextworkmode",
                          "set curworkmode"};

const char *second_read(const ModelRow &row)
{
    switch (row.second) {
    case Second::pack_type:
        return "memory pack_type";
    case Second::service_type:
        return "boot product_service_type";
    case Second::logic_id:
        return "logic id";
    case Second::none:
        break;
    }
    return "";
}

class ReadsTest : public testing::Test
{
  protected:
    ReadsTest()
    {
        fake.records_reads = true;
        fake.machine = {0x90020709, 0, 102, 148, 0x32F08200};
    }
    FakeBoard fake;

    Reads reads(Predicate function, std::uint32_t result)
    {
        std::uint8_t flag = 0xAA;
        fake.reads.clear();
        be(&fake);
        const std::uint32_t got = function(&flag, 0);
        be(nullptr);
        EXPECT_EQ(got, result);
        EXPECT_EQ(flag == 0xAA, result != 0);
        return fake.reads;
    }
    Reads plain_reads(const ModelRow &row) const
    {
        Reads expected = {"hard type"};
        if (fake.machine.hard_type && asks_value(row, *fake.machine.hard_type))
            expected.emplace_back(second_read(row));
        return expected;
    }
    // Asks on boards of every hard type.
    void expect_reads(const ModelRow &row, Predicate function, const Reads &then)
    {
        for (std::uint32_t hard_type : all_hard_types()) {
            fake.machine.hard_type = hard_type;
            Reads expected = plain_reads(row);
            expected.insert(expected.end(), then.begin(), then.end());
            EXPECT_EQ(reads(function, 0), expected) << row.name << " on 0x" << std::hex << hard_type;
        }
    }
    void expect_stop(const ModelRow &row, Predicate function)
    {
        fake.machine.hard_type = std::nullopt;
        EXPECT_EQ(reads(function, 0xFFFFFFFF), Reads{"hard type"}) << row.name;
        fake.machine = {0x90000762, 0, std::nullopt, std::nullopt, std::nullopt};
        if (row.second == Second::service_type || row.second == Second::logic_id) {
            EXPECT_EQ(reads(function, 0xFFFFFFFF), plain_reads(row)) << row.name;
        }
    }
};

TEST_F(ReadsTest, APlainPredicateReadsThePackTypeOnItsBoardsAndAllElseOnEveryBoard)
{
    for (const ModelRow &row : model_rows)
        expect_reads(row, row.function, {});
}

TEST_F(ReadsTest, APlainPredicateReadsNothingBehindWhatCannotBeRead)
{
    for (const ModelRow &row : model_rows)
        expect_stop(row, row.function);
}

TEST_F(ReadsTest, InPtnModeTheModeIsAskedAlsoWhenTheModelIsAnother)
{
    for (const PtnRow &row : ptn_rows)
        expect_reads(model(row.model), row.function, mode_reads);
}

TEST_F(ReadsTest, TheModeIsNotAskedWhenTheModelCannotBeTold)
{
    for (const PtnRow &row : ptn_rows)
        expect_stop(model(row.model), row.function);
}

TEST_F(ReadsTest, AModelByACallersListReadsTheHardTypeAndThenTheMode)
{
    Reads both = {"hard type"};
    EXPECT_EQ(reads(DrvBootInstallRunFileKYP467R, 0), both);
    both.insert(both.end(), mode_reads.begin(), mode_reads.end());
    for (std::uint32_t hard_type : {0x90020709u, 0x90000762u}) {
        fake.machine.hard_type = hard_type;
        EXPECT_EQ(reads(DrvBootInstallRunFileKYP467RPtnMode, 0), both);
    }
    fake.machine.hard_type = std::nullopt;
    EXPECT_EQ(reads(DrvBootInstallRunFileKYP467RPtnMode, 10000), Reads{"hard type"});
}

TEST_F(ReadsTest, TheKeyFileRuleReadsAllThreeOnEveryBoard)
{
    for (std::uint32_t hard_type : all_hard_types()) {
        fake.machine.hard_type = hard_type;
        EXPECT_EQ(reads(DrvBoot_KeyFileNoNeedLink, 0),
                  (Reads{"hard type", "boot product_service_type", "logic id"}));
    }
}

TEST_F(ReadsTest, TheKeyFileRuleStopsAtTheFirstThatCannotBeRead)
{
    fake.machine.logic_id = std::nullopt;
    EXPECT_EQ(reads(DrvBoot_KeyFileNoNeedLink, 0xFFFFFFFF),
              (Reads{"hard type", "boot product_service_type", "logic id"}));
    fake.machine.service_type = std::nullopt;
    EXPECT_EQ(reads(DrvBoot_KeyFileNoNeedLink, 0xFFFFFFFF),
              (Reads{"hard type", "boot product_service_type"}));
    fake.machine.hard_type = std::nullopt;
    EXPECT_EQ(reads(DrvBoot_KeyFileNoNeedLink, 0xFFFFFFFF), Reads{"hard type"});
}

TEST_F(ReadsTest, AFailedReadCountsAsOneWhateverItLeavesBehind)
{
    fake.fails_with_text = true;
    std::uint8_t flag = 0xAA;
    std::uint32_t service_type = 99;
    for (const ModelRow &row : model_rows)
        if (row.second == Second::pack_type) {
            fake.machine.hard_type = row.types.front();
            fake.machine.pack_type = row.values.front();
            be(&fake);
            EXPECT_EQ(row.function(&flag, 0), 0u);
            be(nullptr);
            EXPECT_EQ(flag, 0) << row.name;
        }
    be(&fake);
    EXPECT_EQ(DrvBoot_GetProductServiceType(&service_type), 0xFFFFFFFF);
    be(nullptr);
    EXPECT_EQ(service_type, 99u);
}

} // namespace
} // namespace test
