// SPDX-License-Identifier: Apache-2.0
// The file that one board of a pair offers the other.
#include "state/sync_variables.hpp"

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <ostream>

namespace test
{
namespace
{

namespace fs = std::filesystem;

static_assert(offsetof(MoxStartupFileSync, version) == 128 && offsetof(MoxStartupFileSync, length) == 256);

struct TextField {
    const char *variable;
    const char *word; // in the lines
    std::uint32_t (*fill)(MoxStartupFileSync *);
    char (MoxStartupFileSync::*field)[128];
};
void PrintTo(const TextField &row, std::ostream *out)
{
    *out << row.word;
}

class SyncTextTest : public SyncTest, public testing::WithParamInterface<TextField>
{
  protected:
    const TextField &row = GetParam();
    Said line(const char *format, const std::string &rest) const
    {
        return failure("[MOX] get update " + std::string(row.word) + format + rest + "\n\n");
    }
    void expect(std::uint32_t result, const Said &said)
    {
        EXPECT_EQ(during([&] { EXPECT_EQ(row.fill(&record), result); }), said);
    }
    std::string field() const
    {
        return {record.*row.field, 128};
    }
};

TEST_P(SyncTextTest, IsTheVariablesValue)
{
    for (const std::size_t length : {0u, 1u, 40u, 126u, 127u}) {
        const std::string value(length, 'v');
        set(row.variable, value);
        std::memset(&record, '#', sizeof record);
        expect(0, reported(1, "[MOX] get update " + std::string(row.word) + " " + value + ".\n\n"));
        EXPECT_EQ(field(), value + '\0' + std::string(127 - length, '#'));
        const auto bytes = reinterpret_cast<const char *>(&record);
        EXPECT_EQ(std::count(bytes, bytes + sizeof record, '#'),
                  static_cast<std::ptrdiff_t>(sizeof record - length - 1));
    }
}

TEST_P(SyncTextTest, AValueOf128CharactersFailsTheCopy)
{
    for (const std::size_t length : {128u, 129u, 255u}) {
        set(row.variable, std::string(length, 'v'));
        std::memset(&record, '#', sizeof record);
        expect(minus_one, line(" strcpy not success ret ", "34"));
        EXPECT_EQ(field(), '\0' + std::string(127, '#'));
    }
    set(row.variable, "v");
    answer_platform("strncpy_s", 77);
    expect(minus_one, line(" strcpy not success ret ", "77"));
    answer_platform("strncpy_s", -1);
    expect(minus_one, line(" strcpy not success ret ", "4294967295"));
}

TEST_P(SyncTextTest, AVariableThatCannotBeReadLeavesTheRecordAlone)
{
    expect(minus_one, line(" env not success", ""));
    set(row.variable, "v");
    answer_platform("GetEnv", 5);
    expect(minus_one, line(" env not success", ""));
    EXPECT_TRUE(untouched());
}

TEST_P(SyncTextTest, ANullRecordIsRefusedSilently)
{
    set(row.variable, "v");
    EXPECT_EQ(during([&] { EXPECT_EQ(row.fill(nullptr), minus_one); }), nothing());
}

INSTANTIATE_TEST_SUITE_P(
    Rows, SyncTextTest,
    testing::Values(TextField{"isomerism_cc_file", "filename", drvboot_impl_get_update_filename,
                              &MoxStartupFileSync::file_name},
                    TextField{"isomerism_cc_ver", "filever", drvboot_impl_get_update_filever,
                              &MoxStartupFileSync::version}));

// ---- the length ------------------------------------------------------------------------------------------

class SyncLengthTest : public SyncTest
{
  protected:
    std::string name = "cfg.zip";

    void expect(std::uint32_t result, const Said &after)
    {
        std::strcpy(record.file_name, name.c_str());
        EXPECT_EQ(during([&] { EXPECT_EQ(drvboot_impl_get_update_filelen(&record), result); }),
                  path_told() + after);
    }
    Said path_told() const
    {
        return reported(1, "[MOX] get update filelen path " + (backup_home + name) + " \n\n");
    }
    static Said length_told(std::uint64_t length)
    {
        return information("[MOX] get update filelen len=" + std::to_string(length) + ".\n\n");
    }
    const Said not_found = failure("[MOX] get update filelen lstat not success\n\n");
};

TEST_F(SyncLengthTest, IsTheFilesSize)
{
    for (const std::size_t size : {0u, 1u, 4097u, 100000u}) {
        make_file(backup_home + name, size);
        expect(0, length_told(size));
        EXPECT_EQ(record.length, size);
    }
    EXPECT_TRUE(operations().empty());
}

TEST_F(SyncLengthTest, ALinkIsMeasuredItself)
{
    make_file("/tmp/target", 5000);
    fs::create_symlink("/tmp/target", backup_home + name);
    expect(0, length_told(11));
    EXPECT_EQ(record.length, 11u);
    fs::remove("/tmp/target");
    expect(0, length_told(11));
    EXPECT_TRUE(calls("stat").empty());
}

TEST_F(SyncLengthTest, ASizeBeyond32BitsIsCut)
{
    make_file(backup_home + name, 0);
    std::error_code error;
    fs::resize_file(backup_home + name, (std::uint64_t{1} << 32) + 7, error);
    if (error)
        GTEST_SKIP() << "no room for a sparse file of 4 GiB";
    expect(0, length_told(7));
    EXPECT_EQ(record.length, 7u);
}

TEST_F(SyncLengthTest, AMissingFileLeavesTheLengthAlone)
{
    expect(minus_one, not_found);
    make_file(backup_home + name, 3);
    fail_libc("lstat", EIO);
    expect(minus_one, not_found);
    EXPECT_EQ(record.length, 0x23232323u);
}

TEST_F(SyncLengthTest, TheLongestNameFitsAndOneWithoutAnEndIsCut)
{
    name = std::string(127, 'n');
    make_file(backup_home + name, 3);
    expect(0, length_told(3));
    std::memset(record.file_name, 'n', sizeof record.file_name);
    record.length = 0;
    name = std::string(128, 'n');
    EXPECT_EQ(during([&] { EXPECT_EQ(drvboot_impl_get_update_filelen(&record), minus_one); }),
              path_told() + not_found);
}

TEST_F(SyncLengthTest, CopiesThatFailHandOnTheirCode)
{
    std::strcpy(record.file_name, "cfg.zip");
    for (const auto &[function, word] : {std::pair{"strncpy_s", "cpy"}, {"strncat_s", "cat"}}) {
        answer_platform(function, 77);
        EXPECT_EQ(during([&] { EXPECT_EQ(drvboot_impl_get_update_filelen(&record), minus_one); }),
                  failure(text("[drvboot]get filelen %s ret 77\n\n", word)));
    }
    EXPECT_TRUE(calls("lstat").empty());
}

TEST_F(SyncLengthTest, ANullRecordIsRefusedSilently)
{
    EXPECT_EQ(during([&] { EXPECT_EQ(drvboot_impl_get_update_filelen(nullptr), minus_one); }), nothing());
}

// ---- the whole record ------------------------------------------------------------------------------------

class SyncInfoTest : public SyncTest
{
  protected:
    void SetUp() override
    {
        SyncTest::SetUp();
        be_pair();
        set("isomerism_cc_file", "cfg.zip");
        set("isomerism_cc_ver", "V8R21");
        make_file(backup_home + std::string("cfg.zip"), 99);
    }
    void expect(std::int32_t result, const Said &said)
    {
        EXPECT_EQ(during([&] { EXPECT_EQ(MOX_PdtGetStartupFileSyncInfo(&record), result); }), said);
    }
    const Said name_told = information("[MOX] get update filename cfg.zip.\n\n");
    const Said version_told = information("[MOX] get update filever V8R21.\n\n");
    const Said path_told = information("[MOX] get update filelen path /opt/moxv8bak/home/cfg.zip \n\n");
};

TEST_F(SyncInfoTest, IsFilledOnBothBoardsOfThePair)
{
    for (const auto &[own, peer] : {std::pair{one_model, other_model}, {other_model, one_model}}) {
        be_pair(own, peer);
        std::memset(&record, '#', sizeof record);
        expect(0, pair_told(own, peer) + name_told + version_told + path_told +
                      information("[MOX] get update filelen len=99.\n\n") +
                      information("[MOX] get update file name :cfg.zip ver:V8R21 len:99\n\n"));
        EXPECT_STREQ(record.file_name, "cfg.zip");
        EXPECT_STREQ(record.version, "V8R21");
        EXPECT_EQ(record.length, 99u);
    }
}

TEST_F(SyncInfoTest, TheFirstFailureStops)
{
    answer_platform("GetEnv", 1, 1);
    expect(-1, pair_told() + failure("[MOX] get update filename env not success\n\n"));
    EXPECT_TRUE(untouched());
    answer_platform("GetEnv", 1, 2);
    expect(-1, pair_told() + name_told + failure("[MOX] get update filever env not success\n\n"));
    EXPECT_EQ(record.version[0], '#');
    fs::remove(backup_home + std::string("cfg.zip"));
    expect(-1, pair_told() + name_told + version_told + path_told +
                   failure("[MOX] get update filelen lstat not success\n\n"));
    EXPECT_EQ(record.length, 0x23232323u);
}

TEST_F(SyncInfoTest, BoardsThatDoNotPairHaveNone)
{
    be_pair(one_model, one_model);
    expect(-1, pair_told(one_model, one_model));
    EXPECT_TRUE(untouched());
}

TEST_F(SyncInfoTest, ANullRecordIsReportedAndAsksNothing)
{
    EXPECT_EQ(during([&] { EXPECT_EQ(MOX_PdtGetStartupFileSyncInfo(nullptr), -1); }),
              failure("[MOX]MOX PdtGetStartupFileSyncInfo pstSyncInfo is null \n\n"));
    EXPECT_TRUE(operations().empty());
}

} // namespace
} // namespace test
