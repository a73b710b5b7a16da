// SPDX-License-Identifier: Apache-2.0
// Paths of 383 characters are the longest that both link walks take.
#include "install/link_test.hpp"

#include <moxboot/link.h>

namespace test
{
namespace
{

constexpr std::size_t longest = 383;

class LinkLengthTest : public LinkTest
{
  protected:
    // The directories' paths, with "/a" at the end: of this length.
    std::string long_source(std::size_t length) const
    {
        return deep(place + "/src", length - 2);
    }
    // Relative to the root, such that the whole path has the length.
    std::string long_destination(std::size_t length) const
    {
        return deep(root + "/../conf", length - 2).substr(root.size() + 1);
    }
};

TEST_F(LinkLengthTest, BothPathsMayBe383CharactersLong)
{
    const std::string source = long_source(longest);
    const std::string destination = long_destination(longest);
    const LinkFileDesc table[] = {{source.c_str(), "a", destination.c_str(), "a", nullptr}};
    deliver(source + "/a");
    ASSERT_EQ((source + "/a").size(), longest);
    const std::string whole = root + "/" + destination + "/a";
    ASSERT_EQ(whole.size(), longest);
    EXPECT_EQ(during([&] { EXPECT_EQ(DrvBoot_InstallBootFile(table, 1, root.c_str()), 0u); }),
              row(0, source + "/a", whole));
    EXPECT_EQ(at(whole), "-> " + source + "/a");

    const LinkEncapFileDesc encap[] = {{0, source.c_str(), "a", destination.c_str(), "a"}};
    std::filesystem::remove(whole);
    during([&] { EXPECT_EQ(DrvBoot_LinkFile(encap, 0, root.c_str()), 0u); });
    EXPECT_EQ(at(whole), "-> " + source + "/a");
}

TEST_F(LinkLengthTest, ALongerPathEndsTheWalkByPredicateAtOnce)
{
    deliver(src("a"));
    deliver(src("bios_qs3540_mpu.bin"));
    for (const std::size_t length : {longest + 1, longest + 2, 2000 + longest}) {
        const std::string source = std::string("/tmp/install/src/") + std::string(length - 19, 'x');
        const std::string destination = "../conf/" + std::string(length - 27, 'x');
        ASSERT_EQ((source + "/a").size(), length);
        ASSERT_EQ((root + "/" + destination + "/a").size(), length);
        const LinkFileDesc rows[] = {
            {source.c_str(), "a", "../conf", "a", yes},
            {"../src", "a", destination.c_str(), "a", yes},
            {source.c_str(), "a", destination.c_str(), "a", yes},
            {"../src", "bios_qs3540_mpu.bin", destination.c_str(), "a", yes},
            {"../src", "missing", destination.c_str(), "a", yes},
        };
        for (const LinkFileDesc &too_long : rows) {
            const LinkFileDesc table[] = {{"../src", "a", "../conf", "before", yes},
                                          too_long,
                                          {"../src", "a", "../conf", "after", yes}};
            asked.clear();
            EXPECT_EQ(during([&] { EXPECT_EQ(DrvBoot_InstallBootFile(table, 3, root.c_str()), minus_one); }),
                      row(0, src("a"), dst("before")));
            EXPECT_EQ(asked.size(), 2u);
            EXPECT_EQ(at(dst("before")), "-> " + src("a"));
            EXPECT_EQ(at(dst("a")), "nothing");
            EXPECT_EQ(at(dst("after")), "nothing");
            std::filesystem::remove(dst("before"));
        }
    }
}

// The directories are there: the length alone is what is refused.
TEST_F(LinkLengthTest, APathOf384CharactersIsRefusedThoughItLeadsSomewhere)
{
    const std::string source = long_source(longest + 1);
    const std::string destination = long_destination(longest + 1);
    deliver(source + "/a");
    deliver(src("a"));
    const LinkFileDesc table[] = {{source.c_str(), "a", "../conf", "a", nullptr},
                                  {"../src", "a", destination.c_str(), "a", nullptr}};
    for (const LinkFileDesc &row : table)
        EXPECT_EQ(during([&] { EXPECT_EQ(DrvBoot_InstallBootFile(&row, 1, root.c_str()), minus_one); }),
                  nothing());
    EXPECT_EQ(at(dst("a")), "nothing");
    EXPECT_EQ(at(root + "/" + destination + "/a"), "nothing");
    EXPECT_TRUE(file_calls().empty());
}

TEST_F(LinkLengthTest, AFailedPrintEndsTheWalkByPredicate)
{
    const LinkFileDesc table[] = {{"../src", "a", "../conf", "a", yes}, {"../src", "a", "../conf", "b", yes}};
    deliver(src("a"));
    for (unsigned good : {0u, 1u})
        for (int result : {-1, -5}) {
            answer_libc("snprintf_s", result, good);
            asked.clear();
            EXPECT_EQ(during([&] { EXPECT_EQ(DrvBoot_InstallBootFile(table, 2, root.c_str()), minus_one); }),
                      nothing());
            EXPECT_EQ(asked.size(), 1u);
        }
    EXPECT_EQ(at(dst("a")), "nothing");
    EXPECT_EQ(at(dst("b")), "nothing");
}

TEST_F(LinkLengthTest, ALongerSourceIsRefusedByARowOfALogicIdWithoutAWord)
{
    const std::string source = long_source(longest + 1);
    deliver(source + "/a");
    link(dst("a"), "earlier");
    const LinkEncapFileDesc table[] = {{0, source.c_str(), "a", "../conf", "a"}};
    EXPECT_EQ(during([&] { EXPECT_EQ(DrvBoot_LinkFile(table, 0, root.c_str()), minus_one); }), nothing());
    EXPECT_TRUE(file_calls().empty());
    EXPECT_EQ(at(dst("a")), "-> earlier");
}

TEST_F(LinkLengthTest, ALongerDestinationIsRefusedByARowOfALogicIdInItsOwnWords)
{
    const std::string destination = long_destination(longest + 1);
    deliver(src("a"));
    const LinkEncapFileDesc table[] = {{0, "../src", "a", destination.c_str(), "a"}};
    EXPECT_EQ(during([&] { EXPECT_EQ(DrvBoot_LinkFile(table, 0, root.c_str()), minus_one); }),
              step("[DRVBOOT]Unable to print dst, ret is -1\n"));
    EXPECT_TRUE(file_calls().empty());
    EXPECT_EQ(at(root + "/" + destination + "/a"), "nothing");
}

TEST_F(LinkLengthTest, AFailedPrintsResultIsHandedOnByARowOfALogicId)
{
    const LinkEncapFileDesc table[] = {{0, "../src", "a", "../conf", "a"}};
    deliver(src("a"));
    answer_libc("snprintf_s", -5);
    EXPECT_EQ(during([&] { EXPECT_EQ(DrvBoot_LinkFile(table, 0, root.c_str()), minus_one); }), nothing());
    answer_libc("snprintf_s", -5, 1);
    EXPECT_EQ(
        during([&] { EXPECT_EQ(DrvBoot_LinkFile(table, 0, root.c_str()), static_cast<std::uint32_t>(-5)); }),
        step("[DRVBOOT]Unable to print dst, ret is -5\n"));
    EXPECT_EQ(at(dst("a")), "nothing");
}

} // namespace
} // namespace test
