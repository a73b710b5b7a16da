// SPDX-License-Identifier: Apache-2.0
// Before a new operating system starts: one way for next generation boards, another for all others.
#include "board/family_rows.hpp"
#include "install/preload_test.hpp"

#include <cerrno>

namespace test
{
namespace
{

const Said begin = information("Drvboot pre install os begin\n");

Said ended(const std::string &result)
{
    return information("Drvboot pre install os end(ret is 0x" + result + ")\n");
}

const Words refreshed = {"refresh nor"};

using NotifyTest = UpdaterTest;

TEST_F(NotifyTest, NextGenerationBoardsArePreloaded)
{
    for (std::uint32_t hard_type : ng_boards) {
        be_board(hard_type, "NAND");
        asked.clear();
        forget_calls();
        EXPECT_EQ(during([&] { EXPECT_EQ(MOX_NotifyPdtAfterPreInstallOS(), 0u); }),
                  begin + enter + end + ended("0"));
        EXPECT_EQ(asked, updates_of(hard_type, 1)) << std::hex << hard_type;
        EXPECT_EQ(steps(), (Words{"syslog", "syslog", "dlopen", "dlclose", "syslog", "syslog"}));
    }
}

TEST_F(NotifyTest, AllOtherBoardsHaveTheirNorFlashRefreshed)
{
    on_refresh = [] { return 0u; };
    unsigned boards = 0;
    const Said said = during([&] {
        for (std::uint32_t hard_type : family_candidates()) {
            if (holds(ng_boards, hard_type))
                continue;
            ++boards;
            be_board(hard_type, "NAND");
            asked.clear();
            EXPECT_EQ(MOX_NotifyPdtAfterPreInstallOS(), 0u);
            EXPECT_EQ(asked, refreshed) << std::hex << hard_type;
        }
    });
    EXPECT_EQ(said.trace.size(), std::size_t{2} * boards);
    EXPECT_GE(boards, 100u);
    EXPECT_TRUE(calls("dlopen").empty());
}

TEST_F(NotifyTest, TheResultOfTheRefreshIsHandedOn)
{
    be(a_line_card);
    const std::pair<std::uint32_t, const char *> results[] = {
        {0, "0"}, {1, "1"}, {0x1234abcd, "1234abcd"}, {0x80000000, "80000000"}, {0xffffffff, "ffffffff"}};
    for (const auto &[result, digits] : results) {
        on_refresh = [given = result] { return given; };
        asked.clear();
        EXPECT_EQ(during([&, given = result] { EXPECT_EQ(MOX_NotifyPdtAfterPreInstallOS(), given); }),
                  begin + ended(digits));
        EXPECT_EQ(asked, refreshed);
    }
}

TEST_F(NotifyTest, ABoardThatCannotTellItsTypeIsNoneOfTheNextGeneration)
{
    be_board(0x90020709, "NAND");
    on_refresh = [] { return 0x77u; };
    refuse(board0, item_hard_type);
    EXPECT_EQ(during([&] { EXPECT_EQ(MOX_NotifyPdtAfterPreInstallOS(), 0x77u); }),
              begin + type_unread("Drvboot get board type unsuccessfully.\n") + ended("77"));
    EXPECT_EQ(asked, refreshed);
    deny(board0, EACCES);
    asked.clear();
    EXPECT_EQ(MOX_NotifyPdtAfterPreInstallOS(), 0x77u);
    EXPECT_EQ(asked, refreshed);
    EXPECT_TRUE(calls("dlopen").empty());
    asked.clear();
    EXPECT_EQ(MOX_NotifyPdtAfterPreInstallOS(), 0u); // nothing is remembered
    EXPECT_EQ(asked.size(), 2u);
}

TEST_F(NotifyTest, AnUpdaterThatIsNotThereIsTheResult)
{
    be_board(0x90020709, "NAND");
    spoil_front(updater);
    EXPECT_EQ(during([&] { EXPECT_EQ(MOX_NotifyPdtAfterPreInstallOS(), minus_one); }),
              begin + enter + information("[Preload]dlopen drv_basic unsuccessfully.\n") + ended("ffffffff"));
    copy_to_front(updater, EMPTY_UPDATER);
    EXPECT_EQ(during([&] { EXPECT_EQ(MOX_NotifyPdtAfterPreInstallOS(), minus_one); }),
              begin + enter + failure("[Preload]dlsym drv update interface unsuccessfully.\n") +
                  ended("ffffffff"));
    EXPECT_TRUE(asked.empty()) << "the NOR flash is no way out";
}

TEST_F(NotifyTest, AFileThatIsNotWrittenIsTheResult)
{
    be_board(0x90020709, "NAND");
    const std::string path = "/boot/bios_qs3540_nand_mpu.bin";
    put_file(path);
    on_update = refusing(path, 3);
    EXPECT_EQ(during([&] { EXPECT_EQ(MOX_NotifyPdtAfterPreInstallOS(), minus_one); }),
              begin + enter + not_written(path, 256) + ended("ffffffff"));
    EXPECT_EQ(asked, Words{"update 256 " + path});
    EXPECT_EQ(steps(), (Words{"syslog", "syslog", "dlopen", "syslog", "dlclose", "syslog"}));
}

} // namespace
} // namespace test
