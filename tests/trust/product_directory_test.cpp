// SPDX-License-Identifier: Apache-2.0
// Directories, CPUs that can be switched, and numbers of the platform environment.
#include "trust/product_fixture.hpp"

#include <moxboot/platform.h>

#include <cerrno>
#include <filesystem>
#include <fstream>

namespace test
{
namespace
{
namespace fs = std::filesystem;

const std::string switching = "/cgroup1";

Said not_told(const std::string &path, int error)
{
    return failure(text("Stat %s unsuccessfully, errno %d.\n", path.c_str(), error));
}

class DirectoryTest : public ProductTest
{
  protected:
    void expect_dir(const std::string &path, std::uint32_t answer, const Said &said = nothing())
    {
        forget_calls();
        EXPECT_EQ(during([&] { EXPECT_EQ(drvboot_is_dir(path.c_str()), answer); }), said) << path;
        ASSERT_EQ(calls("stat").size(), 1u) << path;
        EXPECT_EQ(calls("stat")[0].path, path);
        EXPECT_TRUE(calls("open").empty()) << path;
    }
};

TEST_F(DirectoryTest, IsWhatThePathNamesWithItsLinksFollowed)
{
    fs::create_directory("/tmp/dir");
    std::ofstream("/tmp/file") << "text";
    fs::create_symlink("/tmp/dir", "/tmp/to-dir");
    fs::create_symlink("/tmp/to-dir", "/tmp/to-link");
    fs::create_symlink("/tmp/file", "/tmp/to-file");
    for (const char *path : {"/tmp/dir", "/tmp/dir/", "/tmp/dir/.", "/tmp/to-dir", "/tmp/to-link", "/"})
        expect_dir(path, 1);
    for (const char *path : {"/tmp/file", "/tmp/to-file", "/dev/null", "/dev/log"})
        expect_dir(path, 0);
    fs::permissions("/tmp/dir", fs::perms::none);
    expect_dir("/tmp/dir", 1);
    fs::permissions("/tmp/dir", fs::perms::owner_all);
}

TEST_F(DirectoryTest, WhatIsNotThereIsNoDirectoryAndNotWorthALine)
{
    fs::create_symlink("/tmp/nowhere", "/tmp/dangling");
    for (const char *path : {"/tmp/nowhere", "/tmp/nowhere/below", "/tmp/dangling", ""})
        expect_dir(path, 0);
    fail_libc("stat", ENOENT);
    expect_dir("/tmp", 0);
}

TEST_F(DirectoryTest, WhatCannotBeLookedAtIsTold)
{
    std::ofstream("/tmp/file") << "text";
    fs::create_symlink("/tmp/loop", "/tmp/loop");
    expect_dir("/tmp/file/below", 0, not_told("/tmp/file/below", ENOTDIR));
    expect_dir("/tmp/loop", 0, not_told("/tmp/loop", ELOOP));
    for (int error : {EPERM, EIO, EACCES, EFAULT, ENOMEM, ENAMETOOLONG, EOVERFLOW}) {
        fail_libc("stat", error);
        expect_dir("/tmp", 0, not_told("/tmp", error));
    }
    expect_dir("/tmp", 1); // nothing is remembered
}

TEST_F(DirectoryTest, ANullPathNamesNone)
{
    EXPECT_EQ(during([] { EXPECT_EQ(drvboot_is_dir(nullptr), 0u); }), nothing());
}

// ---- CPUs ------------------------------------------------------------------------------------------------

using CpuSwitchTest = DirectoryTest;

TEST_F(CpuSwitchTest, CpusCanBeSwitchedWhereThereIsADirectory)
{
    forget_calls();
    expect(cpu_switch_type, 4, 0, number(0));
    ASSERT_EQ(calls("stat").size(), 1u);
    EXPECT_EQ(calls("stat")[0].path, switching);
    fs::create_directory(switching);
    for (std::uint32_t length : {0u, 3u, 4u, 0xffffffffu})
        expect(cpu_switch_type, length, 0, number(1));
    fs::remove(switching);
    std::ofstream(switching) << "text";
    expect(cpu_switch_type, 4, 0, number(0));
}

TEST_F(CpuSwitchTest, CpusCannotBeSwitchedWhereThatCannotBeSeen)
{
    fail_libc("stat", EACCES);
    expect(cpu_switch_type, 4, 0, number(0), not_told(switching, EACCES));
}

TEST_F(CpuSwitchTest, ANullPlaceIsIgnored)
{
    expect_nowhere(cpu_switch_type, 4, 0);
    fail_libc("stat", EIO);
    expect_nowhere(cpu_switch_type, 4, 0, not_told(switching, EIO));
}

// ---- numbers of the platform environment -----------------------------------------------------------------

class EnvNumberTest : public BoardTest
{
  protected:
    void TearDown() override
    {
        fs::remove("/opt/moxv8/var/platform.env"); // a test that shares its process shares its files, too
        BoardTest::TearDown();
    }
    void expect_missing(const char *name, const Said &said)
    {
        EXPECT_EQ(during([&] { EXPECT_EQ(DrvBootGetEnvValue(name), minus_one); }), said);
    }
};

TEST_F(EnvNumberTest, AreReadAsHexadecimal)
{
    const std::pair<std::string, std::uint32_t> values[] = {
        {"8", 8},
        {"08", 8},
        {"0x8", 8},
        {"0X1f", 0x1f},
        {"10", 0x10},
        {"1F", 31},
        {"ffffffff", ~0u},
        {"FFFFFFFE", 0xfffffffe},
        {"zz", 0},
        {" 8", 8},
        {"8x", 8},
        {"80000000", 0x80000000},
        {"-1", ~0u},
        {"8 9", 8},
        {"g", 0},
        {"0", 0},
        {"abc", 2748},
        {"12345678", 0x12345678},
        {std::string(254, '0') + "9", 9},
    };
    for (const auto &[value, wanted] : values) {
        ASSERT_EQ(SetEnv("a_number", value.c_str()), 0u);
        EXPECT_EQ(during([&, wanted = wanted] { EXPECT_EQ(DrvBootGetEnvValue("a_number"), wanted); }),
                  nothing())
            << value;
    }
    EXPECT_TRUE(operations().empty()); // another environment than the boot environment
}

TEST_F(EnvNumberTest, AMissingVariableIsTold)
{
    board.set_boot_env("a_number", "8");
    expect_missing("a_number", information("Env a_number not exist.\n"));
    expect_missing("another", information("Env another not exist.\n"));
    ASSERT_EQ(SetEnv("a_number", "8"), 0u);
    for (int result : {1, 2, -1, static_cast<int>(0x80000000)}) {
        answer_platform("GetEnv", result);
        expect_missing("a_number", information("Env a_number not exist.\n"));
    }
    EXPECT_EQ(DrvBootGetEnvValue("a_number"), 8u); // nothing is remembered
}

TEST_F(EnvNumberTest, ThePlatformFindsAnEmptyText)
{
    EXPECT_EQ(DrvBootGetEnvValue("filler"), minus_one);
    answer_platform("GetEnv", 0); // with nothing written
    EXPECT_EQ(during([] { EXPECT_EQ(DrvBootGetEnvValue("filler"), 0u); }), nothing());
}

} // namespace
} // namespace test
