// SPDX-License-Identifier: Apache-2.0
// Which boot files each board takes out of a package, and what an installation says of it.
#include "board/family_rows.hpp"
#include "install/boot_file_test.hpp"

#include <algorithm>

namespace test
{
namespace
{

class BootFileBoardsTest : public BootFileTest
{
  protected:
    static const FamilyRow &family(const char *name)
    {
        return *std::find_if(family_rows.begin(), family_rows.end(),
                             [name](const FamilyRow &row) { return std::string(row.name) == name; });
    }
    void be_with(std::uint32_t hard_type, const char *medium)
    {
        be(hard_type);
        board.set_boot_env("BOOTMEDIA", medium);
        taken.clear();
    }
    static Said begins(std::uint32_t phase, const std::string &package, const std::string &path)
    {
        return reported(1, text("Drvboot install pkg %s, Phase %u, install path %s\n", package.c_str(), phase,
                                path.c_str()));
    }
    const Said ends = information("Drvboot install pkg end\n");
    const Said not_ok = failure("Drvboot install pkg NOK\n");

    // An installation that says no more than that it begins and ends. The files' names.
    std::vector<std::string> installed()
    {
        EXPECT_EQ(during([] { EXPECT_EQ(MOX_InstallPkgNotify(3, "/home/a.cc", "/opt/moxv8"), 0); }),
                  begins(3, "/home/a.cc", "/opt/moxv8") + ends);
        std::vector<std::string> names;
        for (const Taken &one : taken) {
            EXPECT_EQ(one.package, "/home/a.cc");
            EXPECT_EQ(one.destination.substr(0, 6), "/boot/");
            EXPECT_EQ(one.mode, 0755u);
            names.push_back(one.destination.substr(6));
        }
        return names;
    }
    static std::vector<std::string> only_bios(const std::vector<std::string> &names)
    {
        std::vector<std::string> some;
        std::copy_if(names.begin(), names.end(), std::back_inserter(some),
                     [](const std::string &name) { return name.compare(0, 5, "bios_") == 0; });
        return some;
    }
};

using Names = std::vector<std::string>;

TEST_F(BootFileBoardsTest, EveryBoardTakesTheFilesOfItsFamiliesInOrder)
{
    EXPECT_EQ(during([&] {
                  for (const auto &[medium, flash] : {std::pair{"NOR", 0u}, {"NAND", 1u}, {"SFC", 2u}})
                      for (std::uint32_t hard_type : family_candidates()) {
                          be_with(hard_type, medium);
                          std::vector<Taken> expected;
                          for (const BootFileRow &file : boot_file_rows) {
                              const FamilyRow &row = family(file.predicate);
                              if (holds(row.types, hard_type) &&
                                  (!row.flashes || row.flashes->count(flash) != 0))
                                  expected.push_back({"p", "/boot/" + file.name, file.id, 0755});
                          }
                          EXPECT_EQ(DrvBoot_ExtractBootFileXTN("p", g_bootFileDesc, 22, "/boot"), 0u);
                          EXPECT_EQ(taken, expected) << std::hex << hard_type << ' ' << medium;
                      }
              }),
              nothing());
}

TEST_F(BootFileBoardsTest, ANextBiosBoardTakesTheBiosOfItsFlash)
{
    be_with(0x90020757, "NAND");
    EXPECT_EQ(only_bios(installed()), (Names{"bios_qs3540_nand_mpu.bin"}));
    EXPECT_EQ(taken.front().id, 0xA1200501u);
    be_with(0x90020757, "SFC");
    EXPECT_EQ(only_bios(installed()), (Names{"bios_qs3540_mpu_nextgen.bin"}));
    EXPECT_EQ(taken.back().id, 0xA1210001u);
}

TEST_F(BootFileBoardsTest, AFirstBiosBoardWithNandTakesBoth)
{
    be_with(0x90020709, "NAND");
    EXPECT_EQ(installed(), (Names{"bios_qs3540_mpu.bin", "bios_qs3540_nand_mpu.bin", "signature_filelist.bin",
                                  "signature_cms.bin", "signature_crl.bin", "ospkg_qs3540_mpu.bin"}));
    EXPECT_EQ(taken.at(0).id, 0x08000005u);
    EXPECT_EQ(taken.at(1).id, 0xA1200501u);
}

TEST_F(BootFileBoardsTest, SingleBoardsTakeTheirFiles)
{
    be_with(0x900005D9, "NOR");
    EXPECT_EQ(installed(), (Names{"bios_tk7100_mpu.bin", "uImage_tk7100_mpu.bin", "initrd_tk7100_mpu.img",
                                  "dtb_tk7100_mpu.bin"}));
    be_with(0x90000713, "SFC");
    EXPECT_EQ(installed(), (Names{"bios_qs3520_mpu_sfc.bin", "uImage_qs3520_mpu.bin", "initrd_qs3520_mpu.img",
                                  "dtb_qs3520_mpu.bin"}));
    be_with(0x90000713, "NAND");
    EXPECT_EQ(installed().front(), "bios_qs3520_mpu.bin");
    be_with(0x90020786, "NOR"); // a next generation board, but no Qs3540 one
    EXPECT_EQ(installed(),
              (Names{"ospkg_qs3540_mpu.bin", "bios_qs3520_mpu_sfc_nextgen.bin", "ospkg_qs3520_mpu.bin"}));
    be_with(a_line_card, "NOR");
    EXPECT_EQ(installed(), Names{});
}

TEST_F(BootFileBoardsTest, SignaturesGoToAllQs3540BoardsAndNoOther)
{
    for (std::uint32_t hard_type : family_candidates()) {
        be_with(hard_type, "NOR");
        EXPECT_EQ(DrvBoot_ExtractBootFileXTN("p", g_bootFileDesc, 22, "/boot"), 0u);
        const auto signatures = std::count_if(taken.begin(), taken.end(), [](const Taken &one) {
            return one.destination.find("signature_") != std::string::npos;
        });
        EXPECT_EQ(signatures, holds(qs3540, hard_type) ? 3 : 0) << std::hex << hard_type;
    }
}

TEST_F(BootFileBoardsTest, AFailedBiosIsRememberedUntilTheNextInstallation)
{
    be_with(0x90020709, "NAND");
    for (const auto &[name, flag] : {std::pair{"bios_qs3540_mpu.bin", 1u},
                                     {"bios_qs3540_nand_mpu.bin", 1u},
                                     {"ospkg_qs3540_mpu.bin", 0u},
                                     {"signature_cms.bin", 0u}}) {
        refusals = {{std::string("/boot/") + name, 1}};
        EXPECT_EQ(during([] { EXPECT_EQ(MOX_InstallPkgNotify(0, "p", "i"), 0); }),
                  begins(0, "p", "i") + not_extracted(name) + ends);
        EXPECT_EQ(g_nandFlashDeleteFlag, flag) << name;
    }
    be_with(0x9000054A, "NOR");
    refusals = {{"/boot/uImage_qs3540_mpu.bin", 1}};
    during([] { EXPECT_EQ(MOX_InstallPkgNotify(0, "p", "i"), 0); });
    EXPECT_EQ(g_nandFlashDeleteFlag, 0u);
}

TEST_F(BootFileBoardsTest, TheFlagIsClearedBeforeAnythingIsTaken)
{
    be_with(0x90020709, "NAND");
    g_nandFlashDeleteFlag = 1;
    std::vector<std::uint32_t> flags;
    while_taking = [&flags] { flags.push_back(g_nandFlashDeleteFlag); };
    installed();
    EXPECT_EQ(flags, std::vector<std::uint32_t>(6, 0));
    be_with(a_line_card, "NAND"); // also when nothing is
    g_nandFlashDeleteFlag = 1;
    installed();
    EXPECT_EQ(g_nandFlashDeleteFlag, 0u);
}

TEST_F(BootFileBoardsTest, AHardTypeThatCannotBeReadTakesNothing)
{
    for (const bool opens : {false, true}) {
        be_with(0x90020709, "NAND");
        opens ? refuse(board0, item_hard_type, 0) : deny(board0, EACCES, 0);
        Said said = begins(0, "p", "i");
        for (const BootFileRow &file : boot_file_rows) {
            const FamilyRow &row = family(file.predicate);
            for (const std::string &words : row.asked)
                said = said +
                       failure(text("Not succeed to get board hardtype,ret=0x%x.\n",
                                    opens ? err_ioctl : minus_one)) +
                       failure(words);
            if (!row.own.empty())
                said = said + failure(row.own);
        }
        EXPECT_EQ(during([] { EXPECT_EQ(MOX_InstallPkgNotify(0, "p", "i"), 0); }), said + ends);
        EXPECT_TRUE(taken.empty());
        board.clear_faults();
    }
}

TEST_F(BootFileBoardsTest, AFailedPrintMakesTheInstallationNotOk)
{
    be_with(0x90020709, "NAND");
    g_nandFlashDeleteFlag = 1;
    answer_libc("snprintf_s", -7, 2);
    EXPECT_EQ(during([] { EXPECT_EQ(MOX_InstallPkgNotify(0, "p", "i"), -7); }),
              begins(0, "p", "i") + failure("String print unsuccessfully, return check code=-7\n") + not_ok +
                  ends);
    EXPECT_EQ(taken.size(), 2u);
    EXPECT_EQ(g_nandFlashDeleteFlag, 0u);
}

TEST_F(BootFileBoardsTest, PhaseAndPathAreOnlyTold)
{
    be_with(0x9000054A, "NOR");
    for (std::uint32_t phase : {0u, 1u, 0x7FFFFFFFu, minus_one})
        for (const char *path : {"", "/opt", "%s"}) {
            taken.clear();
            EXPECT_EQ(during([&] { EXPECT_EQ(MOX_InstallPkgNotify(phase, "p", path), 0); }),
                      begins(phase, "p", path) + ends);
            EXPECT_EQ(taken.size(), 6u);
        }
    taken.clear();
    EXPECT_EQ(during([&] { EXPECT_EQ(MOX_InstallPkgNotify(0, std::string(300, 'p').c_str(), "i"), 0); }),
              begins(0, std::string(300, 'p'), "i") + ends);
    EXPECT_EQ(taken.at(0).package, std::string(300, 'p'));
}

TEST_F(BootFileBoardsTest, ANullPackageIsNotOk)
{
    be_with(0x90020709, "NAND");
    const Said said = during([] { EXPECT_EQ(MOX_InstallPkgNotify(0, nullptr, nullptr), -1); });
    ASSERT_EQ(said.trace.size(), 3u);
    EXPECT_EQ(said.trace.at(1), not_ok.trace.at(0));
    EXPECT_EQ(said.trace.at(2), ends.trace.at(0));
    EXPECT_TRUE(taken.empty());
}

} // namespace
} // namespace test
