// SPDX-License-Identifier: Apache-2.0
// What is taken out of a good package.
#include "platform/package/crafted.hpp"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>

using namespace test;
using testing::ElementsAre;

namespace
{

mode_t mode_of(const std::string &path)
{
    struct stat status = {};
    EXPECT_EQ(stat(path.c_str(), &status), 0);
    return status.st_mode & 07777;
}

using Unpack = Package;

TEST_F(Unpack, ThePackageLibrarysFunctionPutsAFileInPlaceWithTheModeAskedFor)
{
    umask(077);
    EXPECT_EQ(CCPKG_ExtractFileFromCCExt(package.c_str(), target.c_str(), 0x08000005, 0755), 0u);
    EXPECT_EQ(read_file(target), "bios");
    EXPECT_EQ(mode_of(target), 0755u);
    EXPECT_THAT(scratch.names(), ElementsAre("p.tar", "target"));
    EXPECT_EQ(read_file(path), "") << "a good extraction is not traced";
}

TEST_F(Unpack, AFileThatDidNotExistIsMade)
{
    const std::string fresh = scratch.path("fresh");
    EXPECT_EQ(moxpackage_extract_file(package.c_str(), fresh.c_str(), 0xFE000005, 0600), 0u);
    EXPECT_EQ(read_file(fresh), std::string(3000, 'i'));
    EXPECT_EQ(mode_of(fresh), 0600u);
}

TEST_F(Unpack, AnIdThatIsNotThereIsAnErrorInWordsAndTheOldFileStays)
{
    EXPECT_NE(extract(0x08000006), 0u);
    EXPECT_EQ(traced(), "package " + package + ": it has no file with id 0x08000006\n");
    expect_old_target();
}

TEST_F(Unpack, WhatLiesBesideFromAnInterruptedExtractionIsNoHindrance)
{
    write_file(target + ".new", std::string(5000, 'x'));
    EXPECT_EQ(extract(0x08000005), 0u);
    EXPECT_EQ(read_file(target), "bios");
    EXPECT_EQ(scratch.names().count("target.new"), 0u);
}

TEST_F(Unpack, NullPathsAreRefused)
{
    EXPECT_NE(moxpackage_extract_file(nullptr, target.c_str(), 1, 0755), 0u);
    EXPECT_NE(moxpackage_extract_file(package.c_str(), nullptr, 1, 0755), 0u);
    expect_old_target();
}

TEST_F(Unpack, AFolderThatIsNotThereIsAnErrorInWords)
{
    const std::string nowhere = scratch.path("no/such");
    EXPECT_NE(moxpackage_extract_file(package.c_str(), nowhere.c_str(), 1, 0755), 0u);
    EXPECT_EQ(traced(), "package " + package + ": cannot write " + nowhere + ": No such file or directory\n");
}

TEST_F(Unpack, ADirectoryInTheWayIsAnErrorInWordsAndNothingIsLeftBeside)
{
    const std::string folder = scratch.path("folder");
    ASSERT_EQ(mkdir(folder.c_str(), 0755), 0);
    EXPECT_NE(moxpackage_extract_file(package.c_str(), folder.c_str(), 1, 0755), 0u);
    EXPECT_EQ(traced(), "package " + package + ": cannot write " + folder + ": Is a directory\n");
    EXPECT_EQ(scratch.names().count("folder.new"), 0u);
}

TEST_F(Unpack, APackageThatIsNotThereIsAnErrorInWords)
{
    ASSERT_EQ(unlink(package.c_str()), 0);
    EXPECT_NE(extract(1), 0u);
    EXPECT_EQ(traced(), "package " + package + ": it cannot be opened: No such file or directory\n");
    expect_old_target();
}

TEST_F(Unpack, FilesThatArePlacedComeInThePackagesOrderAndAreToldAsTheyGrow)
{
    std::vector<std::string> told;
    library.unpack(
        package, 0644,
        [&](const package::File &file) {
            return file.name == "boot/image" ? std::string() : scratch.path(std::to_string(file.id));
        },
        [&](const package::File &file, std::uint64_t done) {
            told.push_back(file.name + " " + std::to_string(done));
        });
    EXPECT_THAT(told, ElementsAre("boot/bios.bin 4", "pkg_pool/program/current/conf/default.cfg 10"));
    EXPECT_THAT(scratch.names(), ElementsAre("1", "134217733", "p.tar", "target"));
    EXPECT_EQ(read_file(scratch.path("1")), "key=value\n");
    EXPECT_EQ(mode_of(scratch.path("1")), 0644u);
}

TEST_F(Unpack, TheFilesBeforeADamagedOneAreWrittenAndThoseFromItOnAreNot)
{
    std::vector<Entry> entries = good_entries();
    entries[1].contents[2999] = '!';
    write_file(package, package_of(manifest_of(good_rows()), entries));
    const auto place = [&](const package::File &file) {
        return scratch.path("f" + std::to_string(file.size));
    };
    EXPECT_THROW(library.unpack(package, 0644, place, {}), package::Error);
    EXPECT_THAT(scratch.names(), ElementsAre("f4", "p.tar", "target"));
}

TEST_F(Unpack, AFileLargerThanTheFreeRoomIsRefusedBeforeItIsWritten)
{
    const long long size = 8LL << 30; // the most that the header can say
    nlohmann::json rows = good_rows();
    rows[0]["size"] = size - 1;
    std::vector<Entry> entries = good_entries();
    entries[0].size = size - 1;
    write_file(package, package_of(manifest_of(rows), entries));
    const std::string full = "/dev/pts/target"; // a file system without room
    EXPECT_NE(moxpackage_extract_file(package.c_str(), full.c_str(), 0x08000005, 0755), 0u);
    EXPECT_EQ(traced(), "package " + package + ": cannot write " + full +
                            ": it needs 8589934591 bytes, and 0 are free\n");
}

// The memory of a process that takes one large file out, in KiB.
long memory_of_extraction(const std::string &package, const std::string &target, std::uint32_t id)
{
    const pid_t child = fork();
    if (child == 0)
        _exit(moxpackage_extract_file(package.c_str(), target.c_str(), id, 0755) == 0 ? 0 : 1);
    int status = 0;
    rusage usage = {};
    EXPECT_EQ(wait4(child, &status, 0, &usage), child);
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0);
    return usage.ru_maxrss;
}

TEST_F(Unpack, ALargeFileNeedsNoMoreMemoryThanASmallOne)
{
    constexpr off_t size = 48 << 20;
    const std::string large = scratch.path("large");
    write_file(large, "begin");
    ASSERT_EQ(truncate(large.c_str(), size), 0);
    library.build(package, {"large", "1", {{1, "boot/small", "", "small"}, {2, "boot/large", large, ""}}});
    const long small = memory_of_extraction(package, target, 1);
    const long whole = memory_of_extraction(package, target, 2);
    struct stat status = {};
    ASSERT_EQ(stat(target.c_str(), &status), 0);
    EXPECT_EQ(status.st_size, size);
    EXPECT_LT(whole - small, 8 * 1024) << small << " KiB and " << whole << " KiB";
}

} // namespace
