// SPDX-License-Identifier: Apache-2.0
// The walk by logic id.
#include "install/link_encap_test.hpp"
#include "install/link_rows.hpp"

#include <limits>
#include <map>

namespace test
{
namespace
{

class LinkEncapWalkTest : public LinkEncapTest
{
  protected:
    template <std::size_t count>
    std::uint32_t walk(const LinkEncapFileDesc (&table)[count])
    {
        return DrvBoot_Encap_InstallBootFile(table, count, root.c_str());
    }
    // The walk over the library's own table.
    std::uint32_t walk()
    {
        return walk(g_linkEncapFileDesc);
    }
    const std::string too_long = "/" + std::string(400, 'x');
};

TEST_F(LinkEncapWalkTest, LinksAllRowsOfTheBoardsLogicIdInOrder)
{
    std::vector<LinkEncapFileDesc> table(13, {7, "../src", "other", "../conf", "other"});
    for (unsigned i : {1u, 10u, 12u})
        table[i] = {8, "../src", "a", "../conf", "a"};
    table[10].source_file = "b";
    table[12].destination_file = "c";
    be_of(8);
    for (const char *name : {"a", "b", "other"})
        deliver(src(name));
    EXPECT_EQ(during([&] { EXPECT_EQ(DrvBoot_Encap_InstallBootFile(table.data(), 13, root.c_str()), 0u); }),
              is_of(8) + encap_row(table.data(), 1) + linked(dst("a")) + done(1) +
                  encap_row(table.data(), 10) + replaces(10, src("a")) + linked(dst("a")) + done(10) +
                  encap_row(table.data(), 12) + linked(dst("c")) + done(12));
    EXPECT_EQ(at(dst("a")), "-> " + src("b"));
    EXPECT_EQ(at(dst("c")), "-> " + src("a"));
    EXPECT_EQ(at(dst("other")), "nothing");
    EXPECT_EQ(requests().size(), 2u) << "the logic id is asked once";
}

TEST_F(LinkEncapWalkTest, CountsItsRows)
{
    const LinkEncapFileDesc table[] = {{8, "../src", "a", "../conf", "0"},
                                       {8, "../src", "a", "../conf", "1"}};
    deliver(src("a"));
    be_of(8);
    EXPECT_EQ(during([&] { EXPECT_EQ(DrvBoot_Encap_InstallBootFile(table, 1, root.c_str()), 0u); }),
              is_of(8) + encap_row(table, 0) + linked(dst("0")) + done(0));
    EXPECT_EQ(at(dst("1")), "nothing");
}

TEST_F(LinkEncapWalkTest, WithoutRowsOnlyTellsTheLogicId)
{
    const LinkEncapFileDesc table[] = {{8, "../src", "a", "../conf", "a"}};
    deliver(src("a"));
    be_of(8);
    for (std::int32_t count : {0, -1, std::numeric_limits<std::int32_t>::min()}) {
        forget_calls();
        EXPECT_EQ(during([&] {
                      EXPECT_EQ(DrvBoot_Encap_InstallBootFile(table, count, root.c_str()), 0u);
                      EXPECT_EQ(DrvBoot_Encap_InstallBootFile(nullptr, count, nullptr), 0u);
                  }),
                  is_of(8) + is_of(8));
        for (const char *function : {"access", "readlink", "unlink", "symlink"})
            EXPECT_TRUE(calls(function).empty());
    }
    EXPECT_EQ(at(dst("a")), "nothing");
}

TEST_F(LinkEncapWalkTest, ANullPointerIsRefused)
{
    const LinkEncapFileDesc table[] = {{8, "../src", "a", "../conf", "a"}};
    deliver(src("a"));
    be_of(8);
    during([&] {
        EXPECT_EQ(DrvBoot_Encap_InstallBootFile(nullptr, 1, root.c_str()), minus_one);
        EXPECT_EQ(DrvBoot_Encap_InstallBootFile(table, 1, nullptr), minus_one);
    });
    EXPECT_EQ(at(dst("a")), "nothing");
}

TEST_F(LinkEncapWalkTest, ALogicIdThatCannotBeReadIsToldAndItsCodeHandedOn)
{
    const LinkEncapFileDesc table[] = {{0, "../src", "a", "../conf", "a"},
                                       {8, "../src", "a", "../conf", "b"}};
    deliver(src("a"));
    be_of(8);
    const auto expect_code = [&](std::uint32_t code) {
        const Said said =
            failure(text("Drvboot get local logic id not success, excute cmd return 0x%x\n", code)) +
            failure(text("Drvboot get local encap logic id NOK, return 0x%x\n", code));
        forget_calls();
        EXPECT_EQ(during([&] { EXPECT_EQ(walk(table), code); }), said);
        for (const char *function : {"access", "readlink", "unlink", "symlink"})
            EXPECT_TRUE(calls(function).empty());
    };
    refuse("/dev/slot17", 0x10002636);
    expect_code(err_ioctl);
    deny("/dev/slot17", ENODEV);
    expect_code(minus_one);
    EXPECT_EQ(at(dst("a")), "nothing");
    EXPECT_EQ(at(dst("b")), "nothing");
}

TEST_F(LinkEncapWalkTest, ARowWithAPathTooLongDoesNotEndTheWalkAndTheLastResultCounts)
{
    be_of(8);
    deliver(src("a"));
    {
        const LinkEncapFileDesc table[] = {{8, too_long.c_str(), "a", "../conf", "a"},
                                           {8, "../src", "a", too_long.c_str(), "a"},
                                           {8, "../src", "a", "../conf", "a"}};
        EXPECT_EQ(during([&] { EXPECT_EQ(walk(table), 0u); }),
                  is_of(8) + done(0, minus_one) + step("[DRVBOOT]Unable to print dst, ret is -1\n") +
                      done(1, minus_one) + encap_row(table, 2) + linked(dst("a")) + done(2));
        EXPECT_EQ(at(dst("a")), "-> " + src("a"));
    }
    {
        const LinkEncapFileDesc table[] = {{8, "../src", "a", "../conf", "b"},
                                           {8, too_long.c_str(), "a", "../conf", "b"},
                                           {9, "../src", "a", "../conf", "b"}};
        EXPECT_EQ(during([&] { EXPECT_EQ(walk(table), minus_one); }),
                  is_of(8) + encap_row(table, 0) + linked(dst("b")) + done(0) + done(1, minus_one));
        EXPECT_EQ(at(dst("b")), "-> " + src("a"));
    }
}

TEST_F(LinkEncapWalkTest, ALinkThatCannotBeMadeIsNoFailure)
{
    const LinkEncapFileDesc table[] = {{8, "../src", "a", "../conf", "a"},
                                       {8, "../src", "a", "../conf", "b"}};
    be_of(8);
    deliver(src("a"));
    fail_libc("symlink", ENOSPC);
    EXPECT_EQ(during([&] { EXPECT_EQ(walk(table), 0u); }),
              is_of(8) + encap_row(table, 0) + not_linked("a", ENOSPC) + done(0) + encap_row(table, 1) +
                  linked(dst("b")) + done(1));
}

// ---- the library's own rows ------------------------------------------------------------------------------

TEST_F(LinkEncapWalkTest, EveryLogicIdGetsTheLastOfItsRowsForEachDestination)
{
    const std::vector<EncapRow> rows = encap_rows();
    std::set<std::uint32_t> ids = {0, 0x42F00000, 0x42F0FFFF, 0x42F02001, 0x32F06000, minus_one};
    for (const EncapRow &row : rows) {
        ids.insert(row.logic_id);
        deliver(root + "/" + row.source);
    }
    for (std::uint32_t id : ids) {
        SCOPED_TRACE(text("logic id 0x%x", id));
        for (const char *name : {"/conf", "/data"}) {
            std::filesystem::remove_all(place + name);
            std::filesystem::create_directory(place + name);
        }
        be_of(id);
        std::map<std::string, std::string> links; // destination and target
        Said said = is_of(id);
        for (unsigned i = 0; i < rows.size(); ++i) {
            if (rows[i].logic_id != id)
                continue;
            const std::string source = root + "/" + rows[i].source;
            const std::string destination = root + "/" + rows[i].destination;
            said = said + encap_words(i, source, destination, split(rows[i].source).first,
                                      split(rows[i].destination).first);
            if (links.count(destination) != 0)
                said = said + replaces(i, links[destination]);
            said = said + linked(destination) + done(i);
            links[destination] = source;
        }
        EXPECT_EQ(during([&] { EXPECT_EQ(walk(), 0u); }), said);
        std::size_t made = 0;
        for (const char *name : {"/conf", "/data"})
            for (const auto &entry : std::filesystem::directory_iterator(place + name))
                made += entry.is_symlink() ? 1 : 0;
        EXPECT_EQ(made, links.size());
        for (const auto &[destination, source] : links)
            EXPECT_EQ(at(destination), "-> " + source);
    }
}

TEST_F(LinkEncapWalkTest, TheIdOfTwoFeatureFilesGetsTheLaterThatIsThere)
{
    const std::string data = root + "/../pkg_pool/program/current/data/";
    const std::string paf = root + "/../data/paf.dat";
    be_of(0x42F0D000);
    deliver(data + "paf_dub594h_r22.bin");
    during([&] { EXPECT_EQ(walk(), 0u); });
    EXPECT_EQ(at(paf), "-> " + data + "paf_dub594h_r22.bin");
    deliver(data + "paf_wox_cpe_382l.bin");
    during([&] { EXPECT_EQ(walk(), 0u); });
    EXPECT_EQ(at(paf), "-> " + data + "paf_wox_cpe_382l.bin");
    std::filesystem::remove(data + "paf_wox_cpe_382l.bin");
    during([&] { EXPECT_EQ(walk(), 0u); });
    EXPECT_EQ(at(paf), "-> " + data + "paf_dub594h_r22.bin");
}

} // namespace
} // namespace test
