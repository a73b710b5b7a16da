// SPDX-License-Identifier: Apache-2.0
// The start-up flash areas and the NOR data area: what is written where, and what is refused.
#include "platform/flash_area.hpp"

#include <cerrno>
#include <climits>
#include <gmock/gmock.h>
#include <sys/stat.h>
#include <vector>

namespace
{

using namespace std::string_literals;
using test::bios;
using test::hsm;
using test::os_package;
using test::read_file;
using test::write_file;
namespace fs = std::filesystem;
using testing::UnorderedElementsAre;

class Flash : public testing::Test, protected test::FlashFolder
{
};

TEST_F(Flash, EachKindOfFileHasAnAreaOfItsOwn)
{
    EXPECT_EQ(write(bios, "the bios"), 0u);
    EXPECT_THAT(names(), UnorderedElementsAre("startup-256"));
    EXPECT_EQ(write(os_package, "the package"), 0u);
    EXPECT_EQ(write(hsm, "the module"), 0u);
    EXPECT_THAT(names(), UnorderedElementsAre("startup-256", "startup-260", "startup-265"));
    EXPECT_EQ(area(bios), "the bios");
    EXPECT_EQ(area(os_package), "the package");
    EXPECT_EQ(area(hsm), "the module");
}

TEST_F(Flash, AFileOfAnySizeReplacesTheOldOneWhole)
{
    for (const size_t size : {1u, 16383u, 16384u, 16385u, 200'000u, 7u, 0u}) {
        std::string bytes(size, '\0');
        for (size_t i = 0; i < size; ++i)
            bytes[i] = static_cast<char>(i * 7 + i / 16384);
        EXPECT_EQ(write(bios, bytes), 0u);
        EXPECT_EQ(area(bios), bytes) << size;
    }
}

TEST_F(Flash, TheSourceStaysAndTheModeIsTheAreasOwn)
{
    const std::string image = source("bytes");
    chmod(image.c_str(), 0400);
    const mode_t before = umask(077);
    EXPECT_EQ(drv_update_startup_file(bios, image.c_str()), 0u);
    umask(before);
    EXPECT_EQ(read_file(image), "bytes");
    struct stat status = {};
    ASSERT_EQ(stat(path_of("startup-256").c_str(), &status), 0);
    EXPECT_EQ(status.st_mode, mode_t{S_IFREG | 0644});
}

TEST_F(Flash, OtherKindsAreRefusedAndMakeNothing)
{
    const std::string image = source("bytes");
    for (const std::uint32_t type : {0u, 1u, 255u, 257u, 259u, 261u, 264u, 266u, 0x80000100u, 0xffffffffu}) {
        EXPECT_NE(drv_update_startup_file(type, image.c_str()), 0u) << type;
        EXPECT_NE(drv_update_delete_startup_file(type, 0, 1), 0u) << type;
    }
    EXPECT_THAT(scratch.names(), UnorderedElementsAre("image.bin"));
}

TEST_F(Flash, WhatIsNoFileIsRefusedAndTheAreaStays)
{
    ASSERT_EQ(write(bios, "old"), 0u);
    fs::create_directory(scratch.path("directory"));
    ASSERT_EQ(mkfifo(scratch.path("pipe").c_str(), 0600), 0);
    fs::create_symlink("nowhere", scratch.path("dangling"));
    for (const char *name : {"missing", "directory", "pipe", "dangling", ""})
        EXPECT_NE(drv_update_startup_file(bios, scratch.path(name).c_str()), 0u) << name;
    EXPECT_NE(drv_update_startup_file(bios, "/dev/zero"), 0u);
    EXPECT_NE(drv_update_startup_file(bios, ""), 0u);
    EXPECT_NE(drv_update_startup_file(bios, nullptr), 0u);
    EXPECT_EQ(area(bios), "old");
    EXPECT_THAT(names(), UnorderedElementsAre("startup-256"));
}

TEST_F(Flash, ALinkToAFileIsAsGoodAsTheFile)
{
    fs::create_symlink(source("linked"), scratch.path("link"));
    EXPECT_EQ(drv_update_startup_file(bios, scratch.path("link").c_str()), 0u);
    EXPECT_EQ(area(bios), "linked");
    EXPECT_FALSE(fs::is_symlink(path_of("startup-256")));
}

TEST_F(Flash, DeletingEmptiesOneAreaAndAnEmptyOneStaysEmpty)
{
    for (const std::uint32_t type : {bios, os_package, hsm})
        ASSERT_EQ(write(type, "bytes"), 0u);
    EXPECT_EQ(drv_update_delete_startup_file(bios, 0, 1), 0u);
    EXPECT_THAT(names(), UnorderedElementsAre("startup-260", "startup-265"));
    EXPECT_EQ(drv_update_delete_startup_file(bios, 0, 1), 0u);
    EXPECT_EQ(drv_update_delete_startup_file(hsm, 0, 1), 0u);
    EXPECT_THAT(names(), UnorderedElementsAre("startup-260"));
    EXPECT_EQ(write(bios, "again"), 0u);
    EXPECT_EQ(area(bios), "again");
}

TEST_F(Flash, DeletingNeedsItsTwoArguments)
{
    ASSERT_EQ(write(bios, "bytes"), 0u);
    for (const auto &[zero, one] : {std::pair{0u, 0u}, {1u, 1u}, {1u, 0u}, {0u, 2u}, {0xffffffffu, 1u}})
        EXPECT_NE(drv_update_delete_startup_file(bios, zero, one), 0u) << zero << " " << one;
    EXPECT_EQ(area(bios), "bytes");
}

TEST_F(Flash, AnAreaThatCannotBeEmptiedIsAFailure)
{
    fs::create_directories(path_of("startup-256") + "/below");
    EXPECT_NE(drv_update_delete_startup_file(bios, 0, 1), 0u);
    EXPECT_NE(write(bios, "bytes"), 0u);
    EXPECT_THAT(names(), UnorderedElementsAre("startup-256"));
}

TEST_F(Flash, WhatLiesBesideAnAreaIsNotWrittenThrough)
{
    const std::string precious = source("precious", "precious");
    fs::create_directory(folder);
    fs::create_symlink(precious, path_of("startup-256.new"));
    EXPECT_NE(write(bios, "bytes"), 0u);
    EXPECT_EQ(read_file(precious), "precious");
}

TEST_F(Flash, AFolderIsMadeWhenOneIsMissing)
{
    EXPECT_EQ(drv_update_delete_startup_file(bios, 0, 1), 0u);
    EXPECT_TRUE(fs::is_directory(folder));
    fs::remove(folder);
    EXPECT_EQ(bsp_update_norflash_data_area(), 0u);
    EXPECT_TRUE(fs::is_directory(folder));
}

class FlashNowhere : public Flash
{
  protected:
    // Without such a folder nothing works, and nothing else is touched.
    void expect_refusals(const std::string &place)
    {
        setenv("MOXPLATFORM_FLASH", place.c_str(), 1);
        EXPECT_NE(write(bios, "bytes"), 0u);
        EXPECT_NE(drv_update_delete_startup_file(bios, 0, 1), 0u);
        EXPECT_NE(bsp_update_norflash_data_area(), 0u);
        EXPECT_THAT(scratch.names(), UnorderedElementsAre("image.bin"));
    }
};

TEST_F(FlashNowhere, AFolderOfAMissingFolderIsAFailure)
{
    expect_refusals(scratch.path("none/flash"));
}

TEST_F(FlashNowhere, AFileIsNoFolder)
{
    expect_refusals(source("bytes"));
}

TEST_F(FlashNowhere, APathThatIsTooLongIsAFailure)
{
    expect_refusals(scratch.path(std::string(PATH_MAX, 'x')));
    // The folder is there; what lies in it would have a path of one byte too many, and more.
    std::string longest = scratch.path("");
    while (longest.size() + sizeof "/startup-256" <= PATH_MAX)
        longest += "/";
    for (; longest.size() < PATH_MAX; longest += "/")
        expect_refusals(longest);
}

class NorArea : public Flash
{
  protected:
    const std::string path = path_of("nor-data-area");
};

TEST_F(NorArea, RefreshesAreCounted)
{
    for (const char *count : {"1", "2", "3"}) {
        EXPECT_EQ(bsp_update_norflash_data_area(), 0u);
        EXPECT_EQ(content(path), "refreshed="s + count + "\0"s);
    }
    EXPECT_EQ(area(bios), std::nullopt);
    EXPECT_FALSE(fs::exists(path + ".new"));
}

TEST_F(NorArea, TheCountStaysANumberWhateverStoodThere)
{
    fs::create_directory(folder);
    write_file(path, "refreshed=many\0"s);
    EXPECT_EQ(bsp_update_norflash_data_area(), 0u);
    EXPECT_EQ(content(path), "refreshed=1\0"s);
    write_file(path, "refreshed=4294967295\0"s);
    EXPECT_EQ(bsp_update_norflash_data_area(), 0u);
    EXPECT_EQ(content(path), "refreshed=0\0"s);
}

TEST_F(NorArea, AnAreaThatCannotBeReadIsLeftAlone)
{
    fs::create_directory(folder);
    for (const std::string &bytes : {"refreshed="s + std::string(16, '9') + "\0"s, "other=1\0"s, ""s}) {
        write_file(path, bytes);
        EXPECT_NE(bsp_update_norflash_data_area(), 0u);
        EXPECT_EQ(read_file(path), bytes);
    }
    fs::remove(path);
    fs::create_directory(path);
    EXPECT_NE(bsp_update_norflash_data_area(), 0u);
    EXPECT_TRUE(fs::is_directory(path));
}

} // namespace
