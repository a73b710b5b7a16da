// SPDX-License-Identifier: Apache-2.0
// The walk that takes boot files out of a package, over tables of the test's own.
#include "install/boot_file_test.hpp"

namespace test
{
namespace
{

class BootFileExtractTest : public BootFileTest
{
  protected:
    template <std::size_t count>
    static std::uint32_t extract(const BootFileDesc (&table)[count], const std::string &directory = "/to")
    {
        return DrvBoot_ExtractBootFileXTN("the package", table, count, directory.c_str());
    }
};

TEST_F(BootFileExtractTest, OnlyTheFlagCountsAndItComesAsANo)
{
    const BootFileDesc table[] = {
        {"0", "0x0", yes},
        {"1", "0x1", no},
        {"2", "0x2", fails},
        {"3", "0x3", fails_with_no},
        {"4", "0x4", fails_with_yes},
        {"5", "0x5", says<2>},
        {"6", "0x6", says<255, 7>},
        {"7", "0x7", says<-1, 0>},
    };
    EXPECT_EQ(during([&] { EXPECT_EQ(extract(table), 0u); }), nothing());
    EXPECT_EQ(asked, std::vector<Asked>(8, {0, 0}));
    std::vector<Taken> expected;
    for (std::uint32_t i : {0u, 4u, 5u, 6u})
        expected.push_back({"the package", "/to/" + std::to_string(i), i, 0755});
    EXPECT_EQ(taken, expected);
}

TEST_F(BootFileExtractTest, WithoutRowsAsksNobody)
{
    const BootFileDesc table[] = {{"a", "0x1", yes}};
    EXPECT_EQ(during([&] {
                  EXPECT_EQ(DrvBoot_ExtractBootFileXTN("the package", table, 0, "/to"), 0u);
                  EXPECT_EQ(DrvBoot_ExtractBootFileXTN(nullptr, nullptr, 0, nullptr), 0u);
              }),
              nothing());
    EXPECT_TRUE(asked.empty());
    EXPECT_TRUE(taken.empty());
}

TEST_F(BootFileExtractTest, ANullPointerIsRefused)
{
    const BootFileDesc table[] = {{"a", "0x1", yes}};
    EXPECT_EQ(during([&] {
                  EXPECT_EQ(DrvBoot_ExtractBootFileXTN(nullptr, table, 1, "/to"), minus_one);
                  EXPECT_EQ(DrvBoot_ExtractBootFileXTN("the package", nullptr, 1, "/to"), minus_one);
                  EXPECT_EQ(DrvBoot_ExtractBootFileXTN("the package", table, 1, nullptr), minus_one);
              }),
              nothing());
    EXPECT_TRUE(asked.empty());
    EXPECT_TRUE(taken.empty());
}

TEST_F(BootFileExtractTest, ARowWithoutPredicateIsForNoBoard)
{
    const BootFileDesc table[] = {{"a", "0x1", nullptr}, {"b", "0x2", yes}};
    EXPECT_EQ(extract(table), 0u);
    EXPECT_EQ(taken, (std::vector<Taken>{{"the package", "/to/b", 2, 0755}}));
}

TEST_F(BootFileExtractTest, OnlyAsManyRowsAsCounted)
{
    const BootFileDesc table[] = {{"a", "0x1", yes}, {"b", "0x2", yes}};
    EXPECT_EQ(DrvBoot_ExtractBootFileXTN("the package", table, 1, "/to"), 0u);
    EXPECT_EQ(taken.size(), 1u);
    EXPECT_EQ(asked.size(), 1u);
}

TEST_F(BootFileExtractTest, EachFileIsTakenBeforeTheNextRowIsAsked)
{
    const BootFileDesc table[] = {{"a", "0x1", yes}, {"b", "0x2", yes}, {"c", "0x3", no}, {"d", "0x4", yes}};
    std::vector<std::size_t> asked_by_then;
    while_taking = [&asked_by_then] { asked_by_then.push_back(asked.size()); };
    EXPECT_EQ(extract(table), 0u);
    EXPECT_EQ(asked_by_then, (std::vector<std::size_t>{1, 2, 4}));
}

TEST_F(BootFileExtractTest, IdsAreHexadecimal)
{
    const BootFileDesc table[] = {{"a", "0x08000005", yes}, {"a", "0xA1200501", yes}, {"a", "0XfF", yes},
                                  {"a", "10", yes},         {"a", "ffffffff", yes},   {"a", "", yes},
                                  {"a", "none", yes},       {"a", "0x1g", yes}};
    EXPECT_EQ(extract(table), 0u);
    std::vector<std::uint32_t> ids;
    ids.reserve(taken.size());
    for (const Taken &one : taken)
        ids.push_back(one.id);
    EXPECT_EQ(ids, (std::vector<std::uint32_t>{0x08000005, 0xA1200501, 0xFF, 0x10, 0xFFFFFFFF, 0, 0, 1}));
}

TEST_F(BootFileExtractTest, AFileThatIsNotExtractedIsToldAndTheOthersAreTaken)
{
    const BootFileDesc table[] = {{"a", "0x1", yes}, {"b", "0x2", yes}, {"c", "0x3", yes}};
    for (std::uint32_t result : {1u, 2u, 0x80000000u, minus_one}) {
        taken.clear();
        refusals = {{"/to/a", result}, {"/to/c", result}};
        EXPECT_EQ(during([&] { EXPECT_EQ(extract(table), 0u); }), not_extracted("a") + not_extracted("c"));
        EXPECT_EQ(taken.size(), 3u);
        EXPECT_EQ(g_nandFlashDeleteFlag, 0u);
    }
}

TEST_F(BootFileExtractTest, AFailedBiosOfThePreloadIsRemembered)
{
    for (const BootFileRow &file : boot_file_rows) {
        SCOPED_TRACE(file.name);
        const BootFileDesc table[] = {{file.name.c_str(), "0x1", yes}, {"after", "0x2", yes}};
        const bool bios = bios_files.count(file.name) != 0;
        g_nandFlashDeleteFlag = 0;
        forget_package();
        EXPECT_EQ(extract(table), 0u);
        EXPECT_EQ(g_nandFlashDeleteFlag, 0u);
        refusals["/to/" + file.name] = 1;
        taken.clear();
        std::vector<std::uint32_t> flags;
        while_taking = [&flags] { flags.push_back(g_nandFlashDeleteFlag); };
        EXPECT_EQ(during([&] { EXPECT_EQ(extract(table), 0u); }), not_extracted(file.name));
        EXPECT_EQ(flags, (std::vector<std::uint32_t>{0, bios ? 1u : 0u}));
        EXPECT_EQ(g_nandFlashDeleteFlag, bios ? 1u : 0u);
        EXPECT_EQ(taken.size(), 2u);
    }
}

// A walk alone clears nothing.
TEST_F(BootFileExtractTest, ARememberedFailureOutlivesAGoodExtraction)
{
    const BootFileDesc table[] = {{"bios_qs3540_mpu.bin", "0x1", yes}, {"ospkg_qs3540_mpu.bin", "0x2", yes}};
    refusals["/to/bios_qs3540_mpu.bin"] = 1;
    EXPECT_EQ(extract(table), 0u);
    refusals.clear();
    EXPECT_EQ(extract(table), 0u);
    EXPECT_EQ(g_nandFlashDeleteFlag, 1u);
}

TEST_F(BootFileExtractTest, APathMayHave255Characters)
{
    for (const std::size_t length : {254u, 255u}) {
        const std::string directory = "/" + std::string(length - 3, 'd'); // and "/a"
        const BootFileDesc table[] = {{"a", "0x1", yes}};
        taken.clear();
        EXPECT_EQ(during([&] { EXPECT_EQ(extract(table, directory), 0u); }), nothing());
        EXPECT_EQ(taken, (std::vector<Taken>{{"the package", directory + "/a", 1, 0755}}));
        EXPECT_EQ(taken.at(0).destination.size(), length);
    }
}

TEST_F(BootFileExtractTest, ALongerPathEndsTheWalk)
{
    for (const std::size_t length : {256u, 257u, 1000u}) {
        const std::string directory = "/" + std::string(length - 3, 'd');
        const BootFileDesc table[] = {
            {"never", "0x1", no}, {"", "0x2", yes}, {"a", "0x3", yes}, {"", "0x4", yes}};
        asked.clear();
        taken.clear();
        const bool first_fits = length == 256; // an empty name makes a path one shorter
        EXPECT_EQ(during([&] { EXPECT_EQ(extract(table, directory), minus_one); }),
                  failure("String print unsuccessfully, return check code=-1\n"));
        EXPECT_EQ(asked.size(), first_fits ? 3u : 2u);
        EXPECT_EQ(taken.size(), first_fits ? 1u : 0u);
    }
}

TEST_F(BootFileExtractTest, AFailedPrintsResultIsToldAndHandedOn)
{
    const BootFileDesc table[] = {{"a", "0x1", yes}, {"b", "0x2", yes}, {"c", "0x3", yes}};
    answer_libc("snprintf_s", -5, 1);
    EXPECT_EQ(during([&] { EXPECT_EQ(extract(table), static_cast<std::uint32_t>(-5)); }),
              failure("String print unsuccessfully, return check code=-5\n"));
    EXPECT_EQ(asked.size(), 2u);
    EXPECT_EQ(taken, (std::vector<Taken>{{"the package", "/to/a", 1, 0755}}));
    EXPECT_EQ(g_nandFlashDeleteFlag, 0u);
}

TEST_F(BootFileExtractTest, NamesAreNoFormats)
{
    const BootFileDesc table[] = {{"%s%n", "0x1", yes}};
    refusals["%d/%s%n"] = 1;
    EXPECT_EQ(during([&] { EXPECT_EQ(extract(table, "%d"), 0u); }), not_extracted("%s%n"));
}

// ---- Drvboot_ClearBiosFile -------------------------------------------------------------------------------

TEST_F(BootFileExtractTest, OnlyTheWholeNameOfABiosOfThePreloadSetsTheFlag)
{
    std::vector<std::string> names = {"", "bios", "/boot/bios_qs3540_mpu.bin", "BIOS_QS3540_MPU.BIN"};
    for (const BootFileRow &file : boot_file_rows)
        names.insert(names.end(), {file.name, file.name + "x", file.name.substr(0, file.name.size() - 1)});
    for (const std::string &name : names) {
        const bool bios = bios_files.count(name) != 0;
        for (std::uint32_t before : {0u, 1u}) {
            g_nandFlashDeleteFlag = before;
            EXPECT_EQ(during([&] { EXPECT_EQ(Drvboot_ClearBiosFile(name.c_str()) == 0, bios) << name; }),
                      nothing());
            EXPECT_EQ(g_nandFlashDeleteFlag, bios ? 1u : before) << name;
        }
    }
}

TEST_F(BootFileExtractTest, ANullNameIsNoBios)
{
    EXPECT_EQ(during([] { EXPECT_NE(Drvboot_ClearBiosFile(nullptr), 0); }), nothing());
    EXPECT_EQ(g_nandFlashDeleteFlag, 0u);
}

} // namespace
} // namespace test
