// SPDX-License-Identifier: Apache-2.0
#include "install/preload_test.hpp"

#include <cstddef>

namespace test
{
namespace
{

TEST_F(PreloadTest, TheTableHoldsItsFilesInOrder)
{
    EXPECT_EQ(DRVBOOT_PRELOAD_FILES, 8u);
    ASSERT_EQ(std::size(g_preloadFileTbl), flash_files.size());
    for (std::size_t i = 0; i < flash_files.size(); ++i) {
        SCOPED_TRACE(i);
        EXPECT_STREQ(g_preloadFileTbl[i].directory, flash_files[i].directory);
        EXPECT_STREQ(g_preloadFileTbl[i].file_name, flash_files[i].file_name);
        EXPECT_EQ(g_preloadFileTbl[i].startup_type, flash_files[i].type);
        EXPECT_EQ(g_preloadFileTbl[i].predicate, flash_files[i].predicate) << flash_files[i].family;
    }
}

TEST_F(PreloadTest, ARowHasItsFieldsInOrder)
{
    EXPECT_EQ(offsetof(PreloadFileDesc, directory), 0u);
    EXPECT_EQ(offsetof(PreloadFileDesc, file_name), sizeof(void *));
    EXPECT_EQ(offsetof(PreloadFileDesc, startup_type), 2 * sizeof(void *));
    EXPECT_EQ(offsetof(PreloadFileDesc, predicate), 3 * sizeof(void *));
    EXPECT_EQ(sizeof(PreloadFileDesc), 4 * sizeof(void *));
    EXPECT_EQ(DRVBOOT_STARTUP_BIOS, 256u);
    EXPECT_EQ(DRVBOOT_STARTUP_OS_PACKAGE, 260u);
    EXPECT_EQ(DRVBOOT_STARTUP_HSM, 265u);
}

// A check of the copy in these tests.
TEST_F(PreloadTest, TheTestsOwnBoardsTakeTheRowsTheyStandFor)
{
    for (const FlashFile &row : flash_files) {
        EXPECT_THAT(row.updates, testing::Contains(row.update()));
        const std::string medium = row.medium;
        EXPECT_EQ(updates_of(row.hard_type, medium == "NAND" ? 1 : medium == "SFC" ? 2 : 0), row.updates);
    }
}

} // namespace
} // namespace test
