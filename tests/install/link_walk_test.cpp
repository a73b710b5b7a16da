// SPDX-License-Identifier: Apache-2.0
// The walk by predicate: which rows apply, and which of them find their source.
#include "install/link_test.hpp"

#include <moxboot/link.h>

namespace test
{
namespace
{

class LinkWalkTest : public LinkTest
{
  protected:
    template <std::size_t count>
    std::uint32_t walk(const LinkFileDesc (&table)[count])
    {
        return DrvBoot_InstallBootFile(table, count, root.c_str());
    }
};

TEST_F(LinkWalkTest, WithoutRowsAsksAndTouchesNothing)
{
    const LinkFileDesc table[] = {{"../src", "a", "../conf", "a", yes}};
    deliver(src("a"));
    EXPECT_EQ(during([&] {
                  EXPECT_EQ(DrvBoot_InstallBootFile(table, 0, root.c_str()), 0u);
                  EXPECT_EQ(DrvBoot_InstallBootFile(nullptr, 0, nullptr), 0u);
              }),
              nothing());
    EXPECT_TRUE(asked.empty());
    EXPECT_TRUE(calls().empty());
    EXPECT_EQ(at(dst("a")), "nothing");
}

TEST_F(LinkWalkTest, ANullPointerIsRefused)
{
    const LinkFileDesc table[] = {{"../src", "a", "../conf", "a", yes}};
    EXPECT_EQ(during([&] {
                  EXPECT_EQ(DrvBoot_InstallBootFile(nullptr, 1, root.c_str()), minus_one);
                  EXPECT_EQ(DrvBoot_InstallBootFile(table, 1, nullptr), minus_one);
              }),
              nothing());
    EXPECT_TRUE(asked.empty());
    EXPECT_TRUE(calls().empty());
}

TEST_F(LinkWalkTest, OnlyTheFlagCountsAndItComesAsAYes)
{
    const LinkFileDesc table[] = {
        {"../src", "a", "../conf", "0", yes},
        {"../src", "a", "../conf", "1", no},
        {"../src", "a", "../conf", "2", fails},
        {"../src", "a", "../conf", "3", fails_with_no},
        {"../src", "a", "../conf", "4", fails_with_yes},
        {"../src", "a", "../conf", "5", nullptr},
        {"../src", "a", "../conf", "6", says<2>},
        {"../src", "a", "../conf", "7", says<255, 7>},
        {"../src", "a", "../conf", "8", says<-1, 0>},
    };
    deliver(src("a"));
    Said said;
    for (unsigned i : {0u, 2u, 4u, 5u, 6u, 7u, 8u})
        said = said + row(i, src("a"), dst(std::to_string(i)));
    EXPECT_EQ(during([&] { EXPECT_EQ(walk(table), 0u); }), said);
    EXPECT_EQ(asked, std::vector<Asked>(8, {1, root_address()}));
    for (unsigned i = 0; i < std::size(table); ++i)
        EXPECT_EQ(at(dst(std::to_string(i))), i == 1 || i == 3 ? "nothing" : "-> " + src("a")) << i;
}

TEST_F(LinkWalkTest, RowsComeInOrderAndOnlyAsManyAsCounted)
{
    std::vector<LinkFileDesc> table(12, {"../src", "a", "../conf", "a", no});
    table[10].predicate = yes;
    table[11].predicate = yes;
    deliver(src("a"));
    EXPECT_EQ(during([&] { EXPECT_EQ(DrvBoot_InstallBootFile(table.data(), 11, root.c_str()), 0u); }),
              row(10, src("a"), dst("a")));
    EXPECT_EQ(asked.size(), 11u);
}

TEST_F(LinkWalkTest, TheFirstRowOfADestinationThatHasItsSourceWins)
{
    const LinkFileDesc table[] = {
        {"../src", "first", "../conf", "a", no},      {"../src", "second", "../conf", "a", yes},
        {"../src", "third", "../conf", "a", nullptr}, {"../src", "fourth", "../conf", "a", nullptr},
        {"../src", "fourth", "../conf", "b", yes},
    };
    for (const char *name : {"first", "third", "fourth"})
        deliver(src(name));
    EXPECT_EQ(during([&] { EXPECT_EQ(walk(table), 0u); }),
              row(1, src("second"), dst("a")) + absent(src("second")) + row(2, src("third"), dst("a")) +
                  row(3, src("fourth"), dst("a")) + kept(3, src("third")) + row(4, src("fourth"), dst("b")));
    EXPECT_EQ(at(dst("a")), "-> " + src("third"));
    EXPECT_EQ(at(dst("b")), "-> " + src("fourth"));
}

TEST_F(LinkWalkTest, AMissingSourceLeavesItsDestinationAsItIs)
{
    const LinkFileDesc table[] = {
        {"../src", "bios_qs3540_mpu.bin", "../conf", "nothing", nullptr},
        {"../src", "bios_qs3540_mpu.bin", "../conf", "link", nullptr},
        {"../src", "bios_qs3540_mpu.bin", "../conf", "file", nullptr},
        {"../src", "other", "../conf", "link", nullptr},
    };
    link(dst("link"), "earlier");
    deliver(dst("file"));
    Said said;
    for (unsigned i = 0; i < std::size(table); ++i)
        said = said + row(i, src(table[i].source_file), dst(table[i].destination_file)) +
               absent(src(table[i].source_file));
    EXPECT_EQ(during([&] { EXPECT_EQ(walk(table), 0u); }), said);
    EXPECT_EQ(at(dst("nothing")), "nothing");
    EXPECT_EQ(at(dst("link")), "-> earlier");
    EXPECT_EQ(at(dst("file")), "file");
}

TEST_F(LinkWalkTest, ASourceBehindLinksIsThereIfTheyLeadSomewhere)
{
    const LinkFileDesc table[] = {
        {"../src", "through", "../conf", "a", nullptr}, {"../src", "dangling", "../conf", "b", nullptr},
        {"../src", "circle", "../conf", "c", nullptr},  {"../src/file", "x", "../conf", "d", nullptr},
        {"../src", "", "../conf", "e", nullptr},
    };
    deliver(src("file"));
    link(src("through"), "file");
    link(src("dangling"), "gone");
    link(src("circle"), "circle");
    EXPECT_EQ(during([&] { EXPECT_EQ(walk(table), 0u); }),
              row(0, src("through"), dst("a")) + row(1, src("dangling"), dst("b")) + absent(src("dangling")) +
                  row(2, src("circle"), dst("c")) + absent(src("circle"), ELOOP) +
                  row(3, src("file/x"), dst("d")) + absent(src("file/x"), ENOTDIR) +
                  row(4, src(""), dst("e")));
    EXPECT_EQ(at(dst("a")), "-> " + src("through"));
    EXPECT_EQ(at(dst("d")), "nothing");
    EXPECT_EQ(at(dst("e")), "-> " + src("")); // a directory is something, too
}

TEST_F(LinkWalkTest, ASourceThatMayNotBeSeenIsMissing)
{
    const LinkFileDesc table[] = {{"../src", "a", "../conf", "a", nullptr}};
    deliver(src("a"));
    fail_libc("access", EACCES);
    EXPECT_EQ(during([&] { EXPECT_EQ(walk(table), 0u); }),
              row(0, src("a"), dst("a")) + absent(src("a"), EACCES));
    EXPECT_EQ(at(dst("a")), "nothing");
}

TEST_F(LinkWalkTest, AnAbsoluteSourceStandsAsItIsWhileTheDestinationIsBelowTheRoot)
{
    const LinkFileDesc table[] = {
        {"/tmp/install/src", "a", "../conf", "a", nullptr},
        {"/tmp/install/src", "a", "/../conf", "b", nullptr},
        {"/", "tmp", "../conf", "c", nullptr},
    };
    deliver("/tmp/install/src/a");
    EXPECT_EQ(during([&] { EXPECT_EQ(walk(table), 0u); }),
              row(0, "/tmp/install/src/a", dst("a")) + row(1, "/tmp/install/src/a", root + "//../conf/b") +
                  row(2, "//tmp", dst("c")));
    EXPECT_EQ(at(dst("a")), "-> /tmp/install/src/a");
    EXPECT_EQ(at(dst("b")), "-> /tmp/install/src/a");
    EXPECT_EQ(at(dst("c")), "-> //tmp");
}

TEST_F(LinkWalkTest, TheRootMayBeRelative)
{
    const LinkFileDesc table[] = {{"../src", "a", "../conf", "a", nullptr}};
    deliver(src("a"));
    const auto before = std::filesystem::current_path();
    std::filesystem::current_path(place);
    EXPECT_EQ(during([&] { EXPECT_EQ(DrvBoot_InstallBootFile(table, 1, "run"), 0u); }),
              row(0, "run/../src/a", "run/../conf/a"));
    std::filesystem::current_path(before);
    EXPECT_EQ(at(dst("a")), "-> run/../src/a");
}

} // namespace
} // namespace test
