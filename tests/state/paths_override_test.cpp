// SPDX-License-Identifier: Apache-2.0
// Paths are found by asking exported functions, so a product's own ones decide; their results are handed on.
#include "support/board_test.hpp"

#include <array>

namespace
{
std::uint32_t own_check = 0, own_mode = 0;
std::vector<std::string> asked;
} // namespace

extern "C" {

uint32_t MOX_IsMemDirExist(const char *dir)
{
    asked.emplace_back(dir);
    return own_check;
}

uint32_t DrvBoot_IsPtnMode(void)
{
    asked.emplace_back("mode");
    return own_mode;
}

} // extern "C"

namespace test
{
namespace
{

class PathsOverrideTest : public BoardTest
{
  protected:
    std::array<char, 32> out = {};
    void SetUp() override
    {
        BoardTest::SetUp();
        asked.clear();
    }
};

TEST_F(PathsOverrideTest, TheCheckOfTheMountPointGivesTheResult)
{
    for (const std::uint32_t result : {1u, 7u, 0xfffffff9u, minus_one}) {
        own_check = result;
        EXPECT_EQ(during([&] { EXPECT_EQ(MOX_GetPBAPath(out.data(), 32), result); }),
                  failure("[PBA_Path]Path /opt/moxv8/bim not exist.\r\n\n"));
        EXPECT_EQ(out[0], '\0');
    }
    own_check = 0;
    EXPECT_EQ(MOX_GetPBAPath(out.data(), 32), 0u);
    EXPECT_STREQ(out.data(), "/opt/moxv8/bim/");
    EXPECT_THAT(asked, testing::Each("/opt/moxv8/bim")); // without its slash
}

TEST_F(PathsOverrideTest, OnlyAnAnswerOfZeroIsThePtnMode)
{
    own_mode = 0;
    EXPECT_EQ(MOX_GetResPackage(out.data(), 32), 0);
    EXPECT_STREQ(out.data(), "reslink_le_ptn");
    for (const std::uint32_t mode : {1u, 2u, minus_one}) {
        own_mode = mode;
        EXPECT_EQ(MOX_GetResPackage(out.data(), 32), 0);
        EXPECT_STREQ(out.data(), "reslink_le");
    }
    asked.clear();
    EXPECT_EQ(MOX_GetResPackage(nullptr, 32), -1);
    EXPECT_TRUE(asked.empty());
}

} // namespace
} // namespace test
