// SPDX-License-Identifier: Apache-2.0
// A BIOS that could not be extracted: the start-up flash is left without one, once.
#include "install/preload_test.hpp"

#include <algorithm>

namespace test
{
namespace
{

// ---- the check alone -------------------------------------------------------------------------------------

TEST_F(PreloadTest, WithTheFlagTheBiosIsDeletedAndTheFlagUsedUp)
{
    for (std::uint32_t flag : {1u, 2u, 0x80000000u, 0xffffffffu}) {
        g_nandFlashDeleteFlag = flag;
        on_delete = [] {
            EXPECT_EQ(g_nandFlashDeleteFlag, 0u);
            return 0u;
        };
        asked.clear();
        EXPECT_EQ(during([&] { EXPECT_EQ(DrvBoot_DeleteBootFileCheck(256, test_delete_startup_file), 1u); }),
                  deleted(0));
        EXPECT_EQ(asked, Words{"delete 256 0 1"});
        EXPECT_EQ(g_nandFlashDeleteFlag, 0u);
    }
}

TEST_F(PreloadTest, TheResultOfDeletingIsReportedAndNothingElse)
{
    for (std::uint32_t result : {1u, 7u, 0x80000000u, 0xffffffffu}) {
        g_nandFlashDeleteFlag = 1;
        on_delete = [=] { return result; };
        EXPECT_EQ(during([&] { EXPECT_EQ(DrvBoot_DeleteBootFileCheck(256, test_delete_startup_file), 1u); }),
                  deleted(result));
        EXPECT_EQ(g_nandFlashDeleteFlag, 0u);
    }
}

TEST_F(PreloadTest, WithoutTheFlagNothingIsDeleted)
{
    EXPECT_EQ(during([&] {
                  EXPECT_EQ(DrvBoot_DeleteBootFileCheck(256, test_delete_startup_file), 0u);
                  EXPECT_EQ(DrvBoot_DeleteBootFileCheck(256, nullptr), 0u);
              }),
              nothing());
    EXPECT_TRUE(asked.empty());
}

TEST_F(PreloadTest, OtherFilesLeaveTheFlag)
{
    for (std::uint32_t type : {0u, 1u, 255u, 257u, 260u, 265u, 0xffffffffu})
        for (auto *remove : {&test_delete_startup_file, DrvBootDeleteFunction{nullptr}}) {
            g_nandFlashDeleteFlag = 1;
            EXPECT_EQ(during([&] { EXPECT_EQ(DrvBoot_DeleteBootFileCheck(type, remove), 0u); }), nothing());
            EXPECT_EQ(g_nandFlashDeleteFlag, 1u);
        }
    EXPECT_TRUE(asked.empty());
}

TEST_F(PreloadTest, WithoutAFunctionToDeleteTheFlagIsUsedUpAllTheSame)
{
    g_nandFlashDeleteFlag = 1;
    EXPECT_EQ(during([&] { EXPECT_EQ(DrvBoot_DeleteBootFileCheck(256, nullptr), 0u); }), nothing());
    EXPECT_EQ(g_nandFlashDeleteFlag, 0u);
}

// ---- for each file: a board that takes it ----------------------------------------------------------------

class PreloadDeleteTest : public PreloadTest, public testing::WithParamInterface<FlashFile>
{
  protected:
    void SetUp() override
    {
        PreloadTest::SetUp();
        be_board(row.hard_type, row.medium);
        g_nandFlashDeleteFlag = 1;
    }
    bool has_bios() const
    {
        return row.updates.front().rfind("update 256 ", 0) == 0;
    }
    // This board's calls when its BIOS is deleted.
    Words with_deletion() const
    {
        Words all = row.updates;
        if (has_bios())
            all.front() = "delete 256 0 1";
        return all;
    }
    std::string first_path() const
    {
        return row.updates.front().substr(std::string("update 256 ").size());
    }

    const FlashFile &row = GetParam();
};

INSTANTIATE_TEST_SUITE_P(Rows, PreloadDeleteTest, testing::ValuesIn(flash_files),
                         [](const auto &each) { return "Row" + std::to_string(each.index); });

TEST_P(PreloadDeleteTest, TheBiosIsDeletedInItsTurnAndTheOthersAreWritten)
{
    put_file("/boot/" + std::string(row.file_name)); // an old one is not written either
    EXPECT_EQ(during([&] { EXPECT_EQ(walk(), 0u); }), has_bios() ? deleted(0) : nothing());
    EXPECT_EQ(asked, with_deletion());
    EXPECT_EQ(g_nandFlashDeleteFlag, has_bios() ? 0u : 1u);
}

TEST_P(PreloadDeleteTest, TheNextPreloadWritesTheBiosAgain)
{
    EXPECT_EQ(walk(), 0u);
    asked.clear();
    EXPECT_EQ(during([&] { EXPECT_EQ(walk(), 0u); }), nothing());
    EXPECT_EQ(asked, row.updates);
}

TEST_P(PreloadDeleteTest, ABiosThatCannotBeDeletedIsDoneWithAllTheSame)
{
    on_delete = [] { return 0xfffffffeu; };
    EXPECT_EQ(during([&] { EXPECT_EQ(walk(), 0u); }), has_bios() ? deleted(0xfffffffe) : nothing());
    EXPECT_EQ(asked, with_deletion());
}

TEST_P(PreloadDeleteTest, WithoutAFunctionToDeleteTheBiosIsWrittenAsEver)
{
    EXPECT_EQ(during([&] { EXPECT_EQ(DrvBootUpdateStartupFile(test_update_startup_file, nullptr), 0u); }),
              nothing());
    EXPECT_EQ(asked, row.updates);
    EXPECT_EQ(g_nandFlashDeleteFlag, has_bios() ? 0u : 1u);
}

TEST_P(PreloadDeleteTest, WithoutAFunctionToDeleteAMissingFileIsNoErrorEither)
{
    on_update = refusing(first_path(), 3);
    EXPECT_EQ(during([&] { EXPECT_EQ(DrvBootUpdateStartupFile(test_update_startup_file, nullptr), 0u); }),
              not_written(first_path(), has_bios() ? 256 : row.type));
    EXPECT_EQ(asked, row.updates);
    EXPECT_EQ(g_nandFlashDeleteFlag, has_bios() ? 0u : 1u);
}

TEST_P(PreloadDeleteTest, ALaterFileThatIsNotWrittenStillStopsTheWalk)
{
    const std::string last = row.updates.back();
    const std::string path = last.substr(std::string("update 256 ").size());
    put_file(path);
    on_update = refusing(path);
    EXPECT_EQ(walk(), minus_one);
    EXPECT_EQ(asked, with_deletion());
}

} // namespace
} // namespace test
