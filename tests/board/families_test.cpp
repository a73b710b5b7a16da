// SPDX-License-Identifier: Apache-2.0
// Every predicate on every hard type with every flash, and what it says when the board cannot tell.
#include "board/family_rows.hpp"
#include "support/board_test.hpp"

#include <algorithm>

namespace test
{
namespace
{

const std::string ask_type = "get /dev/board0 0x8000001";
const std::string ask_flash = "env read BOOTMEDIA";

struct Media {
    std::optional<std::string> value; // of the boot variable
    std::uint32_t flash;
};
const std::vector<Media> all_media = {
    {std::nullopt, 0}, {"NOR", 0}, {"NAND", 1},  {"SFC", 2},
    {"NANDx", 1},      {"sfc", 0}, {"XNAND", 0}, {std::string(256, 'S'), 0},
};

// What a caller may have left in the flag: the walks of installation set it to one or the other.
constexpr std::uint8_t flags_before[] = {0, 1, 0xAA};

constexpr const char *media_names[] = {"NOR", "NAND", "SFC"}; // by flash type

class FamilyTest : public BoardTest, public testing::WithParamInterface<FamilyRow>
{
  protected:
    const FamilyRow &row = GetParam();
    std::uint8_t flag = 0xAA;

    bool is_member(std::uint32_t hard_type) const
    {
        return holds(row.types, hard_type);
    }
    // Asks, and expects an answer, on this board with these media.
    void expect_answer(std::uint32_t hard_type, const Media &media)
    {
        const bool member = is_member(hard_type);
        const bool counts = member && (!row.flashes || row.flashes->count(media.flash) != 0);
        for (std::uint8_t before : flags_before) {
            forget_journal();
            flag = before;
            EXPECT_EQ(row.function(&flag, 0), 0u);
            EXPECT_EQ(flag, counts ? 1 : 0)
                << "hard type 0x" << std::hex << hard_type << " media " << media.value.value_or("(none)");
            std::vector<std::string> asked(row.asked.size(), ask_type);
            if (member && row.flashes)
                asked.push_back(ask_flash);
            EXPECT_EQ(requests(), asked) << "hard type 0x" << std::hex << hard_type;
        }
    }
    // The words of a failure when the questions whose numbers are given fail.
    Said words(const std::vector<std::size_t> &failing, const std::string &code) const
    {
        Said said;
        for (std::size_t question : failing)
            said = said + failure("Not succeed to get board hardtype,ret=0x" + code + ".\n") +
                   failure(row.asked.at(question));
        return row.own.empty() ? said : said + failure(row.own);
    }
    void expect_failure(const std::vector<std::size_t> &failing, const std::string &code)
    {
        for (std::uint8_t before : flags_before) {
            flag = before;
            EXPECT_EQ(during([&] { EXPECT_EQ(row.function(&flag, 0), minus_one); }), words(failing, code));
            EXPECT_EQ(flag, before);
        }
    }
    std::vector<std::size_t> every_question() const
    {
        std::vector<std::size_t> all;
        for (std::size_t i = 0; i < row.asked.size(); ++i)
            all.push_back(i);
        return all;
    }
};

TEST_P(FamilyTest, AnswersSilentlyForEveryHardTypeAndFlash)
{
    EXPECT_EQ(during([&] {
                  for (const Media &media : all_media) {
                      board.set_boot_env("BOOTMEDIA", media.value);
                      for (std::uint32_t hard_type : family_candidates()) {
                          be(hard_type);
                          expect_answer(hard_type, media);
                      }
                  }
              }),
              nothing());
}

TEST_P(FamilyTest, HoldsOnAllBoardsOfItsListWithARightFlash)
{
    board.set_boot_env("BOOTMEDIA", media_names[row.flashes ? *row.flashes->begin() : 0]);
    for (std::uint32_t hard_type : row.types) {
        be(hard_type);
        EXPECT_EQ(row.function(&flag, 0), 0u);
        EXPECT_EQ(flag, 1u) << "hard type 0x" << std::hex << hard_type;
    }
}

TEST_P(FamilyTest, ASecondArgumentChangesNothing)
{
    for (std::uintptr_t argument : {std::uintptr_t{1}, std::uintptr_t{0x80000000}, ~std::uintptr_t{0}})
        for (std::uint32_t hard_type : {row.types.front(), 0x90000762u}) {
            std::uint8_t plain = 0xAA;
            be(hard_type);
            EXPECT_EQ(row.function(&plain, 0), 0u);
            EXPECT_EQ(row.function(&flag, argument), 0u);
            EXPECT_EQ(flag, plain);
        }
}

TEST_P(FamilyTest, ABoardThatCannotBeOpenedIsReportedAndTheFlagLeftAlone)
{
    be(row.types.front());
    deny(board0, EACCES, 0);
    expect_failure(every_question(), "ffffffff");
    EXPECT_TRUE(requests().empty());
}

TEST_P(FamilyTest, ADriverThatRefusesIsReportedAndTheFlagLeftAlone)
{
    be(row.types.front());
    refuse(board0, item_hard_type, 0);
    expect_failure(every_question(), "2710");
    EXPECT_THAT(requests(), testing::Each(ask_type)); // the flash is not asked
}

TEST_P(FamilyTest, OneFailedQuestionOfSeveralIsAFailure)
{
    be(row.types.front());
    for (std::size_t question : every_question()) {
        vboard::Fault fault;
        fault.device = board0;
        fault.item = item_hard_type;
        fault.code = 1;
        fault.skip = static_cast<unsigned>(question);
        board.add_fault(fault);
        forget_journal();
        EXPECT_EQ(during([&] { EXPECT_EQ(row.function(&flag, 0), minus_one); }), words({question}, "2710"));
        EXPECT_EQ(flag, 0xAA);
        EXPECT_EQ(requests(), std::vector<std::string>(row.asked.size(), ask_type)) << "all are asked";
        board.clear_faults();
    }
    EXPECT_EQ(row.function(&flag, 0), 0u); // nothing is remembered
}

TEST_P(FamilyTest, AFlashThatCannotBeReadIsNorFlash)
{
    be(row.types.front());
    board.set_boot_env("BOOTMEDIA", row.flashes && row.flashes->count(1) != 0 ? "NAND" : "SFC");
    deny(envinfo0, EACCES);
    const Said said =
        row.flashes ? message(1, "\n\r [Getenv_s] Can't open file /dev/envinfo0!\n") : nothing();
    EXPECT_EQ(during([&] { EXPECT_EQ(row.function(&flag, 0), 0u); }), said);
    EXPECT_EQ(flag, !row.flashes || row.flashes->count(0) != 0 ? 1 : 0);
}

TEST_P(FamilyTest, ANullFlagIsRefusedUnasked)
{
    EXPECT_EQ(during([&] { EXPECT_EQ(row.function(nullptr, 0), minus_one); }), nothing());
    EXPECT_TRUE(operations().empty());
}

TEST_P(FamilyTest, EachCallAsksAfresh)
{
    if (row.flashes)
        board.set_boot_env("BOOTMEDIA", media_names[*row.flashes->begin()]);
    for (int round = 0; round < 2; ++round)
        for (std::uint32_t hard_type : {row.types.front(), 0u, row.types.back(), 0x90000762u}) {
            be(hard_type);
            EXPECT_EQ(row.function(&flag, 0), 0u);
            EXPECT_EQ(flag, is_member(hard_type) ? 1 : 0);
        }
}

INSTANTIATE_TEST_SUITE_P(Predicates, FamilyTest, testing::ValuesIn(family_rows),
                         [](const auto &instance) { return std::string(instance.param.name); });

// ---- what is known of single boards, and of the lists ----------------------------------------------------

class FamiliesTest : public BoardTest
{
  protected:
    int answer(std::uint32_t (*predicate)(std::uint8_t *, std::uintptr_t))
    {
        std::uint8_t flag = 0xAA;
        EXPECT_EQ(predicate(&flag, 0), 0u);
        return flag;
    }
};

TEST_F(FamiliesTest, ABoardOfTheNextBiosKnowsItsFamilies)
{
    be(0x90020757);
    EXPECT_EQ(answer(DrvBoot_Qs3540), 1);
    EXPECT_EQ(answer(DrvBoot_Qs3540OriginalBios), 0);
    EXPECT_EQ(answer(DrvBootIs3540NextGenBiosBoard), 1);
    EXPECT_EQ(answer(DrvBoot_IsNgBoard), 1);
    EXPECT_EQ(answer(DrvBoot_IsNg3540Board), 0);
    board.set_boot_env("BOOTMEDIA", "NAND");
    EXPECT_EQ(answer(DrvBootIsNg3540NandFlashBoard), 1);
    EXPECT_EQ(answer(DrvBootInstallBiosQs3540NextGen), 0);
    board.set_boot_env("BOOTMEDIA", "SFC");
    EXPECT_EQ(answer(DrvBootIsNg3540NandFlashBoard), 0);
    EXPECT_EQ(answer(DrvBootInstallBiosQs3540NextGen), 1);
}

TEST_F(FamiliesTest, ListsThatOverlapStayAsTheyAre)
{
    be(0x90020759);
    EXPECT_EQ(answer(DrvBoot_Qs3540ExcludeNgBoard), 1);
    EXPECT_EQ(answer(DrvBoot_IsNgBoard), 0);
    be(0x90020720);
    EXPECT_EQ(answer(DrvBoot_Qs3540OriginalBios), 1);
    EXPECT_EQ(answer(DrvBootIs3540NextGenBiosBoard), 1);
}

TEST_F(FamiliesTest, SixOfThirtyTwoNeighboursAreA53)
{
    int yes = 0;
    for (std::uint32_t hard_type = 0x900005d9; hard_type < 0x900005d9 + 32; ++hard_type) {
        be(hard_type);
        yes += answer(DrvBoot_A53le);
    }
    EXPECT_EQ(yes, 6);
    be(0x900005db);
    EXPECT_EQ(answer(DrvBoot_A53le), 0);
}

TEST_F(FamiliesTest, TheListsThatProductsSeeHoldTheirBoardsInOrder)
{
    EXPECT_EQ(std::vector(std::begin(g_ng_board_list), std::end(g_ng_board_list)), ng_boards);
    EXPECT_EQ(std::vector(std::begin(g_ng_3540_board_list), std::end(g_ng_3540_board_list)), ng_3540_boards);
    EXPECT_EQ(sizeof g_ng_board_list, 21 * sizeof(std::uint32_t));
    EXPECT_EQ(sizeof g_ng_3540_board_list, 10 * sizeof(std::uint32_t));
}

// A check of the copy in these tests.
TEST_F(FamiliesTest, TheTestsOwnListsHaveTheirSizes)
{
    const std::pair<const std::vector<std::uint32_t> &, std::size_t> sizes[] = {
        {ng_boards, 21},
        {ng_3540_boards, 10},
        {qs3540, 22},
        {qs3540_original_bios, 19},
        {qs3540_exclude_ng, 8},
        {a53le, 7},
        {qs3520, 7},
        {qs3520_nextg, 4},
        {sfc_3540, 2},
        {qs3540_next_gen_bios, 2},
        {single_backup_boards, 5},
        {fixed_box_boards, 2},
    };
    for (const auto &[types, size] : sizes)
        EXPECT_EQ(std::set<std::uint32_t>(types.begin(), types.end()).size(), size);
    EXPECT_EQ(family_rows.size(), 17u);
}

} // namespace
} // namespace test
