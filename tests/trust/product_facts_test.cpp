// SPDX-License-Identifier: Apache-2.0
// The facts that are fixed, and those that the board's hard type tells.
#include "board/family_rows.hpp"
#include "trust/product_fixture.hpp"

#include <set>

namespace test
{
namespace
{

const std::string ask_type = "get /dev/board0 0x8000001";
constexpr std::uint32_t lengths[] = {0, 1, 3, 4, 8, 64, 0xffffffff};

class ProductFactsTest : public ProductTest
{
};

TEST_F(ProductFactsTest, TheCheckPeriodIsHalfAnHourWhateverTheLength)
{
    for (std::uint32_t length : lengths) {
        expect(period_type, length, 0, number(1800));
        expect_nowhere(period_type, length, 0);
    }
    EXPECT_TRUE(operations().empty());
}

TEST_F(ProductFactsTest, BackupIsNotProtectedAndANullPlaceIsRefused)
{
    for (std::uint32_t length : lengths) {
        expect(protect_type, length, 0, number(0));
        expect_nowhere(protect_type, length, 1, failure("DrvBoot Backup Protect outBuf is invalid.\n"));
    }
    EXPECT_TRUE(operations().empty());
}

TEST_F(ProductFactsTest, LocationMonitorIsSupportedWhateverTheLength)
{
    for (std::uint32_t length : lengths)
        expect(location_type, length, 0, number(1));
    EXPECT_TRUE(operations().empty());
}

TEST_F(ProductFactsTest, LocationMonitorWritesThroughWhateverPointerItGets)
{
    EXPECT_DEATH(ask_nowhere(location_type, 4), "");
}

TEST_F(ProductFactsTest, TheDeclaredEntropyIsEightBytesAndNoMore)
{
    const std::string wanted = number(0x8b439581) + number(0x3fefe76c);
    double value = 0;
    std::memcpy(&value, wanted.data(), sizeof value);
    EXPECT_EQ(value, 0.997);
    for (std::uint32_t length : {8u, 9u, 16u, 63u, 0xffffffffu})
        expect(entropy_type, length, 0, wanted);
    EXPECT_TRUE(operations().empty());
}

TEST_F(ProductFactsTest, TheDeclaredEntropyNeedsEightBytes)
{
    for (std::uint32_t length = 0; length < 8; ++length) {
        const Said said = failure(text("[drvboot] get product rand minentropy invalid len %u.\n\n", length));
        expect(entropy_type, length, 1, "", said);
        expect_nowhere(entropy_type, length, 1, said);
    }
    expect_nowhere(entropy_type, 8, 1);
}

TEST_F(ProductFactsTest, NoRandomBytesAreWrittenWhenNoneAreWanted)
{
    EXPECT_EQ(ask(random_type, 0), 0u);
    EXPECT_EQ(written(), only(""));
    EXPECT_EQ(ask_nowhere(random_type, 0), 0u);
}

TEST_F(ProductFactsTest, AsManyRandomBytesAreWrittenAsAreWanted)
{
    EXPECT_EQ(ask(random_type, 24), 0u);
    EXPECT_EQ(written().substr(25), std::string(39, '#'));
    EXPECT_EQ(written().front(), '#');
    // All 24 places were reached: a byte that stays '#' by chance does not stay so eight times.
    std::set<std::size_t> reached;
    for (int round = 0; round < 8; ++round) {
        ask(random_type, 24);
        for (std::size_t i = 1; i <= 24; ++i)
            if (out[i] != '#')
                reached.insert(i);
    }
    EXPECT_EQ(reached.size(), 24u);
}

// ---- backup ----------------------------------------------------------------------------------------------

struct BackupRow {
    const char *name;
    std::uint32_t type;
    std::uint32_t value;
};
void PrintTo(const BackupRow &row, std::ostream *out)
{
    *out << row.name;
}

class BackupFactTest : public ProductTest, public testing::WithParamInterface<BackupRow>
{
};

TEST_P(BackupFactTest, BoardsWithASingleBackupHaveAValueAndNoOthers)
{
    std::set<std::uint32_t> all = family_candidates();
    all.insert(single_backup_boards.begin(), single_backup_boards.end());
    unsigned with = 0;
    for (std::uint32_t hard_type : all) {
        be(hard_type);
        forget_journal();
        const bool single = holds(single_backup_boards, hard_type) || holds(fixed_box_boards, hard_type);
        with += single;
        expect(GetParam().type, 4, single ? 0 : 2, single ? number(GetParam().value) : "");
        EXPECT_EQ(requests(), std::vector<std::string>{ask_type}) << std::hex << hard_type;
    }
    EXPECT_EQ(with, 7u);
}

TEST_P(BackupFactTest, TheLengthIsNotLookedAt)
{
    be(0x90000713);
    for (std::uint32_t length : lengths)
        expect(GetParam().type, length, 0, number(GetParam().value));
}

TEST_P(BackupFactTest, ABoardThatCannotTellItsTypeFails)
{
    be(0x90000713);
    const Said own = failure("Drvboot get board type unsuccessfully.\n");
    refuse(board0, item_hard_type);
    expect(GetParam().type, 4, minus_one, "",
           failure("Not succeed to get board hardtype,ret=0x2710.\n") + own);
    deny(board0, EACCES);
    expect(GetParam().type, 4, minus_one, "",
           failure("Not succeed to get board hardtype,ret=0xffffffff.\n") + own);
    refuse(board0, item_hard_type);
    expect_nowhere(GetParam().type, 4, minus_one,
                   failure("Not succeed to get board hardtype,ret=0x2710.\n") + own);
    expect(GetParam().type, 4, 0, number(GetParam().value)); // nothing is remembered
}

TEST_P(BackupFactTest, ANullPlaceIsRefusedWhereThereIsAValue)
{
    be(0x90000713);
    expect_nowhere(GetParam().type, 4, 1);
    be(an_mpu);
    expect_nowhere(GetParam().type, 4, 2);
}

INSTANTIATE_TEST_SUITE_P(Rows, BackupFactTest,
                         testing::Values(BackupRow{"ReserveSpace", reserve_type, 10240},
                                         BackupRow{"PackageStart", start_time_type, 1800}),
                         [](const auto &each) { return each.param.name; });

} // namespace
} // namespace test
