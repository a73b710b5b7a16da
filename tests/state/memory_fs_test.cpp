// SPDX-License-Identifier: Apache-2.0
// The RAM disk among the mounted file systems, and those that lie in memory.
#include "state/mount_table.hpp"
#include "support/board_test.hpp"

#include <array>
#include <cerrno>
#include <sstream>
#include <sys/stat.h>

using namespace test;
using testing::ElementsAre;
using testing::IsEmpty;

namespace
{

class MemoryFs : public BoardTest
{
  protected:
    Said exists(const char *dir)
    {
        return during([&] { result = MOX_IsMemDirExist(dir); });
    }
    static Said no_entry(const char *dir)
    {
        return failure(text("[MemDirExist]Getmntent_r of %s not success.\r\n\n", dir));
    }
    void expect_count(std::uint32_t expected)
    {
        std::uint32_t count = 77;
        EXPECT_EQ(during([&] { result = MOX_GetMemFsCount(&count); }), nothing());
        EXPECT_EQ(result, 0u);
        EXPECT_EQ(count, expected);
    }
    std::vector<std::string> list(std::uint32_t max)
    {
        std::vector<std::array<char, 129>> buffers(max + 1);
        std::vector<char *> pointers;
        for (auto &buffer : buffers) {
            buffer.fill('#');
            pointers.push_back(buffer.data());
        }
        std::uint32_t count = 77;
        EXPECT_EQ(during([&] { result = MOX_GetMemFsList(max, pointers.data(), &count); }), nothing());
        EXPECT_EQ(result, 0u);
        EXPECT_LE(count, max);
        std::vector<std::string> names;
        for (std::uint32_t i = 0; i < count; ++i) {
            EXPECT_EQ(buffers[i][127], '\0');
            names.emplace_back(buffers[i].data());
        }
        for (std::uint32_t i = 0; i <= max; ++i) {
            EXPECT_EQ(buffers[i][128], '#') << "written beyond buffer " << i;
            EXPECT_EQ(buffers[i][0] == '#', i >= count) << "buffer " << i;
        }
        return names;
    }
    std::uint32_t result = 99;
};

constexpr const char *mixed = "sysfs /sys sysfs rw 0 0\n"
                              "/dev/mtd3 /flash yaffs2 rw 0 0\n"
                              "proc /proc proc rw 0 0\n"
                              "/dev/sda1 /disk ext2 rw 0 0\n"
                              "/dev/sda2 /disk4 ext4 rw 0 0\n"
                              "/dev/pramdisk /ram tmpfs rw 0 0\n"
                              "yaffs2 /named-so tmpfs rw 0 0\n"
                              "none /ext2 ext2fs rw 0 0\n"
                              "none /y yaffs rw 0 0\n";

// ---- the RAM disk ----------------------------------------------------------------------------------------

TEST_F(MemoryFs, RamDiskIsFoundInTheRealTable)
{
    EXPECT_EQ(exists(reset_data), nothing());
    EXPECT_EQ(result, 0u);
    ASSERT_EQ(calls("setmntent").size(), 1u);
    EXPECT_EQ(calls("setmntent")[0].path, "/proc/mounts");
}

TEST_F(MemoryFs, DirectoryThatIsNotTheMountPointIsNone)
{
    // Present, but not mounted; mounted from elsewhere; the same directory in other words.
    for (const char *dir :
         {"/opt/moxv8/var", "/proc", "/opt/moxv8/SoftResetData/", "/opt/moxv8//SoftResetData"}) {
        EXPECT_EQ(exists(dir), no_entry(dir));
        EXPECT_EQ(result, minus_one);
    }
}

TEST_F(MemoryFs, DirectoryThatDoesNotOpenIsReported)
{
    EXPECT_EQ(exists("/opt/none"), failure("[MemDirExist]Open dir /opt/none not success.\r\n\n"));
    EXPECT_EQ(result, minus_one);
    fail_libc("opendir", EMFILE);
    EXPECT_EQ(exists(reset_data), failure(text("[MemDirExist]Open dir %s not success.\r\n\n", reset_data)));
    EXPECT_EQ(result, minus_one);
    EXPECT_TRUE(calls("setmntent").empty());
}

TEST_F(MemoryFs, TableThatDoesNotOpenIsReported)
{
    fail_libc("setmntent", EMFILE);
    EXPECT_EQ(exists(reset_data),
              failure(text("[MemDirExist]Setmntent of %s not success.\r\n\n", reset_data)));
    EXPECT_EQ(result, minus_one);
}

TEST_F(MemoryFs, NullDirectoryIsRefused)
{
    EXPECT_EQ(exists(nullptr), nothing());
    EXPECT_EQ(result, minus_one);
}

TEST_F(MemoryFs, SourceMustContainTheRamDisk)
{
    for (const char *source : {"/dev/pramdisk", "/dev/pramdisk0", "x/dev/pramdisk"}) {
        answer_mounts(text("%s %s tmpfs rw 0 0\n", source, reset_data));
        EXPECT_EQ(exists(reset_data), nothing()) << source;
        EXPECT_EQ(result, 0u);
    }
    for (const char *source : {"tmpfs", "/dev/ramdisk", "pramdisk", "/dev/pramdis"}) {
        answer_mounts(text("%s %s tmpfs rw 0 0\n", source, reset_data));
        EXPECT_EQ(exists(reset_data), no_entry(reset_data)) << source;
        EXPECT_EQ(result, minus_one);
    }
}

TEST_F(MemoryFs, OtherSourceOnTheDirectoryIsPassedOver)
{
    answer_mounts(text("/dev/sda1 %s ext4 rw 0 0\n"
                       "/dev/pramdisk /elsewhere tmpfs rw 0 0\n"
                       "none %s tmpfs rw 0 0\n"
                       "/dev/pramdisk %s anything rw 0 0\n"
                       "none %s tmpfs rw 0 0\n",
                       reset_data, reset_data, reset_data, reset_data));
    EXPECT_EQ(exists(reset_data), nothing());
    EXPECT_EQ(result, 0u);
    answer_mounts(text("/dev/pramdisk %s/below tmpfs rw 0 0\n/dev/pramdisk /opt tmpfs rw 0 0\n", reset_data));
    EXPECT_EQ(exists(reset_data), no_entry(reset_data));
    EXPECT_EQ(result, minus_one);
    answer_mounts("");
    EXPECT_EQ(exists(reset_data), no_entry(reset_data));
}

TEST_F(MemoryFs, BlanksOfADirectoryStandEscapedInTheTable)
{
    ASSERT_EQ(mkdir("/tmp/with space\t\\", 0755), 0);
    answer_mounts("/dev/pramdisk /tmp/with\\040space\\011\\134 tmpfs rw 0 0\n");
    EXPECT_EQ(exists("/tmp/with space\t\\"), nothing());
    EXPECT_EQ(result, 0u);
}

TEST_F(MemoryFs, LongLinesDoNotHideTheNextOne)
{
    for (std::size_t options : {900u, 980u, 1000u, 1023u, 1024u, 1025u, 5000u}) {
        answer_mounts("overlay /o overlay " + std::string(options, 'o') + " 0 0\n/dev/pramdisk " +
                      reset_data + " tmpfs rw 0 0\n");
        EXPECT_EQ(exists(reset_data), nothing()) << options;
        EXPECT_EQ(result, 0u);
    }
}

// ---- count and list --------------------------------------------------------------------------------------

TEST_F(MemoryFs, AllButTheFlashTypesCount)
{
    answer_mounts(mixed);
    expect_count(7);
    answer_mounts("/dev/mtd3 /flash yaffs2 rw 0 0\n/dev/sda1 /disk ext2 rw 0 0\n");
    expect_count(0);
    answer_mounts("");
    expect_count(0);
}

TEST_F(MemoryFs, CountOfTheRealTableIsItsLines)
{
    std::uint32_t lines = 0;
    std::ifstream table("/proc/mounts");
    for (std::string line; std::getline(table, line);) {
        std::istringstream fields(line);
        std::string source, dir, type;
        fields >> source >> dir >> type;
        if (type != "yaffs2" && type != "ext2")
            ++lines;
    }
    EXPECT_GT(lines, 3u);
    expect_count(lines);
    EXPECT_EQ(list(lines + 3).size(), lines);
    EXPECT_THAT(list(lines), testing::Contains(reset_data));
}

TEST_F(MemoryFs, ListGivesTheirDirectoriesInOrder)
{
    answer_mounts(mixed);
    EXPECT_THAT(list(20), ElementsAre("/sys", "/proc", "/disk4", "/ram", "/named-so", "/ext2", "/y"));
}

TEST_F(MemoryFs, ListEndsWhenAllBuffersAreFull)
{
    answer_mounts(mixed);
    EXPECT_THAT(list(7), testing::SizeIs(7));
    answer_mounts(mixed);
    EXPECT_THAT(list(2), ElementsAre("/sys", "/proc"));
    answer_mounts(mixed);
    EXPECT_THAT(list(1), ElementsAre("/sys"));
    answer_mounts(mixed);
    EXPECT_THAT(list(0), IsEmpty());
}

TEST_F(MemoryFs, DirectoriesAreCutAt127Characters)
{
    std::string table;
    for (std::size_t length : {126u, 127u, 128u, 300u})
        table += "none /" + std::string(length - 1, 'd') + " tmpfs rw 0 0\n";
    answer_mounts(table);
    const std::string cut = "/" + std::string(126, 'd');
    EXPECT_THAT(list(4), ElementsAre("/" + std::string(125, 'd'), cut, cut, cut));
}

TEST_F(MemoryFs, UnreadableTableIsReported)
{
    std::uint32_t count = 77;
    char buffer[128] = "#";
    char *buffers[] = {buffer};
    fail_libc("setmntent", EMFILE);
    EXPECT_EQ(during([&] { result = MOX_GetMemFsCount(&count); }),
              failure(text("Drvboot get mem fs count not success for setmntent /proc/mounts not ok(%d)\n",
                           EMFILE)));
    EXPECT_EQ(result, minus_one);
    EXPECT_EQ(count, 0u);
    count = 77;
    fail_libc("setmntent", ENOENT);
    EXPECT_EQ(
        during([&] { result = MOX_GetMemFsList(1, buffers, &count); }),
        failure(text("Drvboot get mem fs list not success for setmntent /proc/mounts not ok(%d)\n", ENOENT)));
    EXPECT_EQ(result, minus_one);
    EXPECT_EQ(count, 0u);
    EXPECT_EQ(buffer[0], '#');
}

TEST_F(MemoryFs, NullPointersAreRefused)
{
    std::uint32_t count = 77;
    char *none[] = {nullptr};
    EXPECT_EQ(during([&] {
                  EXPECT_EQ(MOX_GetMemFsCount(nullptr), minus_one);
                  EXPECT_EQ(MOX_GetMemFsList(1, nullptr, &count), minus_one);
                  EXPECT_EQ(MOX_GetMemFsList(1, none, nullptr), minus_one);
              }),
              nothing());
    EXPECT_EQ(count, 77u);
    EXPECT_TRUE(calls("setmntent").empty());
}

} // namespace
