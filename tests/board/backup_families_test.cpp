// SPDX-License-Identifier: Apache-2.0
// Which boards keep which kind of backup.
#include "board/family_rows.hpp"
#include "board/hard_type_lists.hpp"
#include "support/board_test.hpp"

namespace test
{
namespace
{

const std::string not_ptn = "[drv_boot] product not ptn box.\n";

std::set<std::uint32_t> candidates()
{
    std::set<std::uint32_t> all = family_candidates();
    all.insert(mpu_boards.begin(), mpu_boards.end());
    all.insert(lpu_boards.begin(), lpu_boards.end());
    return all;
}

class BackupFamiliesTest : public BoardTest
{
  protected:
    void family(const std::optional<std::string> &value)
    {
        board.set_boot_env("product_family_type", value);
    }
    void expect_no_ptn_box(const Said &said_before = nothing(), std::uint32_t hard_type = ng_boards.front())
    {
        EXPECT_EQ(during([&] { EXPECT_EQ(DrvbootIsSupporDataBakup(hard_type), 0u); }),
                  said_before + information(not_ptn));
    }
};

TEST_F(BackupFamiliesTest, SingleBackupFixedBoxAndEitherHoldForTheirBoardsUnasked)
{
    EXPECT_EQ(during([&] {
                  for (std::uint32_t type : candidates()) {
                      const bool single = holds(single_backup_boards, type);
                      const bool box = holds(fixed_box_boards, type);
                      EXPECT_EQ(DrvbootIsSupportSingleBakup(type), single ? 1u : 0u) << std::hex << type;
                      EXPECT_EQ(DrvbootNgFixBoxSingleBakup(type), box ? 1u : 0u) << std::hex << type;
                      EXPECT_EQ(DrvbootBakupParaSet(type), single || box ? 1u : 0u) << std::hex << type;
                  }
              }),
              nothing());
    EXPECT_TRUE(operations().empty());
}

TEST_F(BackupFamiliesTest, APtnBoxBacksUpDataOnNextGenerationBoards)
{
    family("8");
    EXPECT_EQ(during([&] {
                  for (std::uint32_t type : candidates()) {
                      forget_journal();
                      EXPECT_EQ(DrvbootIsSupporDataBakup(type), holds(ng_boards, type) ? 1u : 0u)
                          << std::hex << type;
                      EXPECT_EQ(requests(), std::vector<std::string>{"env read product_family_type"});
                  }
              }),
              nothing());
    for (std::uint32_t type : ng_boards)
        EXPECT_EQ(DrvbootIsSupporDataBakup(type), 1u);
}

TEST_F(BackupFamiliesTest, EightIsReadAsADecimalNumber)
{
    for (const char *value : {"8", "08", "008", "8x", "8 9", " 8", "\t8", "+8", "8.5"}) {
        family(value);
        EXPECT_EQ(during([&] { EXPECT_EQ(DrvbootIsSupporDataBakup(0x90022028), 1u); }), nothing()) << value;
    }
}

TEST_F(BackupFamiliesTest, AnyOtherProductIsNoPtnBoxAndThatIsSaidEachTime)
{
    for (const char *value : {"9", "7", "", "0", "80", "18", "x8", "0x8", "010", "-8", "eight", "4294967304",
                              "18446744073709551624", "99999999999999999999"}) {
        SCOPED_TRACE(value);
        family(value);
        expect_no_ptn_box();
        expect_no_ptn_box();
        expect_no_ptn_box(nothing(), 0x9000054b);
    }
}

TEST_F(BackupFamiliesTest, WithoutTheVariableNoProductIsAPtnBox)
{
    family(std::nullopt);
    for (std::uint32_t type : {0x90020709u, 0x90020787u, 0x9000054bu, 0u, 0xffffffffu})
        expect_no_ptn_box(nothing(), type);
}

TEST_F(BackupFamiliesTest, AnEnvironmentThatCannotBeReadMakesNoPtnBox)
{
    family("8");
    deny(envinfo0, EACCES);
    expect_no_ptn_box(message(1, "\n\r [Getenv_s] Can't open file /dev/envinfo0!\n"));
    vboard::Fault fault;
    fault.device = envinfo0;
    fault.error = EIO;
    board.add_fault(fault);
    expect_no_ptn_box();
    EXPECT_EQ(DrvbootIsSupporDataBakup(0x90020709), 1u); // nothing is remembered
}

} // namespace
} // namespace test
