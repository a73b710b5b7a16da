// SPDX-License-Identifier: Apache-2.0
// What the walks ask of the kernel: nothing but what each row needs.
#include "install/boot_file_package.hpp"
#include "install/link_test.hpp"

#include <moxboot/boot_file.h>
#include <moxboot/link.h>

namespace test
{
namespace
{

class LinkCallsTest : public LinkTest
{
  protected:
    using Lines = std::vector<std::string>;

    // What the library calls meanwhile, apart from reports; each of those is one line to the system log and
    // one to standard error.
    Lines calls_of(const std::function<void()> &action)
    {
        forget_calls();
        const Said said = during(action);
        for (const char *function : {"openlog", "syslog", "closelog", "write"})
            EXPECT_EQ(calls(function).size(), said.syslog.size()) << function;
        return file_calls();
    }
    Lines calls_of_walk(const LinkFileDesc &row)
    {
        return calls_of([&] { DrvBoot_InstallBootFile(&row, 1, root.c_str()); });
    }
    Lines calls_of_row(const LinkEncapFileDesc &row)
    {
        return calls_of([&] { DrvBoot_LinkFile(&row, 0, root.c_str()); });
    }
    const std::string a = dst("a");
};

const std::string boot_file = "uImage_qs3540_mpu.bin";

TEST_F(LinkCallsTest, ARowThatDoesNotApplyMakesNoCall)
{
    EXPECT_EQ(calls_of_walk({"../src", "a", "../conf", "a", no}), Lines{});
    EXPECT_TRUE(calls().empty());
}

TEST_F(LinkCallsTest, ARowByPredicateLooksReadsAndLinks)
{
    const LinkFileDesc row = {"../src", "plain", "../conf", "a", yes};
    const std::string plain = src("plain");
    EXPECT_EQ(calls_of_walk(row), (Lines{"access " + plain}));
    deliver(plain);
    EXPECT_EQ(calls_of_walk(row), (Lines{"access " + plain, "readlink " + a, "symlink " + a}));
    EXPECT_EQ(calls_of_walk(row), (Lines{"access " + plain, "readlink " + a}));
}

TEST_F(LinkCallsTest, ARowOfABootFileRemovesFirst)
{
    const LinkFileDesc row = {"../src", boot_file.c_str(), "../conf", "a", yes};
    const std::string source = src(boot_file);
    EXPECT_EQ(calls_of_walk(row), (Lines{"access " + source}));
    deliver(source);
    for (int round = 0; round < 2; ++round)
        EXPECT_EQ(calls_of_walk(row),
                  (Lines{"access " + source, "unlink " + a, "readlink " + a, "symlink " + a}));
}

TEST_F(LinkCallsTest, ARowOfALogicIdReadsLooksAndReplaces)
{
    const LinkEncapFileDesc row = {0, "../src", "plain", "../conf", "a"};
    const std::string plain = src("plain");
    EXPECT_EQ(calls_of_row(row), (Lines{"readlink " + a, "access " + plain}));
    deliver(plain);
    const Lines fresh = {"readlink " + a, "access " + plain, "access " + a, "symlink " + a};
    EXPECT_EQ(calls_of_row(row), fresh);
    EXPECT_EQ(calls_of_row(row), (Lines{"readlink " + a, "access " + plain, "unlink " + a, "symlink " + a}));
    std::filesystem::remove(a);
    deliver(a);
    EXPECT_EQ(calls_of_row(row),
              (Lines{"readlink " + a, "access " + plain, "access " + a, "unlink " + a, "symlink " + a}));
}

TEST_F(LinkCallsTest, TheWalkByLogicIdAsksTheBoardOnce)
{
    const LinkEncapFileDesc table[] = {{8, "../src", "plain", "../conf", "a"},
                                       {9, "../src", "plain", "../conf", "b"},
                                       {8, "../src", "plain", "../conf", "c"}};
    be_of(8);
    std::uint32_t id = 0;
    const Lines asking = calls_of([&] { MOX_GetSelfEncapLogicId(&id); });
    Lines expected = asking;
    for (const char *name : {"a", "c"}) {
        expected.push_back("readlink " + dst(name));
        expected.push_back("access " + src("plain"));
    }
    EXPECT_EQ(calls_of([&] { DrvBoot_Encap_InstallBootFile(table, 3, root.c_str()); }), expected);
    EXPECT_EQ(calls_of([&] { DrvBoot_Encap_InstallBootFile(table, 0, root.c_str()); }), asking);
}

TEST_F(LinkCallsTest, ExtractionLeavesTheFilesToThePackageLibrary)
{
    const BootFileDesc table[] = {{"a", "0x1", yes}, {"b", "0x2", no}, {"c", "0x3", yes}};
    forget_package();
    refusals["/boot/c"] = 1;
    EXPECT_EQ(calls_of([&] { DrvBoot_ExtractBootFileXTN("package", table, 3, "/boot"); }), Lines{});
    EXPECT_EQ(taken.size(), 2u);
    forget_package();
}

} // namespace
} // namespace test
