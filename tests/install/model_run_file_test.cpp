// SPDX-License-Identifier: Apache-2.0
// Models by a list of the caller's: the one family of predicates with another failure code.
#include "board/family_rows.hpp"
#include "install/model_ptn_mode.hpp"
#include "install/model_test.hpp"

namespace test
{
namespace
{

const Said unread =
    type_unread("ffffffff") + failure("Drvboot Install Runfile By Hardtype NOK for get hard type NOK\n");

class RunFileTest : public ModelTest
{
  protected:
    void TearDown() override
    {
        answer_ptn_mode(std::nullopt);
        ModelTest::TearDown();
    }
    std::uint8_t flag = 0xAA;
    const std::vector<std::uint32_t> list = {0x90020709, 0x9000054B, 0x90020709, 0xffffffff, 0};
    const std::int32_t count = 5;
};

TEST_F(RunFileTest, TellsWhetherTheBoardIsInTheList)
{
    EXPECT_EQ(during([&] {
                  for (std::uint32_t hard_type : all_hard_types())
                      for (std::int32_t first = 0; first <= count; ++first) {
                          be(hard_type);
                          forget_journal();
                          flag = flags_before[static_cast<std::size_t>(first) % 3];
                          EXPECT_EQ(DrvBootInstallRunFile(list.data(), first, &flag, 0), 0u);
                          const bool listed = holds(
                              std::vector<std::uint32_t>(list.begin(), list.begin() + first), hard_type);
                          EXPECT_EQ(flag, listed ? 1 : 0) << "the first " << first << " of the list";
                          EXPECT_EQ(requests(), std::vector<std::string>{ask_type});
                      }
              }),
              nothing());
}

TEST_F(RunFileTest, AnEmptyListHoldsNoBoard)
{
    for (std::int32_t none : {0, -1, INT32_MIN})
        for (const std::uint32_t *types : {list.data(), static_cast<const std::uint32_t *>(nullptr)}) {
            flag = 1;
            EXPECT_EQ(DrvBootInstallRunFile(types, none, &flag, 0), 0u);
            EXPECT_EQ(flag, 0);
        }
}

TEST_F(RunFileTest, TheSpareArgumentIsIgnored)
{
    for (std::uint32_t spare : {1u, 0xffffffffu}) {
        EXPECT_EQ(DrvBootInstallRunFile(list.data(), count, &flag, spare), 0u);
        EXPECT_EQ(flag, 1);
        answer_ptn_mode(PtnAnswer{0, 1});
        EXPECT_EQ(DrvBootInstallRunFileWithPtnmode(list.data(), count, &flag, spare), 0u);
        EXPECT_EQ(flag, 1);
    }
}

TEST_F(RunFileTest, AHardTypeThatCannotBeReadIsAClearedFlagAndACodeOfItsOwn)
{
    deny(board0, EACCES, 0);
    for (std::int32_t any : {count, 0, -1}) {
        flag = 1;
        EXPECT_EQ(during([&] { EXPECT_EQ(DrvBootInstallRunFile(list.data(), any, &flag, 0), 10000u); }),
                  unread);
        EXPECT_EQ(flag, 0);
    }
    flag = 1;
    EXPECT_EQ(during([&] { EXPECT_EQ(DrvBootInstallRunFileKYP467R(&flag, 0), 10000u); }), unread);
    EXPECT_EQ(flag, 0);
}

TEST_F(RunFileTest, InPtnModeTheFlagIsThenLeftAloneAndTheModeNotAsked)
{
    deny(board0, EACCES, 0);
    answer_ptn_mode(PtnAnswer{0, 1});
    for (std::uint8_t before : flags_before) {
        flag = before;
        EXPECT_EQ(during([&] {
                      EXPECT_EQ(DrvBootInstallRunFileWithPtnmode(list.data(), count, &flag, 0), 10000u);
                  }),
                  unread);
        EXPECT_EQ(flag, before);
        EXPECT_EQ(during([&] { EXPECT_EQ(DrvBootInstallRunFileKYP467RPtnMode(&flag, 0), 10000u); }), unread);
        EXPECT_EQ(flag, before);
    }
    EXPECT_EQ(ptn_mode_asked(), 0u);
}

TEST_F(RunFileTest, InPtnModeBothMustSayYesAndTheModesFailureDoesNotCount)
{
    const std::pair<PtnAnswer, std::uint8_t> modes[] = {{{0, 1}, 1},         {{0, 0}, 0},
                                                        {{0, 2}, 0},         {{minus_one, std::nullopt}, 0},
                                                        {{minus_one, 1}, 1}, {{1, 0}, 0}};
    for (const auto &[mode, is_ptn] : modes)
        for (std::uint32_t hard_type : {0x90020709u, 0x9002071Fu, 0x90000762u}) {
            be(hard_type);
            for (std::uint8_t before : flags_before) {
                answer_ptn_mode(mode);
                flag = before;
                EXPECT_EQ(during([&] {
                              EXPECT_EQ(DrvBootInstallRunFileWithPtnmode(list.data(), count, &flag, 0), 0u);
                          }),
                          nothing());
                EXPECT_EQ(flag, hard_type == list[0] ? is_ptn : 0);
                flag = before;
                EXPECT_EQ(DrvBootInstallRunFileKYP467RPtnMode(&flag, 0), 0u);
                EXPECT_EQ(flag, holds(kyp467r_boards, hard_type) ? is_ptn : 0);
                EXPECT_EQ(ptn_mode_asked(), 2u); // also on other boards
            }
        }
}

TEST_F(RunFileTest, Kyp467rIsTwoBoards)
{
    EXPECT_EQ(during([&] {
                  for (std::uint32_t hard_type : all_hard_types())
                      for (std::uintptr_t argument : {std::uintptr_t{0}, ~std::uintptr_t{0}}) {
                          be(hard_type);
                          flag = 0xAA;
                          EXPECT_EQ(DrvBootInstallRunFileKYP467R(&flag, argument), 0u);
                          EXPECT_EQ(flag, holds(kyp467r_boards, hard_type) ? 1 : 0);
                          answer_ptn_mode(PtnAnswer{0, 1});
                          EXPECT_EQ(DrvBootInstallRunFileKYP467RPtnMode(&flag, argument), 0u);
                          EXPECT_EQ(flag, holds(kyp467r_boards, hard_type) ? 1 : 0);
                      }
              }),
              nothing());
}

TEST_F(RunFileTest, NullPointersAreRefusedUnasked)
{
    answer_ptn_mode(PtnAnswer{0, 1});
    EXPECT_EQ(during([&] {
                  EXPECT_EQ(DrvBootInstallRunFile(list.data(), count, nullptr, 0), 10000u);
                  EXPECT_EQ(DrvBootInstallRunFileWithPtnmode(list.data(), count, nullptr, 0), 10000u);
                  EXPECT_EQ(DrvBootInstallRunFileKYP467R(nullptr, 0), 10000u);
                  EXPECT_EQ(DrvBootInstallRunFileKYP467RPtnMode(nullptr, 0), 10000u);
                  EXPECT_EQ(DrvBootInstallRunFile(nullptr, 1, &flag, 0), 10000u);
                  EXPECT_EQ(flag, 0); // cleared before anything else
                  flag = 0xAA;
                  EXPECT_EQ(DrvBootInstallRunFileWithPtnmode(nullptr, 1, &flag, 0), 10000u);
                  EXPECT_EQ(flag, 0xAA);
              }),
              nothing());
    EXPECT_TRUE(operations().empty());
    EXPECT_EQ(ptn_mode_asked(), 0u);
}

} // namespace
} // namespace test
