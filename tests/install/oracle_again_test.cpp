// SPDX-License-Identifier: Apache-2.0
// One installation after another over the same tree: what is kept, and what is made anew.
#include "install/oracle_install_test.hpp"

namespace test
{
namespace
{

using AgainTest = InstallationTest;

const Machine a_432v = {0x9002071C, 1, 113, 12, 0};

TEST_F(AgainTest, AModeSwitchedLaterDoesNotMoveLinksThatAreThere)
{
    deliver(oracle.sources());
    become(a_432v);
    Links before;
    for (bool ptn : {true, false, true}) {
        switch_mode(ptn);
        expect_links(before);
        before = links();
        EXPECT_EQ(target_of("conf/default.cfg"), "default_ptn.cfg");
        EXPECT_EQ(fs::read_symlink("/opt/moxv8/data/paf.dat").parent_path().parent_path().filename(),
                  "res_ptn");
    }
    clear_links();
    switch_mode(false);
    expect_links();
    EXPECT_EQ(target_of("conf/default.cfg"), "default.cfg");
    EXPECT_EQ(fs::read_symlink("/opt/moxv8/data/paf.dat").parent_path().parent_path().filename(), "res");
}

TEST_F(AgainTest, ASecondOneRenewsTheLinksOfBootFilesAndKeepsAllOthers)
{
    deliver(oracle.sources());
    become(a_432v);
    expect_links();
    // All of them lead elsewhere now.
    Links before = links();
    for (auto &[link, target] : before) {
        target = "/elsewhere/" + fs::path(link).filename().string();
        fs::remove(link);
        fs::create_symlink(target, link);
    }
    expect_links(before);
    EXPECT_EQ(links().at(root + "/../bootfile/bios_qs3540_mpu.bin"), "/boot/bios_qs3540_mpu.bin");
    EXPECT_EQ(links().at(root + "/../conf/keyFile_MOX.txt"), "/elsewhere/keyFile_MOX.txt");
    EXPECT_EQ(links().at(root + "/../module/libatom_np_sdk_3540.so"), "/elsewhere/libatom_np_sdk_3540.so");
}

TEST_F(AgainTest, ALogicIdOfItsOwnReplacesWhatTheModelHas)
{
    deliver(oracle.sources());
    Machine wanted = a_432v;
    wanted.logic_id = 0x42F0D000;
    become(wanted);
    for (int round = 0; round < 2; ++round) {
        expect_links(links());
        EXPECT_EQ(target_of("data/paf.dat"), "paf_wox_cpe_382l.bin");
    }
    // Without the later row's file the earlier one's counts.
    fs::remove("/opt/moxv8/pkg_pool/program/current/data/paf_wox_cpe_382l.bin");
    expect_links(links());
    EXPECT_EQ(target_of("data/paf.dat"), "paf_dub594h_r22.bin");
}

TEST_F(AgainTest, ADowngradeThatBringsFewerFilesLeavesTheLinksAsTheyAre)
{
    deliver(oracle.sources());
    become(a_432v);
    expect_links();
    const Links before = links();
    withdraw(oracle.sources());
    deliver(oracle.generic_sources());
    expect_links(before);
    EXPECT_EQ(links(), before); // also those of boot files: none is removed without a file to link to
    EXPECT_FALSE(fs::exists("/opt/moxv8/data/paf.dat"));
    clear_links();
    expect_links();
    EXPECT_EQ(links().size(), 3u);
}

TEST_F(AgainTest, ABoardThatBecomesAnotherKeepsWhatItsNewRowsDoNotRenew)
{
    deliver(oracle.sources());
    become(a_432v);
    expect_links();
    for (const Machine &next :
         {Machine{0x900005F4, 2, 113, 12, 0}, Machine{0x90B2077D, 0, 174, 12, 0x32F0B060},
          Machine{0x9000054B, 0, std::nullopt, 12, 0x42F08002}}) {
        const Links before = links();
        become(next);
        expect_links(before);
        EXPECT_GT(links().size(), before.size());
    }
}

} // namespace
} // namespace test
