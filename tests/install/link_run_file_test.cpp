// SPDX-License-Identifier: Apache-2.0
// A whole installation's links on whole boards: what is said, what is called and what is linked, row by row.
#include "install/link_run_file_test.hpp"

namespace test
{
namespace
{

const BoardOf boards[] = {
    {"Q2VInIotMode", 0x90020709, "NAND", "ptn_iot", "0", "109", 0x42F06003},
    {"Q2VInBaseMode", 0x90020709, "NAND", "base", "0", "109", 0x42F0700A},
    {"Q7InIotMode", 0x9002071C, "SFC", "ptn_iot", "0", "0", 0x32F08200},
    {"NextBios", 0x90020757, "SFC", "base", "165", "0", 0x42F08002},
    {"SingleBackup", 0x90000713, "SFC", "base", "254", "0", 0x42F0D000},
    {"A53", 0x900005D9, "NOR", "base", "0", "0", 0x42F03001},
    {"Sfc", 0x9002077B, "NOR", "ptn_iot", "148", "0", 0x42F05003},
    {"R22", 0x90B2077D, "NOR", "base", "0", "0", 0x32F0B000},
    {"Unlisted", a_line_card, "NOR", "base", "0", "0", 0},
    {"Unreadable", 0, "NOR", "ptn_iot", "0", "0", 0x42F04000},
};

class LinkRunFileBoardTest : public LinkRunFileTest, public testing::WithParamInterface<BoardOf>
{
  protected:
    // A board whose hard type cannot be read has no other hard information either.
    std::optional<std::uint32_t> logic_id() const
    {
        return GetParam().hard_type == 0 ? std::nullopt : std::optional(GetParam().logic_id);
    }
};

// A second installation then finds the links of the first.
TEST_P(LinkRunFileBoardTest, GetsItsLinksByPredicateAndThenByLogicId)
{
    be_board(GetParam());
    deliver_all();
    expect_installed(logic_id());
    EXPECT_FALSE(expected.links.empty());
    expect_installed(logic_id());
}

TEST_P(LinkRunFileBoardTest, GetsLinksOnlyToWhatIsDelivered)
{
    be_board(GetParam());
    expect_installed(logic_id());
    EXPECT_TRUE(expected.links.empty());
    deliver_all(3);
    expect_installed(logic_id());
    deliver_all(2);
    expect_installed(logic_id());
}

INSTANTIATE_TEST_SUITE_P(Boards, LinkRunFileBoardTest, testing::ValuesIn(boards),
                         [](const auto &instance) { return std::string(instance.param.name); });

// ---- what is known of single boards ----------------------------------------------------------------------

TEST_F(LinkRunFileTest, TheIotModeHasItsConfigurationBeforeTheDefaultUnlessALinkIsThere)
{
    const std::string conf = root + "/../pkg_pool/program/current/conf/";
    const std::string configuration = root + "/../conf/default.cfg";
    be_board(boards[0]);
    deliver(conf + "default_ptn.cfg");
    deliver(conf + "default.cfg");
    during([&] { MOX_AfterInstallRunFile(root.c_str()); });
    EXPECT_EQ(at(configuration), "-> " + conf + "default_ptn.cfg");
    std::filesystem::remove(configuration);
    link(configuration, conf + "default.cfg");
    during([&] { MOX_AfterInstallRunFile(root.c_str()); });
    EXPECT_EQ(at(configuration), "-> " + conf + "default.cfg");

    std::filesystem::remove(configuration);
    be_board(boards[1]);
    during([&] { MOX_AfterInstallRunFile(root.c_str()); });
    EXPECT_EQ(at(configuration), "-> " + conf + "default.cfg");
}

TEST_F(LinkRunFileTest, ABootFilesLinkIsRenewedAndAFeatureFilesKept)
{
    be_board(boards[1]);
    deliver_all();
    const std::string bios = root + "/../bootfile/bios_qs3540_mpu.bin";
    const std::string paf = root + "/../data/paf.dat";
    link(bios, "earlier");
    link(paf, "earlier");
    during([&] { EXPECT_EQ(DrvBoot_InstallBootFile(g_linkFileDesc, DRVBOOT_LINK_FILES, root.c_str()), 0u); });
    EXPECT_EQ(at(bios), "-> /boot/bios_qs3540_mpu.bin");
    EXPECT_EQ(at(paf), "-> earlier");
}

TEST_F(LinkRunFileTest, TheLinkOfTheLogicIdReplacesTheModels)
{
    const std::string paf = root + "/../data/paf.dat";
    be_board(boards[1]);
    be_of(0x42F04000);
    deliver(root + "/../pkg_pool/program/current/data/paf_wox415.bin");
    link(paf, "the model's");
    during([&] { EXPECT_EQ(MOX_AfterInstallRunFile(root.c_str()), 0); });
    EXPECT_EQ(at(paf), "-> " + root + "/../pkg_pool/program/current/data/paf_wox415.bin");
}

TEST_F(LinkRunFileTest, ALogicIdThatCannotBeReadIsTheResult)
{
    be_board(boards[8]);
    refuse("/dev/slot17", 0x10002636, 0);
    deliver_all();
    expect_installed(std::nullopt);
    EXPECT_FALSE(expected.links.empty()); // of the walk by predicate
}

TEST_F(LinkRunFileTest, AFailedWalkByPredicateDoesNotStopTheOtherAndIsNotTheResult)
{
    be_board(boards[1]);
    be_of(0x42F04000);
    const std::string source = root + "/../pkg_pool/program/current/data/paf_wox415.bin";
    const std::string paf = root + "/../data/paf.dat";
    deliver(source);
    answer_libc("snprintf_s", -1); // of the first row that applies
    std::uint8_t flag = 1;
    ASSERT_EQ(DrvBoot_Qs3540(&flag, 0), 0u);
    ASSERT_EQ(flag, 1); // which is the first of all
    EXPECT_EQ(during([&] { EXPECT_EQ(MOX_AfterInstallRunFile(root.c_str()), 0); }),
              begins + by_predicate_not_ok + is_of(0x42F04000) +
                  encap_words(0, source, paf, "../pkg_pool/program/current/data", "../data") + linked(paf) +
                  done(0) + encap_row(g_linkEncapFileDesc, 53) +
                  absent(root + "/../pkg_pool/program/current/conf/keyFile_MOX_WOX415.txt") +
                  gone(53, root + "/../pkg_pool/program/current/conf/keyFile_MOX_WOX415.txt") + done(53) +
                  encap_row(g_linkEncapFileDesc, 88) +
                  absent(root + "/../pkg_pool/program/current/conf/keyFileV2_MOX_WOX415.txt") +
                  gone(88, root + "/../pkg_pool/program/current/conf/keyFileV2_MOX_WOX415.txt") + done(88) +
                  ends);
    EXPECT_EQ(at(paf), "-> " + source);
}

TEST_F(LinkRunFileTest, ARootThatIsTooLongFailsBothWalks)
{
    be_board(boards[1]);
    be_of(0x42F01000); // one row
    const std::string long_root = "/" + std::string(400, 'r');
    EXPECT_EQ(during([&] { EXPECT_EQ(MOX_AfterInstallRunFile(long_root.c_str()), -1); }),
              begins + by_predicate_not_ok + is_of(0x42F01000) + done(4, minus_one) + by_logic_id_not_ok +
                  ends);
}

TEST_F(LinkRunFileTest, ANullRootFailsBothWalks)
{
    be_board(boards[1]);
    EXPECT_EQ(during([] { EXPECT_EQ(MOX_AfterInstallRunFile(nullptr), -1); }),
              begins + by_predicate_not_ok + is_of(boards[1].logic_id) + by_logic_id_not_ok + ends);
}

} // namespace
} // namespace test
