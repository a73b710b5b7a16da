// SPDX-License-Identifier: Apache-2.0
// From a package's notice to the flash areas, with the platform's stand-ins for the updater and the NOR area.
#include "install/preload_test.hpp"

namespace test
{
namespace
{

namespace fs = std::filesystem;

const fs::path flash = "/opt/moxv8/var/flash";

class ChainTest : public PreloadTest
{
  protected:
    void SetUp() override
    {
        fs::remove_all(flash);
        PreloadTest::SetUp();
        // A package of files that are named in their contents.
        on_extract = [this](const std::string &destination) {
            if (lacking.count(destination) != 0)
                return 1u;
            put_file(destination, version + fs::path(destination).filename().string());
            return 0u;
        };
    }
    std::uint32_t install()
    {
        EXPECT_EQ(MOX_InstallPkgNotify(2, "/tmp/package", "/tmp/root"), 0);
        return MOX_NotifyPdtAfterPreInstallOS();
    }
    // "startup-256: content" of each file in the flash.
    static std::set<std::string> areas()
    {
        std::set<std::string> all;
        if (fs::exists(flash))
            for (const auto &entry : fs::directory_iterator(flash)) {
                std::ifstream file(entry.path(), std::ios::binary);
                all.insert(entry.path().filename().string() + ": " +
                           std::string{std::istreambuf_iterator<char>(file), {}});
            }
        return all;
    }

    std::string version = "1 ";
    std::set<std::string> lacking;
};

TEST_F(ChainTest, TheFilesOfABoardWithNandReachTheirAreas)
{
    be_board(0x90020709, "NAND");
    EXPECT_EQ(install(), 0u);
    EXPECT_EQ(areas(), (std::set<std::string>{"startup-256: 1 bios_qs3540_nand_mpu.bin",
                                              "startup-260: 1 ospkg_qs3540_mpu.bin"}));
    version = "2 ";
    EXPECT_EQ(install(), 0u);
    EXPECT_EQ(areas(), (std::set<std::string>{"startup-256: 2 bios_qs3540_nand_mpu.bin",
                                              "startup-260: 2 ospkg_qs3540_mpu.bin"}));
}

TEST_F(ChainTest, TheFilesOfABoardWithASecurityModuleReachTheirAreas)
{
    be_board(0x9002202a, "SFC");
    EXPECT_EQ(install(), 0u);
    EXPECT_EQ(areas(), (std::set<std::string>{"startup-256: 1 bios_qs3540_mpu_sfc.bin",
                                              "startup-260: 1 ospkg_qs3540_mpu.bin",
                                              "startup-265: 1 HSM1.5_qs3540.bin"}));
}

TEST_F(ChainTest, ABiosThatCouldNotBeExtractedIsDeletedAndComesBackWithTheNextPreload)
{
    be_board(0x90020709, "NAND");
    EXPECT_EQ(install(), 0u);
    version = "2 ";
    lacking = {"/boot/bios_qs3540_nand_mpu.bin"};
    EXPECT_EQ(install(), 0u);
    EXPECT_EQ(areas(), std::set<std::string>{"startup-260: 2 ospkg_qs3540_mpu.bin"});
    // The old file still lies there, and the flag was used up.
    EXPECT_EQ(MOX_NotifyPdtAfterPreInstallOS(), 0u);
    EXPECT_EQ(areas(), (std::set<std::string>{"startup-256: 1 bios_qs3540_nand_mpu.bin",
                                              "startup-260: 2 ospkg_qs3540_mpu.bin"}));
}

TEST_F(ChainTest, ABiosOfAnotherNameThatCouldNotBeExtractedCountsAsWell)
{
    be_board(0x90020709, "NAND"); // extracts the BIOS for other flash, too
    lacking = {"/boot/bios_qs3540_mpu.bin"};
    EXPECT_EQ(install(), 0u);
    EXPECT_EQ(areas(), std::set<std::string>{"startup-260: 1 ospkg_qs3540_mpu.bin"});
}

TEST_F(ChainTest, AFileThatTheBoardNeverHadIsNoError)
{
    be_board(0x90020709, "NAND");
    lacking = {"/boot/ospkg_qs3540_mpu.bin"};
    EXPECT_EQ(MOX_InstallPkgNotify(2, "/tmp/package", "/tmp/root"), 0);
    EXPECT_EQ(g_nandFlashDeleteFlag, 0u);
    EXPECT_EQ(during([] { EXPECT_EQ(MOX_NotifyPdtAfterPreInstallOS(), 0u); }),
              information("Drvboot pre install os begin\n") + enter +
                  not_written("/boot/ospkg_qs3540_mpu.bin", 260) + end +
                  information("Drvboot pre install os end(ret is 0x0)\n"));
    EXPECT_EQ(areas(), std::set<std::string>{"startup-256: 1 bios_qs3540_nand_mpu.bin"});
}

TEST_F(ChainTest, AFlashThatTakesNothingStopsAtTheBios)
{
    be_board(0x90020709, "NAND");
    put_file(flash.string(), "no folder");
    EXPECT_EQ(MOX_InstallPkgNotify(2, "/tmp/package", "/tmp/root"), 0);
    EXPECT_EQ(during([] { EXPECT_EQ(MOX_NotifyPdtAfterPreInstallOS(), minus_one); }),
              information("Drvboot pre install os begin\n") + enter +
                  not_written("/boot/bios_qs3540_nand_mpu.bin", 256) +
                  information("Drvboot pre install os end(ret is 0xffffffff)\n"));
    EXPECT_TRUE(fs::is_regular_file(flash));
}

TEST_F(ChainTest, OtherBoardsHaveTheirNorAreaRefreshed)
{
    be(0x9000054a);
    for (const char *count : {"1", "2"}) {
        EXPECT_EQ(install(), 0u);
        const std::string area = "nor-data-area: refreshed=" + std::string(count) + '\0';
        EXPECT_EQ(areas(), (std::set<std::string>{area, "nor-data-area.lock: "}));
    }
    EXPECT_EQ(asked, (Words{"refresh nor", "refresh nor"}));
}

} // namespace
} // namespace test
