// SPDX-License-Identifier: Apache-2.0
// The walk by predicate: what is at a destination already, and links that cannot be made.
#include "install/boot_file_rows.hpp"
#include "install/link_test.hpp"

#include <moxboot/link.h>

namespace test
{
namespace
{

class LinkKeepTest : public LinkTest
{
  protected:
    // Links `source_file` to "a" in "../conf", in a first row; a second row follows.
    void expect_walk(const std::string &source_file, const Said &said, bool goes_on = true)
    {
        const LinkFileDesc table[] = {{"../src", source_file.c_str(), "../conf", "a", yes},
                                      {"../src", "next", "../conf", "next", yes}};
        deliver(src(source_file));
        deliver(src("next"));
        asked.clear();
        forget_calls();
        EXPECT_EQ(during([&] { EXPECT_EQ(DrvBoot_InstallBootFile(table, 2, root.c_str()), 0u); }),
                  row(0, src(source_file), dst("a")) + said +
                      (goes_on ? row(1, src("next"), dst("next")) : nothing()));
        EXPECT_EQ(asked.size(), goes_on ? 2u : 1u) << "rows asked";
        EXPECT_EQ(at(dst("next")), goes_on ? "-> " + src("next") : "nothing");
        std::filesystem::remove(dst("next"));
    }
};

const std::string boot_file = "bios_qs3540_mpu.bin";

TEST_F(LinkKeepTest, ALinkThatIsThereIsKept)
{
    for (const std::string &target : {std::string("gone"), src("plain"), root, std::string(60, 't')}) {
        std::filesystem::remove(dst("a"));
        link(dst("a"), target);
        expect_walk("plain", kept(0, target));
        EXPECT_EQ(at(dst("a")), "-> " + target);
    }
}

TEST_F(LinkKeepTest, ALinkOfABootFileIsRenewed)
{
    for (const BootFileRow &file : boot_file_rows) {
        for (const std::string &target : {std::string("gone"), src(file.name)}) {
            std::filesystem::remove(dst("a"));
            link(dst("a"), target);
            expect_walk(file.name, nothing());
            EXPECT_EQ(at(dst("a")), "-> " + src(file.name));
        }
    }
}

TEST_F(LinkKeepTest, ANameThatBeginsWithABootFilesIsABootFiles)
{
    for (const char *suffix : {".old", "x", " "}) {
        std::filesystem::remove(dst("a"));
        link(dst("a"), "gone");
        expect_walk(boot_file + suffix, nothing());
        EXPECT_EQ(at(dst("a")), "-> " + src(boot_file + suffix));
    }
}

TEST_F(LinkKeepTest, ANameThatIsNearlyABootFilesIsNot)
{
    for (const char *name : {"bios_qs3540_mpu.bi", "xbios_qs3540_mpu.bin", "BIOS_qs3540_mpu.bin", "b"}) {
        std::filesystem::remove(dst("a"));
        link(dst("a"), "gone");
        expect_walk(name, kept(0, "gone"));
        EXPECT_EQ(at(dst("a")), "-> gone");
    }
}

TEST_F(LinkKeepTest, TheSourcesNameDecidesNotTheDestinations)
{
    const LinkFileDesc table[] = {{"../src", "plain", "../conf", "bios_qs3540_mpu.bin", nullptr},
                                  {"../src", "bios_qs3540_mpu.bin", "../conf", "paf.dat", nullptr}};
    deliver(src("plain"));
    deliver(src(boot_file));
    link(dst(boot_file), "gone");
    link(dst("paf.dat"), "gone");
    EXPECT_EQ(during([&] { EXPECT_EQ(DrvBoot_InstallBootFile(table, 2, root.c_str()), 0u); }),
              row(0, src("plain"), dst(boot_file)) + kept(0, "gone") +
                  row(1, src(boot_file), dst("paf.dat")));
    EXPECT_EQ(at(dst(boot_file)), "-> gone");
    EXPECT_EQ(at(dst("paf.dat")), "-> " + src(boot_file));
}

TEST_F(LinkKeepTest, AnOrdinaryFileEndsTheWalkWithoutAnError)
{
    deliver(dst("a"));
    expect_walk("plain", not_made("plain", EEXIST), false);
    EXPECT_EQ(at(dst("a")), "file");
}

TEST_F(LinkKeepTest, AnOrdinaryFileMakesWayForABootFile)
{
    deliver(dst("a"));
    expect_walk(boot_file, nothing());
    EXPECT_EQ(at(dst("a")), "-> " + src(boot_file));
}

TEST_F(LinkKeepTest, ADirectoryEndsTheWalkWithoutAnError)
{
    std::filesystem::create_directory(dst("a"));
    for (const std::string &name : {std::string("plain"), boot_file}) {
        expect_walk(name, not_made(name, EEXIST), false);
        EXPECT_EQ(at(dst("a")), "directory");
    }
}

TEST_F(LinkKeepTest, AMissingDirectoryEndsTheWalkWithoutAnError)
{
    std::filesystem::remove(place + "/conf");
    const LinkFileDesc table[] = {{"../src", "a", "../conf", "a", yes}, {"../src", "a", "../data", "a", yes}};
    deliver(src("a"));
    EXPECT_EQ(during([&] { EXPECT_EQ(DrvBoot_InstallBootFile(table, 2, root.c_str()), 0u); }),
              row(0, src("a"), dst("a")) + not_made("a", ENOENT));
    EXPECT_EQ(asked.size(), 1u);
    EXPECT_EQ(at(place + "/data/a"), "nothing");
}

TEST_F(LinkKeepTest, ALinkThatTheKernelRefusesEndsTheWalkWithoutAnError)
{
    for (int error : {EACCES, ENOSPC, EROFS, EIO}) {
        fail_libc("symlink", error);
        expect_walk("plain", not_made("plain", error), false);
        EXPECT_EQ(at(dst("a")), "nothing");
    }
    expect_walk("plain", nothing()); // nothing is remembered
}

// Its link is gone by then.
TEST_F(LinkKeepTest, ABootFilesLinkThatCannotBeMadeAnewEndsTheWalk)
{
    link(dst("a"), "gone");
    fail_libc("symlink", ENOSPC);
    expect_walk(boot_file, not_made(boot_file, ENOSPC), false);
    EXPECT_EQ(at(dst("a")), "nothing");
}

TEST_F(LinkKeepTest, ABootFilesLinkThatCannotBeRemovedIsKept)
{
    link(dst("a"), "gone");
    fail_libc("unlink", EACCES);
    expect_walk(boot_file, kept(0, "gone"));
    EXPECT_EQ(at(dst("a")), "-> gone");
}

TEST_F(LinkKeepTest, ALinkThatCannotBeReadIsMadeAgain)
{
    link(dst("a"), "gone");
    fail_libc("readlink", EIO);
    expect_walk("plain", not_made("plain", EEXIST), false);
    answer_libc("readlink", 0);
    expect_walk("plain", not_made("plain", EEXIST), false);
    EXPECT_EQ(at(dst("a")), "-> gone");
}

TEST_F(LinkKeepTest, ALongTargetLeavesNoTraceInTheNextRow)
{
    const LinkFileDesc table[] = {{"../src", "plain", "../conf", "long", nullptr},
                                  {"../src", "plain", "../conf", "short", nullptr}};
    deliver(src("plain"));
    link(dst("long"), std::string(1000, 't'));
    link(dst("short"), "s");
    EXPECT_EQ(during([&] { EXPECT_EQ(DrvBoot_InstallBootFile(table, 2, root.c_str()), 0u); }),
              row(0, src("plain"), dst("long")) + kept(0, std::string(1000, 't')) +
                  row(1, src("plain"), dst("short")) + kept(1, "s"));
}

} // namespace
} // namespace test
