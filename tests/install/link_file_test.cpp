// SPDX-License-Identifier: Apache-2.0
// The link of one row of a logic id, which replaces whatever is at its destination.
#include "install/link_encap_test.hpp"

namespace test
{
namespace
{

using LinkFileTest = LinkEncapTest;

constexpr LinkEncapFileDesc table[] = {
    {1, "../other", "x", "../data", "x"},
    {2, "../src", "paf", "../conf", "a"},
};

TEST_F(LinkFileTest, LinksTheRowOfTheIndexWhateverItsLogicId)
{
    deliver(src("paf"));
    board.set_item(board0, item_hard_type, a_line_card); // nobody is asked
    EXPECT_EQ(during([&] { EXPECT_EQ(DrvBoot_LinkFile(table, 1, root.c_str()), 0u); }),
              encap_row(table, 1) + linked(dst("a")));
    EXPECT_EQ(at(dst("a")), "-> " + src("paf"));
    EXPECT_TRUE(operations().empty());
}

TEST_F(LinkFileTest, AMissingSourceLeavesTheDestinationAsItIs)
{
    const auto expect_left = [&](const std::string &what) {
        EXPECT_EQ(during([&] { EXPECT_EQ(DrvBoot_LinkFile(table, 1, root.c_str()), 0u); }),
                  encap_row(table, 1) + absent(src("paf")) + gone(1, src("paf")));
        EXPECT_EQ(at(dst("a")), what);
    };
    expect_left("nothing");
    deliver(dst("a"));
    expect_left("file");
    std::filesystem::remove(dst("a"));
    link(dst("a"), "earlier");
    expect_left("-> earlier");
}

TEST_F(LinkFileTest, ALinkIsReplacedWhereverItLeads)
{
    deliver(src("paf"));
    for (const std::string &target : {std::string("gone"), src("paf"), place, std::string(60, 't')}) {
        std::filesystem::remove(dst("a"));
        link(dst("a"), target);
        EXPECT_EQ(during([&] { EXPECT_EQ(DrvBoot_LinkFile(table, 1, root.c_str()), 0u); }),
                  encap_row(table, 1) + replaces(1, target) + linked(dst("a")));
        EXPECT_EQ(at(dst("a")), "-> " + src("paf"));
    }
    EXPECT_EQ(at(src("paf")), "file"); // what a link led to stays
}

TEST_F(LinkFileTest, ALongTargetIsToldAsFarAsItFits)
{
    deliver(src("paf"));
    for (const std::size_t length : {382u, 383u, 384u, 1000u}) {
        std::filesystem::remove(dst("a"));
        link(dst("a"), std::string(length, 't'));
        EXPECT_EQ(during([&] { EXPECT_EQ(DrvBoot_LinkFile(table, 1, root.c_str()), 0u); }),
                  encap_row(table, 1) + replaces(1, std::string(length, 't')) + linked(dst("a")));
        EXPECT_EQ(at(dst("a")), "-> " + src("paf"));
    }
}

TEST_F(LinkFileTest, AnOrdinaryFileIsReplaced)
{
    deliver(src("paf"));
    deliver(dst("a"));
    EXPECT_EQ(during([&] { EXPECT_EQ(DrvBoot_LinkFile(table, 1, root.c_str()), 0u); }),
              encap_row(table, 1) + file_makes_way() + linked(dst("a")));
    EXPECT_EQ(at(dst("a")), "-> " + src("paf"));
}

TEST_F(LinkFileTest, ADirectoryStaysAndTheRowCountsAsDone)
{
    deliver(src("paf"));
    std::filesystem::create_directory(dst("a"));
    EXPECT_EQ(during([&] { EXPECT_EQ(DrvBoot_LinkFile(table, 1, root.c_str()), 0u); }),
              encap_row(table, 1) + file_makes_way() + not_linked("paf", EEXIST));
    EXPECT_EQ(at(dst("a")), "directory");
}

TEST_F(LinkFileTest, AMissingDirectoryCountsAsDone)
{
    deliver(src("paf"));
    std::filesystem::remove(place + "/conf");
    EXPECT_EQ(during([&] { EXPECT_EQ(DrvBoot_LinkFile(table, 1, root.c_str()), 0u); }),
              encap_row(table, 1) + not_linked("paf", ENOENT));
    EXPECT_EQ(at(place + "/conf"), "nothing");
}

TEST_F(LinkFileTest, ALinkThatTheKernelRefusesCountsAsDone)
{
    deliver(src("paf"));
    link(dst("a"), "earlier");
    for (int error : {EACCES, ENOSPC, EIO}) {
        fail_libc("symlink", error);
        EXPECT_EQ(during([&] { EXPECT_EQ(DrvBoot_LinkFile(table, 1, root.c_str()), 0u); }),
                  encap_row(table, 1) + (error == EACCES ? replaces(1, "earlier") : nothing()) +
                      not_linked("paf", error));
        EXPECT_EQ(at(dst("a")), "nothing"); // removed already
    }
}

TEST_F(LinkFileTest, AResultOfAnyOtherKindIsTold)
{
    deliver(src("paf"));
    errno = 0;
    answer_libc("symlink", 7);
    const Said said = during([&] {
        errno = EXDEV;
        EXPECT_EQ(DrvBoot_LinkFile(table, 1, root.c_str()), 0u);
    });
    ASSERT_FALSE(said.trace.empty());
    EXPECT_THAT(said.trace.back().text, testing::StartsWith("[DRVBOOT]Unable to link paf, ret is 7("));
}

TEST_F(LinkFileTest, WhatCannotBeRemovedIsInTheWay)
{
    deliver(src("paf"));
    link(dst("a"), "earlier");
    fail_libc("unlink", EACCES);
    EXPECT_EQ(during([&] { EXPECT_EQ(DrvBoot_LinkFile(table, 1, root.c_str()), 0u); }),
              encap_row(table, 1) + replaces(1, "earlier") + not_linked("paf", EEXIST));
    EXPECT_EQ(at(dst("a")), "-> earlier");

    std::filesystem::remove(dst("a"));
    deliver(dst("a"));
    fail_libc("unlink", EROFS);
    EXPECT_EQ(during([&] { EXPECT_EQ(DrvBoot_LinkFile(table, 1, root.c_str()), 0u); }),
              encap_row(table, 1) + file_makes_way() + not_linked("paf", EEXIST));
    EXPECT_EQ(at(dst("a")), "file");
}

// It then counts as the file that it leads to, if there is one.
TEST_F(LinkFileTest, ALinkThatCannotBeReadIsReplacedIfItLeadsSomewhere)
{
    deliver(src("paf"));
    for (const bool empty : {false, true}) {
        std::filesystem::remove(dst("a"));
        link(dst("a"), place);
        empty ? answer_libc("readlink", 0) : fail_libc("readlink", EIO);
        EXPECT_EQ(during([&] { EXPECT_EQ(DrvBoot_LinkFile(table, 1, root.c_str()), 0u); }),
                  encap_row(table, 1) + file_makes_way() + linked(dst("a")));
        EXPECT_EQ(at(dst("a")), "-> " + src("paf"));
    }
    std::filesystem::remove(dst("a"));
    link(dst("a"), "gone");
    fail_libc("readlink", EIO);
    EXPECT_EQ(during([&] { EXPECT_EQ(DrvBoot_LinkFile(table, 1, root.c_str()), 0u); }),
              encap_row(table, 1) + not_linked("paf", EEXIST));
    EXPECT_EQ(at(dst("a")), "-> gone");
}

TEST_F(LinkFileTest, AnAbsoluteSourceStandsAsItIs)
{
    const LinkEncapFileDesc absolute[] = {{0, "/tmp/install/src", "paf", "/../conf", "a"}};
    deliver(src("paf"));
    const std::string whole = root + "//../conf/a";
    EXPECT_EQ(during([&] { EXPECT_EQ(DrvBoot_LinkFile(absolute, 0, root.c_str()), 0u); }),
              encap_words(0, "/tmp/install/src/paf", whole, "/tmp/install/src", "/../conf") + linked(whole));
    EXPECT_EQ(at(dst("a")), "-> /tmp/install/src/paf");
}

TEST_F(LinkFileTest, ANullPointerIsRefused)
{
    deliver(src("paf"));
    EXPECT_EQ(during([&] {
                  EXPECT_EQ(DrvBoot_LinkFile(nullptr, 0, root.c_str()), minus_one);
                  EXPECT_EQ(DrvBoot_LinkFile(table, 1, nullptr), minus_one);
              }),
              nothing());
    EXPECT_TRUE(calls().empty());
    EXPECT_EQ(at(dst("a")), "nothing");
}

} // namespace
} // namespace test
