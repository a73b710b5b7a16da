// SPDX-License-Identifier: Apache-2.0
// A whole installation's links on whole boards: what is said, what is called and what is linked, row by row.
#include "install/boot_file_rows.hpp"
#include "install/link_encap_test.hpp"
#include "install/link_rows.hpp"

#include <moxboot/platform.h>

#include <algorithm>
#include <map>
#include <optional>

namespace test
{
namespace
{

const Said begins = information("\nDrvboot install run file begin...\n");
const Said by_predicate_not_ok = information("Drvboot install run file NOK\n");
const Said by_logic_id_not_ok = information("Drvboot encap install run file NOK\n");
const Said ends = information("Drvboot install run file end\n");

struct BoardOf {
    const char *name;
    std::uint32_t hard_type; // 0: cannot be read
    const char *medium;
    const char *work_mode;
    const char *service_type;
    const char *pack_type;
    std::uint32_t logic_id;
};

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

class LinkRunFileTest : public LinkEncapTest
{
  protected:
    void be_board(const BoardOf &one)
    {
        be(one.hard_type);
        be_of(one.logic_id);
        if (one.hard_type == 0)
            refuse(board0, item_hard_type, 0);
        board.set_boot_env("BOOTMEDIA", one.medium);
        board.set_boot_env("product_service_type", one.service_type);
        for (const char *name : {"curworkmode", "nextworkmode"})
            ASSERT_EQ(SetEnv(name, one.work_mode), 0u);
        ASSERT_EQ(bsp_setenv_s("lcs_reset_flag", "0", 2), 0u);
        const std::string pack_type = one.pack_type;
        ASSERT_EQ(bsp_setenv_s("pack_type", one.pack_type, static_cast<std::uint32_t>(pack_type.size() + 1)),
                  0u);
    }
    std::string below_root(const std::string &path) const
    {
        return path[0] == '/' ? path : root + "/" + path;
    }
    // Delivers every `step`th source of all rows.
    void deliver_all(std::size_t step = 1)
    {
        std::size_t count = 0;
        for (const LinkRow &row : link_rows)
            if (count++ % step == 0)
                deliver(below_root(row.source));
        for (const EncapRow &row : encap_rows())
            if (count++ % step == 0)
                deliver(below_root(row.source));
    }
    void TearDown() override
    {
        LinkEncapTest::TearDown();
        for (const LinkRow &row : link_rows)
            if (row.source[0] == '/')
                std::filesystem::remove(row.source);
    }

    // What an installation should do, made up row by row from the tests' own tables and the predicates'
    // own answers; `links` is what is linked before and after.
    struct Expected {
        std::map<std::string, std::string> links;
        Said said;
        std::vector<std::string> files; // calls
    } expected;

    static bool is_boot_file(const std::string &name)
    {
        return std::any_of(boot_file_rows.begin(), boot_file_rows.end(), [&](const BootFileRow &row) {
            return name.compare(0, row.name.size(), row.name) == 0;
        });
    }
    void call(const char *function, const std::string &path)
    {
        expected.files.push_back(function + (" " + path));
    }
    void say(const Said &said)
    {
        expected.said = expected.said + said;
    }
    bool expect_applies(const LinkRow &row)
    {
        std::uint8_t flag = 1;
        if (row.predicate != nullptr)
            say(during([&] { row.predicate(&flag, 0); }));
        return flag != 0;
    }
    bool expect_source(const std::string &source)
    {
        call("access", source);
        const bool there = std::filesystem::exists(source);
        if (!there)
            say(absent(source));
        return there;
    }
    void expect_row(unsigned i)
    {
        const std::string source = below_root(link_rows[i].source);
        const std::string destination = below_root(link_rows[i].destination);
        if (!expect_applies(link_rows[i]))
            return;
        say(row(i, source, destination));
        if (!expect_source(source))
            return;
        if (is_boot_file(split(source).second)) {
            call("unlink", destination);
            expected.links.erase(destination);
        }
        call("readlink", destination);
        if (expected.links.count(destination) != 0) {
            say(kept(i, expected.links[destination]));
            return;
        }
        call("symlink", destination);
        expected.links[destination] = source;
    }
    void expect_encap_row(unsigned i, const EncapRow &one)
    {
        const std::string source = below_root(one.source);
        const std::string destination = below_root(one.destination);
        call("readlink", destination);
        say(encap_words(i, source, destination, split(one.source).first, split(one.destination).first));
        if (!expect_source(source)) {
            say(gone(i, source) + done(i));
            return;
        }
        const bool replaced = expected.links.count(destination) != 0;
        if (replaced)
            say(replaces(i, expected.links[destination]));
        call(replaced ? "unlink" : "access", destination);
        call("symlink", destination);
        say(linked(destination) + done(i));
        expected.links[destination] = source;
    }
    // Without a logic id: none can be read.
    void expect_installation(std::optional<std::uint32_t> logic_id)
    {
        expected.said = begins;
        expected.files.clear();
        for (unsigned i = 0; i < link_rows.size(); ++i)
            expect_row(i);
        if (!logic_id) {
            say(failure("Drvboot get local logic id not success, excute cmd return 0x2710\n") +
                failure("Drvboot get local encap logic id NOK, return 0x2710\n") + by_logic_id_not_ok + ends);
            return;
        }
        say(is_of(*logic_id));
        const std::vector<EncapRow> rows = encap_rows();
        for (unsigned i = 0; i < rows.size(); ++i)
            if (rows[i].logic_id == *logic_id)
                expect_encap_row(i, rows[i]);
        say(ends);
    }
    // The links below the place.
    std::map<std::string, std::string> links_made() const
    {
        std::map<std::string, std::string> links;
        for (const char *directory : {"../bootfile", "../conf", "../data", "../module"})
            for (const auto &entry : std::filesystem::directory_iterator(root + "/" + directory))
                links[entry.path().string()] = std::filesystem::read_symlink(entry.path()).string();
        return links;
    }
    // The calls for files, without those that ask the board.
    static std::vector<std::string> link_calls()
    {
        std::vector<std::string> some;
        for (const std::string &line : file_calls())
            for (const char *function : {"access ", "readlink ", "symlink ", "unlink "})
                if (line.compare(0, std::string(function).size(), function) == 0)
                    some.push_back(line);
        return some;
    }
    void expect_installed(std::optional<std::uint32_t> logic_id)
    {
        const std::int32_t result = logic_id ? 0 : static_cast<std::int32_t>(err_ioctl);
        expect_installation(logic_id);
        forget_calls();
        EXPECT_EQ(during([&] { EXPECT_EQ(MOX_AfterInstallRunFile(root.c_str()), result); }), expected.said);
        EXPECT_EQ(link_calls(), expected.files);
        for (const Call &call : calls())
            EXPECT_THAT(call.function, testing::AnyOf("access", "readlink", "symlink", "unlink", "openlog",
                                                      "syslog", "closelog", "write", "open", "ioctl", "close",
                                                      "malloc", "calloc", "free", "snprintf_s"));
        EXPECT_EQ(links_made(), expected.links);
    }
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

void PrintTo(const BoardOf &one, std::ostream *out)
{
    *out << one.name;
}

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
