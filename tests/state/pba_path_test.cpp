// SPDX-License-Identifier: Apache-2.0
// The boot image manager's directory, and the resource package of the work mode.
#include "state/mount_table.hpp"
#include "state/work_mode.hpp"

#include <cerrno>
#include <filesystem>

namespace test
{
namespace
{

constexpr const char *directory = "/opt/moxv8/bim";
constexpr const char *ram_disk = "none / tmpfs rw 0 0\n/dev/pramdisk /opt/moxv8/bim tmpfs rw 0 0\n";

class PbaPathTest : public BoardTest
{
  protected:
    std::array<char, 32> path = {};

    void SetUp() override
    {
        BoardTest::SetUp();
        std::filesystem::create_directory(directory);
    }
    void expect(std::uint32_t size, std::uint32_t result, const std::string &left, const Said &said)
    {
        path.fill('#');
        EXPECT_EQ(during([&] { EXPECT_EQ(MOX_GetPBAPath(path.data(), size), result); }), said) << size;
        EXPECT_EQ(std::string(path.data(), path.size()), left + std::string(path.size() - left.size(), '#'));
    }
    const Said not_there = failure("[PBA_Path]Path /opt/moxv8/bim not exist.\r\n\n");
};

TEST_F(PbaPathTest, IsGivenWhereTheRamDiskIsMounted)
{
    for (const std::uint32_t size : {17u, 18u, 32u}) {
        answer_mounts(ram_disk);
        expect(size, 0, std::string("/opt/moxv8/bim/") + '\0', nothing());
    }
    EXPECT_TRUE(operations().empty());
}

TEST_F(PbaPathTest, ABufferOf16BytesIsTooShort)
{
    forget_calls();
    for (std::uint32_t size = 1; size <= 16; ++size)
        expect(size, minus_one, "",
               failure(text("[PBA_Path]Buffer length(%u) is too short, need bigger than 16.\r\n\n", size)));
    EXPECT_TRUE(calls("opendir").empty()); // the directory is not looked at
}

TEST_F(PbaPathTest, NoBufferIsNoArgument)
{
    expect(0, minus_one, "", failure("[PBA_Path]Input para is invalid, len=0.\r\n\n"));
    for (const std::uint32_t size : {0u, 5u, 17u, 0xFFFFFFFFu})
        EXPECT_EQ(during([&] { EXPECT_EQ(MOX_GetPBAPath(nullptr, size), minus_one); }),
                  failure(text("[PBA_Path]Input para is invalid, len=%u.\r\n\n", size)));
}

TEST_F(PbaPathTest, AMissingDirectoryIsTold)
{
    std::filesystem::remove(directory);
    expect(32, minus_one, "", failure("[MemDirExist]Open dir /opt/moxv8/bim not success.\r\n\n") + not_there);
}

TEST_F(PbaPathTest, ADirectoryThatIsNotTheRamDiskIsTold)
{
    const Said said = failure("[MemDirExist]Getmntent_r of /opt/moxv8/bim not success.\r\n\n") + not_there;
    expect(32, minus_one, "", said); // by the real mount table
    for (const char *table :
         {"", "/dev/sda1 /opt/moxv8/bim ext4 rw 0 0\n", "/dev/pramdisk /opt/moxv8/bim/ tmpfs rw 0 0\n",
          "/dev/pramdisk /opt/moxv8/SoftResetData tmpfs rw 0 0\n"}) {
        answer_mounts(table);
        expect(32, minus_one, "", said);
    }
}

TEST_F(PbaPathTest, AnUnreadableMountTableIsTold)
{
    fail_libc("setmntent", EMFILE);
    expect(32, minus_one, "",
           failure("[MemDirExist]Setmntent of /opt/moxv8/bim not success.\r\n\n") + not_there);
}

TEST_F(PbaPathTest, ACopyThatFailsHandsOnItsCode)
{
    answer_mounts(ram_disk);
    answer_platform("strcpy_s", 77);
    expect(32, minus_one, "", failure("String print not success, return check code=77\n\n"));
}

// ---- the resource package --------------------------------------------------------------------------------

class ResPackageTest : public WorkModeTest
{
  protected:
    std::array<char, 32> name = {};

    void be_in(const char *mode)
    {
        set_memory("pack_type", "101");
        keep_mode(false);
        set("nextworkmode", mode);
    }
    std::int32_t ask(std::uint32_t size)
    {
        name.fill('#');
        return MOX_GetResPackage(name.data(), size);
    }
    // In its own room and in no smaller one.
    void expect(const std::string &package, const Said &said)
    {
        const auto room = static_cast<std::uint32_t>(package.size()) + 1;
        EXPECT_EQ(during([&] { EXPECT_EQ(ask(room), 0); }), said);
        EXPECT_EQ(std::string(name.data(), name.size()),
                  package + '\0' + std::string(name.size() - room, '#'));
        for (std::uint32_t size = 0; size < room; ++size) {
            EXPECT_EQ(during([&] { EXPECT_EQ(ask(size), -1); }),
                      said + failure("Memory copy not success, return check code=34\n\n"));
            EXPECT_EQ(std::string(name.data(), name.size()),
                      std::string(size, '\0') + std::string(name.size() - size, '#'));
        }
        answer_platform("memcpy_s", 77);
        EXPECT_EQ(during([&] { EXPECT_EQ(ask(32), -1); }),
                  said + failure("Memory copy not success, return check code=77\n\n"));
    }
};

TEST_F(ResPackageTest, ThePtnModeHasAPackageOfItsOwn)
{
    be_in("ptn_iot");
    expect("reslink_le_ptn", is_ptn_iot("nextworkmode"));
}

TEST_F(ResPackageTest, EveryOtherModeHasThePlainOne)
{
    for (const char *mode : {"base", "ptn_iot_x"}) {
        be_in(mode);
        expect("reslink_le", nothing());
    }
}

TEST_F(ResPackageTest, APackageTypeOutsideTheModeHasThePlainOne)
{
    be_in("ptn_iot");
    set_memory("pack_type", "113");
    expect("reslink_le", information("get cc val is 113\n"));
}

TEST_F(ResPackageTest, AnUnknownPackageTypeHasThePlainOne)
{
    expect("reslink_le", no_next);
}

TEST_F(ResPackageTest, ANullOutputIsReportedAndAsksNothing)
{
    EXPECT_EQ(during([&] { EXPECT_EQ(MOX_GetResPackage(nullptr, 32), -1); }),
              failure("Drvboot get res package not success for input arg is null\n"));
}

} // namespace
} // namespace test
