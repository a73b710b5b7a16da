// SPDX-License-Identifier: Apache-2.0
// A product's own predicates stand in front of the library's, so they also show how the walk asks them.
#include "install/preload_test.hpp"

#include <algorithm>
#include <map>

namespace
{

struct Answer {
    std::optional<std::uint8_t> flag; // none: left as it was
    std::uint32_t result = 0;
};
std::map<std::string, Answer> answers;

std::uint32_t answer(const char *name, std::uint8_t *flag, std::uintptr_t argument)
{
    test::asked.push_back(
        test::text("%s flag %u argument %lu", name, *flag, static_cast<unsigned long>(argument)));
    const Answer &given = answers[name];
    if (given.flag)
        *flag = *given.flag;
    return given.result;
}

} // namespace

#define OWN(name)                                                                                            \
    uint32_t name(uint8_t *flag, uintptr_t argument)                                                         \
    {                                                                                                        \
        return answer(#name, flag, argument);                                                                \
    }
extern "C" {
OWN(DrvBootInstallBiosQs3520NextGen)
OWN(DrvBootInstallBiosQs3540NextGen)
OWN(DrvBootIsSfc3540Board)
OWN(DrvBootIsNg3540OtherFlash)
OWN(DrvBootIsNg3540NandFlashBoard)
OWN(DrvBoot_Qs3540)
OWN(DrvBootIs3520NextGenBiosBoard)
}

namespace test
{
namespace
{

class PredicateTest : public PreloadTest
{
  protected:
    void SetUp() override
    {
        PreloadTest::SetUp();
        all_answer({1, 0});
    }
    static void all_answer(const Answer &given)
    {
        for (const FlashFile &row : flash_files)
            answers[row.family] = given;
    }
    static std::string question(const FlashFile &row)
    {
        return std::string(row.family) + " flag 0 argument 0";
    }
    // Each file's question, followed by its update.
    static Words whole()
    {
        Words all;
        for (const FlashFile &row : flash_files) {
            all.push_back(question(row));
            all.push_back(row.update());
        }
        return all;
    }
    static Words questions()
    {
        Words all;
        for (const FlashFile &row : flash_files)
            all.push_back(question(row));
        return all;
    }
};

TEST_F(PredicateTest, EachFileIsWrittenBeforeTheNextOneIsAskedFor)
{
    EXPECT_EQ(during([] { EXPECT_EQ(walk(), 0u); }), nothing());
    EXPECT_EQ(asked, whole());
}

TEST_F(PredicateTest, TheFlagAloneDecides)
{
    for (std::uint32_t result : {0u, 1u, 0xffffffffu})
        for (std::uint8_t flag : {std::uint8_t{1}, std::uint8_t{2}, std::uint8_t{255}}) {
            all_answer({flag, result});
            asked.clear();
            EXPECT_EQ(walk(), 0u);
            EXPECT_EQ(asked, whole());
        }
    for (std::uint32_t result : {0u, 1u, 0xffffffffu})
        for (std::optional<std::uint8_t> flag : {std::optional<std::uint8_t>(), {std::uint8_t{0}}}) {
            all_answer({flag, result});
            asked.clear();
            EXPECT_EQ(walk(), 0u);
            EXPECT_EQ(asked, questions());
        }
}

TEST_F(PredicateTest, TheFirstBiosThatAppliesUsesUpTheDeleteFlag)
{
    g_nandFlashDeleteFlag = 1;
    EXPECT_EQ(walk(), 0u);
    Words expected = whole();
    expected[1] = "delete 256 0 1";
    EXPECT_EQ(asked, expected);
    answers[flash_files[0].family] = {0, 0};
    answers[flash_files[1].family] = {std::nullopt, minus_one};
    g_nandFlashDeleteFlag = 1;
    asked.clear();
    EXPECT_EQ(walk(), 0u);
    expected = whole();
    expected.erase(expected.begin() + 3); // row 1
    expected.erase(expected.begin() + 1); // row 0
    expected[3] = "delete 256 0 1";
    EXPECT_EQ(asked, expected);
}

TEST_F(PredicateTest, AFileWhosePathCannotBePrintedDoesNotUseUpTheDeleteFlag)
{
    g_nandFlashDeleteFlag = 1;
    answer_platform("snprintf_truncated_s", -1);
    EXPECT_EQ(during([] { EXPECT_EQ(walk(), 0u); }),
              failure("[Preload]Unable to print file(/boot/bios_qs3520_mpu_sfc_nextgen.bin).\n") +
                  deleted(0));
    Words expected = whole();
    expected.erase(expected.begin() + 1);
    expected[2] = "delete 256 0 1";
    EXPECT_EQ(asked, expected);
}

TEST_F(PredicateTest, NoPathCanBePrinted)
{
    answer_platform("snprintf_truncated_s", -22, 0, 8);
    Said said;
    for (const FlashFile &row : flash_files)
        said = said + failure(text("[Preload]Unable to print file(%s/%s).\n", row.directory, row.file_name));
    EXPECT_EQ(during([] { EXPECT_EQ(walk(), 0u); }), said);
    EXPECT_EQ(asked, questions());
}

TEST_F(PredicateTest, BehindAnExistingFileThatIsNotWrittenNothingIsAskedFor)
{
    for (std::size_t i = 0; i < flash_files.size(); ++i) {
        const std::string path = flash_files[i].path();
        put_file(path);
        on_update = refusing(path);
        asked.clear();
        EXPECT_EQ(during([] { EXPECT_EQ(walk(), minus_one); }), not_written(path, flash_files[i].type));
        Words expected = whole();
        expected.resize(2 * i + 2);
        EXPECT_EQ(asked, expected);
    }
}

TEST_F(PredicateTest, MissingFilesAreAllTried)
{
    on_update = [](std::uint32_t, const std::string &) { return 9u; };
    Said said;
    for (const FlashFile &row : flash_files)
        said = said + not_written(row.path(), row.type);
    EXPECT_EQ(during([] { EXPECT_EQ(walk(), 0u); }), said);
    EXPECT_EQ(asked, whole());
}

} // namespace
} // namespace test
