// SPDX-License-Identifier: Apache-2.0
// A board that cannot tell all of itself: links are tried, files are neither extracted nor written to flash.
#include "install/oracle_test.hpp"

#include <filesystem>
#include <set>

namespace test
{
namespace
{

class UnreadTest : public OracleTest
{
  protected:
    // The bits of `unread` stand for hard type, pack type, service type and logic id.
    void become(std::uint32_t hard_type, unsigned unread)
    {
        fake.machine = {hard_type, 1, 102, 148, 0x32F0B000};
        if ((unread & 1) != 0)
            fake.machine.hard_type = std::nullopt;
        if ((unread & 2) != 0)
            fake.machine.pack_type = std::nullopt;
        if ((unread & 4) != 0)
            fake.machine.service_type = std::nullopt;
        if ((unread & 8) != 0)
            fake.machine.logic_id = std::nullopt;
    }
    // Files that get a link when each comes alone, without directories.
    std::set<std::string> linked_alone()
    {
        std::set<std::string> linked;
        for (const std::string &source : oracle.sources()) {
            expect_links({source});
            if (!fake.links.empty())
                linked.insert(std::filesystem::path(source).filename());
        }
        return linked;
    }
};

TEST_F(UnreadTest, EachRowByItselfIsTriedOrLeftOutAsTheRowsSay)
{
    for (std::uint32_t hard_type : {0x9002071Cu, 0x90020757u, 0x90B2077Du})
        for (unsigned unread : {0u, 1u, 2u, 4u, 8u, 15u})
            for (bool ptn : {false, true}) {
                become(hard_type, unread);
                fake.machine.ptn = ptn;
                SCOPED_TRACE(testing::PrintToString(fake.machine));
                linked_alone();
                ASSERT_NO_FATAL_FAILURE(expect_files());
            }
}

TEST_F(UnreadTest, WithoutAHardTypeEveryFileThatIsThereIsLinkedButThoseWhoseRowSaysNo)
{
    for (bool ptn : {false, true}) {
        become(0, 1);
        fake.machine.ptn = ptn;
        fake.machine.logic_id = 0;
        const std::set<std::string> linked = linked_alone();
        // These rows clear the flag before the board is asked.
        EXPECT_EQ(linked.count("keyFile_MOX_KYP467R.txt"), 0u);
        EXPECT_EQ(linked.count("keyFileV2_MOX_KYP467R.txt"), 0u);
        EXPECT_EQ(linked.count("default_ptn.cfg"), ptn ? 1u : 0u);
        // Files of logic ids, of which this board has none.
        EXPECT_EQ(linked.count("paf_wox415.bin"), 0u);
        for (const char *tried :
             {"bios_qs3540_mpu.bin", "bios_tk7100_mpu.bin", "HSM1.5_qs3540.bin", "libatom_np_sdk_7100.so",
              "keyFile_MOX.txt", "keyFile_MOX_Q7Z.txt", "paf_KYP247.bin", "paf_KYP_467R.bin", "default.cfg"})
            EXPECT_EQ(linked.count(tried), 1u) << tried;
        expect_links({root + "/../pkg_pool/program/current/res/mim/paf_KYP_467R.bin"});
        EXPECT_TRUE(fake.links.empty());
        // In ptn mode it leaves the flag alone when it fails, whatever the mode is.
        expect_links({root + "/../pkg_pool/program/current/res_ptn/mim/paf_KYP_467R.bin"});
        EXPECT_EQ(fake.links.size(), 1u);
    }
}

TEST_F(UnreadTest, WithoutAHardTypeNothingIsExtractedAndNothingWrittenToFlash)
{
    for (std::uint32_t flash : {0u, 1u, 2u}) {
        become(0, 1);
        fake.machine.flash = flash;
        expect_files();
        EXPECT_TRUE(fake.extracted.empty());
        EXPECT_TRUE(fake.preloaded.empty());
    }
}

TEST_F(UnreadTest, OtherAttributesDecideNeitherExtractionNorFlash)
{
    become(0x90020709, 0);
    expect_files();
    const auto extracted = fake.extracted;
    const auto preloaded = fake.preloaded;
    EXPECT_FALSE(extracted.empty());
    EXPECT_FALSE(preloaded.empty());
    become(0x90020709, 2 | 4 | 8);
    expect_files();
    EXPECT_EQ(fake.extracted, extracted);
    EXPECT_EQ(fake.preloaded, preloaded);
}

TEST_F(UnreadTest, EveryAttributeThatCannotBeReadIsReported)
{
    become(0x90020709, 0);
    be(&fake);
    MOX_AfterInstallRunFile(root.c_str());
    EXPECT_EQ(fake.failures_said, 0u);
    fake.machine.service_type = std::nullopt;
    MOX_AfterInstallRunFile(root.c_str());
    // The generic key files, the models' key files of both kinds, their feature files with and without ptn
    // mode.
    EXPECT_EQ(fake.failures_said, 2u + 2u + 3u + 2u + 3u);
    be(nullptr);
}

} // namespace
} // namespace test
