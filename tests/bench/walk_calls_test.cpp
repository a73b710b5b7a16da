// SPDX-License-Identifier: Apache-2.0
// The walks of an installation make exactly the system calls, and ask the driver and the platform exactly as
// often, as their tables imply.
#include "bench/implied_calls.hpp"
#include "bench/thin_board.hpp"

#include <moxboot/moxboot.h>

#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

namespace bench
{

// Found by what prints the cases.
void PrintTo(const Attributes &board, std::ostream *out)
{
    *out << std::hex << board.hard_type << ' ' << board.flash << ' ' << board.logic_id << std::dec << " pack "
         << board.pack_type << " service " << board.service_type << (board.ptn ? " ptn" : "");
}

} // namespace bench

namespace
{

namespace fs = std::filesystem;

constexpr const char *root = "/opt/moxv8/main";

class WalkCalls : public testing::TestWithParam<bench::Attributes>
{
  protected:
    void SetUp() override
    {
        for (const char *folder : {".", "../bootfile", "../module", "../conf", "../data"})
            fs::create_directories(fs::path(root) / folder);
        bench::be(GetParam());
    }
    // The library's lines go nowhere meanwhile.
    static void quietly(const std::function<void()> &action)
    {
        std::fflush(stdout);
        const int before[] = {dup(STDOUT_FILENO), dup(STDERR_FILENO)};
        const int nowhere = open("/dev/null", O_WRONLY);
        dup2(nowhere, STDOUT_FILENO);
        dup2(nowhere, STDERR_FILENO);
        action();
        std::fflush(stdout);
        dup2(before[0], STDOUT_FILENO);
        dup2(before[1], STDERR_FILENO);
        for (const int fd : {before[0], before[1], nowhere})
            close(fd);
    }
    static void expect_same(const std::function<bench::Counts()> &implied,
                            const std::function<void()> &action)
    {
        bench::Counts expected;
        bench::Counts made;
        quietly([&] {
            expected = implied();
            made = bench::counted(bench::calls_during(action));
        });
        EXPECT_EQ(made, expected);
    }
    static void walk()
    {
        EXPECT_EQ(DrvBoot_InstallBootFile(g_linkFileDesc, DRVBOOT_LINK_FILES, root), 0u);
        EXPECT_EQ(DrvBoot_Encap_InstallBootFile(g_linkEncapFileDesc, DRVBOOT_ENCAP_LINK_FILES, root), 0u);
    }
    static void expect_implied()
    {
        expect_same([] { return bench::implied_by_links(root); }, walk);
    }
    // Some of the sources; all, with a part of 1.
    template <typename Table>
    static void deliver(const Table &table, unsigned part)
    {
        unsigned number = 0;
        for (const auto &row : table) {
            const fs::path folder = row.source_directory;
            const fs::path path =
                ((folder.is_absolute() ? folder : root / folder) / row.source_file).lexically_normal();
            fs::create_directories(path.parent_path());
            if (number++ % part == 0)
                std::ofstream(path) << "x";
        }
    }
};

TEST_P(WalkCalls, LinksTakeWhatTheirRowsImplyAndNothingElse)
{
    expect_implied(); // no source is there
    deliver(g_linkFileDesc, 2);
    deliver(g_linkEncapFileDesc, 2);
    expect_implied();
    deliver(g_linkFileDesc, 1);
    deliver(g_linkEncapFileDesc, 1);
    expect_implied(); // some links are there
    expect_implied(); // all are
}

TEST_P(WalkCalls, ExtractionTakesWhatItsRowsImplyAndNothingElse)
{
    expect_same(bench::implied_by_extraction, [] {
        EXPECT_EQ(DrvBoot_ExtractBootFileXTN("package", g_bootFileDesc, DRVBOOT_BOOT_FILES, "/boot"), 0u);
    });
}

INSTANTIATE_TEST_SUITE_P(Boards, WalkCalls,
                         testing::Values(bench::Attributes{0x90020709, "NAND", 3, 0x42F06000, 100, false},
                                         bench::Attributes{0x90020757, "NAND", 165, 0x6001, 165, true},
                                         bench::Attributes{0x90020757, "SFC", 3, 0x6001, 102, false},
                                         bench::Attributes{0x90020720, "SFC", 148, 0x6001, 157, true},
                                         bench::Attributes{0x9002202A, "SFC", 148, 0x6001, 157, false},
                                         bench::Attributes{0x9002071C, "NAND", 253, 0x32F08300, 100, true},
                                         bench::Attributes{0x9002071F, "NOR", 3, 0x42F07003, 100, true},
                                         bench::Attributes{0x90B2077D, "NAND", 3, 0x32F0B060, 174, false},
                                         bench::Attributes{0x900005F8, "SFC", 8, 0x9001, 114, false},
                                         bench::Attributes{0x90000713, "SFC", 254, 0x42F0D000, 254, true},
                                         bench::Attributes{0x9000054B, "NOR", 3, 0x42F0C000, 100, false},
                                         bench::Attributes{0x90000758, "NAND", 3, 0x42F08002, 169, true},
                                         bench::Attributes{0x900034B9, "NOR", 0, 0, 0, false}));

} // namespace
