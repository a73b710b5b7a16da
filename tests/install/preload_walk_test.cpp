// SPDX-License-Identifier: Apache-2.0
// Which files each board's updater is given, and what a file that is not written means.
#include "board/family_rows.hpp"
#include "install/preload_test.hpp"

#include <algorithm>

namespace test
{
namespace
{

constexpr std::pair<const char *, std::uint32_t> media[] = {{"NOR", 0}, {"NAND", 1}, {"SFC", 2}};

TEST_F(PreloadTest, EveryBoardWithEveryFlashGetsItsFilesInOrderInSilence)
{
    std::set<Words> different;
    EXPECT_EQ(during([&] {
                  for (const auto &[medium, flash] : media)
                      for (std::uint32_t hard_type : family_candidates()) {
                          be_board(hard_type, medium);
                          asked.clear();
                          EXPECT_EQ(walk(), 0u);
                          EXPECT_EQ(asked, updates_of(hard_type, flash))
                              << medium << std::hex << " 0x" << hard_type;
                          different.insert(asked);
                      }
              }),
              nothing());
    EXPECT_EQ(different.size(), 8u);
}

TEST_F(PreloadTest, ABoardThatDoesNotTellItsFlashHasNoNand)
{
    be(0x90020709);
    board.set_boot_env("BOOTMEDIA", std::nullopt);
    EXPECT_EQ(walk(), 0u);
    EXPECT_EQ(asked,
              (Words{"update 256 /boot/bios_qs3540_mpu.bin", "update 260 /boot/ospkg_qs3540_mpu.bin"}));
}

TEST_F(PreloadTest, ABoardWithNandGetsTheBiosForItAndThenThePackage)
{
    be_board(0x90020709, "NAND");
    EXPECT_EQ(during([&] { EXPECT_EQ(walk(), 0u); }), nothing());
    EXPECT_EQ(asked,
              (Words{"update 256 /boot/bios_qs3540_nand_mpu.bin", "update 260 /boot/ospkg_qs3540_mpu.bin"}));
}

TEST_F(PreloadTest, WithoutAnUpdateFunctionNothingIsDone)
{
    g_nandFlashDeleteFlag = 1;
    EXPECT_EQ(
        during([&] { EXPECT_EQ(DrvBootUpdateStartupFile(nullptr, test_delete_startup_file), minus_one); }),
        nothing());
    EXPECT_TRUE(asked.empty());
    EXPECT_EQ(g_nandFlashDeleteFlag, 1u);
}

// ---- predicates that cannot answer -----------------------------------------------------------------------

TEST_F(PreloadTest, ABoardThatCannotTellItsTypeGetsNothing)
{
    be_board(0x90020709, "NAND");
    refuse(board0, item_hard_type, 0);
    const Said said = during([&] { EXPECT_EQ(walk(), 0u); });
    EXPECT_TRUE(asked.empty());
    Words words;
    for (const TraceLine &line : said.trace)
        if (line.text != "Not succeed to get board hardtype,ret=0x2710.\n")
            words.push_back(line.text);
    const std::string run_file = "Drvboot Install Runfile By Hardtype NOK for get hard type NOK\n";
    const std::string type = "Drvboot get board type unsuccessfully.\n";
    EXPECT_EQ(
        words,
        (Words{run_file, "Drvboot Install Runfile By Hardtype NOK for get 3520 next gen bios hard type NOK\n",
               run_file, "Drvboot Install Runfile By Hardtype NOK for get 3540 next gen bios hard type NOK\n",
               run_file, type, "Drvboot Install Runfile for get 3540 otherFlash hard type NOK\n", type,
               run_file, "Drvboot Install Runfile By Hardtype NOK for get 3540 nandFlash hard type NOK\n",
               type, run_file, run_file}));
}

TEST_F(PreloadTest, AFileWhosePredicateFailsIsLeftOutAndTheOthersAreWritten)
{
    // Questions before it: one each of rows 0 to 3.
    be_board(0x90020709, "NAND");
    refuse_question(4);
    EXPECT_EQ(during([&] { EXPECT_EQ(walk(), 0u); }),
              type_unread("Drvboot get board type unsuccessfully.\n") +
                  failure("Drvboot Install Runfile By Hardtype NOK for get 3540 nandFlash hard type NOK\n"));
    EXPECT_EQ(asked, Words{"update 260 /boot/ospkg_qs3540_mpu.bin"});
    board.clear_faults();
    asked.clear();
    refuse_question(6); // of row 5
    EXPECT_EQ(during([&] { EXPECT_EQ(walk(), 0u); }),
              type_unread("Drvboot get board type unsuccessfully.\n"));
    EXPECT_EQ(asked, Words{"update 256 /boot/bios_qs3540_nand_mpu.bin"});
}

TEST_F(PreloadTest, APredicateThatFailsLeavesTheDeleteFlagForTheNextBios)
{
    g_nandFlashDeleteFlag = 1;
    be_board(0x90020709, "NAND");
    refuse_question(5); // the second one of row 4
    EXPECT_EQ(walk(), 0u);
    EXPECT_EQ(asked, Words{"update 260 /boot/ospkg_qs3540_mpu.bin"});
    EXPECT_EQ(g_nandFlashDeleteFlag, 1u);
}

// ---- for each file: a board that takes it ----------------------------------------------------------------

class PreloadFileTest : public PreloadTest, public testing::WithParamInterface<FlashFile>
{
  protected:
    void SetUp() override
    {
        PreloadTest::SetUp();
        be_board(row.hard_type, row.medium);
    }
    // This board's calls up to that for the row's file, and all of them.
    Words up_to_row() const
    {
        const auto at = std::find(row.updates.begin(), row.updates.end(), row.update());
        return {row.updates.begin(), at + 1};
    }
    void expect_stop(const std::string &what)
    {
        SCOPED_TRACE(what);
        for (std::uint32_t code : {1u, 0x80000000u, 0xffffffffu}) {
            on_update = refusing(row.path(), code);
            asked.clear();
            EXPECT_EQ(during([&] { EXPECT_EQ(walk(), minus_one); }), not_written(row.path(), row.type));
            EXPECT_EQ(asked, up_to_row());
        }
        std::filesystem::remove_all(row.path());
    }
    void expect_to_go_on(const std::string &what)
    {
        SCOPED_TRACE(what);
        for (std::uint32_t code : {1u, 0x80000000u, 0xffffffffu}) {
            on_update = refusing(row.path(), code);
            asked.clear();
            EXPECT_EQ(during([&] { EXPECT_EQ(walk(), 0u); }), not_written(row.path(), row.type));
            EXPECT_EQ(asked, row.updates);
        }
        std::filesystem::remove(row.path());
    }

    const FlashFile &row = GetParam();
};

INSTANTIATE_TEST_SUITE_P(Rows, PreloadFileTest, testing::ValuesIn(flash_files),
                         [](const auto &each) { return "Row" + std::to_string(each.index); });

TEST_P(PreloadFileTest, ItsBoardGetsIt)
{
    EXPECT_EQ(during([&] { EXPECT_EQ(walk(), 0u); }), nothing());
    EXPECT_EQ(asked, row.updates);
    EXPECT_TRUE(looked_for.empty()) << "what has been written is there";
}

TEST_P(PreloadFileTest, AnExistingFileThatIsNotWrittenStopsTheWalk)
{
    put_file(row.path());
    expect_stop("a file");
    put_file(row.path(), "");
    expect_stop("an empty file");
    put_file(row.path());
    std::filesystem::permissions(row.path(), std::filesystem::perms::none);
    looked_for.clear();
    expect_stop("a file that nobody may read");
    EXPECT_EQ(looked_for, Words(3, "exists " + row.path()));
    std::filesystem::create_directory(row.path());
    expect_stop("a directory");
    std::filesystem::create_symlink("/boot", row.path());
    expect_stop("a link to something");
}

TEST_P(PreloadFileTest, AMissingFileIsNoError)
{
    expect_to_go_on("nothing");
    std::filesystem::create_symlink("nowhere", row.path());
    expect_to_go_on("a link to nothing");
}

TEST_P(PreloadFileTest, WithNoFileAtAllEveryOneIsTriedAndReported)
{
    on_update = [](std::uint32_t, const std::string &) { return 5u; };
    Said said;
    for (const FlashFile &each : flash_files)
        if (std::find(row.updates.begin(), row.updates.end(), each.update()) != row.updates.end())
            said = said + not_written(each.path(), each.type);
    EXPECT_EQ(during([&] { EXPECT_EQ(walk(), 0u); }), said);
    EXPECT_EQ(asked, row.updates);
}

TEST_P(PreloadFileTest, APathThatCannotBePrintedIsReportedAndItsFileLeftOut)
{
    const Words before = up_to_row();
    answer_platform("snprintf_truncated_s", -1, static_cast<unsigned>(before.size()) - 1);
    EXPECT_EQ(during([&] { EXPECT_EQ(walk(), 0u); }),
              failure(text("[Preload]Unable to print file(%s/%s).\n", row.directory, row.file_name)));
    Words others = row.updates;
    others.erase(std::find(others.begin(), others.end(), row.update()));
    EXPECT_EQ(asked, others);
}

} // namespace
} // namespace test
