// SPDX-License-Identifier: Apache-2.0
// The four functions that the walks are made of, each alone.
#include "install/boot_file_rows.hpp"
#include "install/link_test.hpp"

#include <moxboot/link.h>

#include <array>

namespace test
{
namespace
{

using LinkStepsTest = LinkTest;

// ---- DrvBoot_FormatSrcPath -------------------------------------------------------------------------------

TEST_F(LinkStepsTest, ARelativeDirectoryGoesBehindTheRoot)
{
    std::array<char, 384> path = {};
    const auto format = [&path](const char *install_root, const char *directory, const char *file) {
        path.fill('#');
        EXPECT_EQ(DrvBoot_FormatSrcPath(install_root, directory, file, path.data(), path.size()), 0);
        return std::string(path.data());
    };
    EXPECT_EQ(during([&] {
                  EXPECT_EQ(format("/install", "../dir", "file"), "/install/../dir/file");
                  EXPECT_EQ(format("/install", "", "file"), "/install//file");
                  EXPECT_EQ(format("", "dir", ""), "/dir/");
                  EXPECT_EQ(format("/install/", "dir/", "file"), "/install//dir//file");
                  EXPECT_EQ(format("/install", "/dir", "file"), "/dir/file");
                  EXPECT_EQ(format("/install", "/", "file"), "//file");
                  EXPECT_EQ(format("%s", "%d", "%n"), "%s/%d/%n");
              }),
              nothing());
    EXPECT_TRUE(file_calls().empty());
}

TEST_F(LinkStepsTest, APathNeedsRoomForItsTerminator)
{
    std::array<char, 16> path = {};
    for (const char *directory : {"/dir", "dir"}) { // "/dir/f", "r/dir/f"
        const std::uint32_t size = directory[0] == '/' ? 6 : 7;
        path.fill('#');
        EXPECT_EQ(DrvBoot_FormatSrcPath("r", directory, "f", path.data(), size), -1) << directory;
        for (std::size_t i = size; i < path.size(); ++i)
            EXPECT_EQ(path.at(i), '#');
        EXPECT_EQ(DrvBoot_FormatSrcPath("r", directory, "f", path.data(), size + 1), 0) << directory;
        EXPECT_EQ(path.at(size), '\0');
        EXPECT_EQ(path.at(size + 1), '#');
    }
}

TEST_F(LinkStepsTest, WithoutAnyRoomNoPathIsMade)
{
    char path[] = "##";
    EXPECT_EQ(DrvBoot_FormatSrcPath("r", "d", "f", path, 0), -1);
    EXPECT_EQ(DrvBoot_FormatSrcPath("r", "/d", "f", path, 0), -1);
    EXPECT_STREQ(path, "##");
    EXPECT_EQ(DrvBoot_FormatSrcPath("r", "d", "f", path, 1), -1);
    EXPECT_EQ(path[1], '#');
}

TEST_F(LinkStepsTest, AFailedPrintOfAPathIsMinusOneWhateverItsResult)
{
    char path[32] = "";
    for (int result : {-1, -5}) {
        answer_libc("snprintf_s", result);
        EXPECT_EQ(DrvBoot_FormatSrcPath("r", "d", "f", path, sizeof path), -1);
        answer_libc("snprintf_s", result);
        EXPECT_EQ(DrvBoot_FormatSrcPath("r", "/d", "f", path, sizeof path), -1);
    }
    EXPECT_EQ(DrvBoot_FormatSrcPath("r", "d", "f", path, sizeof path), 0);
}

TEST_F(LinkStepsTest, ANullPartOfAPathIsRefused)
{
    char path[] = "left alone";
    EXPECT_EQ(during([&] {
                  EXPECT_EQ(DrvBoot_FormatSrcPath(nullptr, "d", "f", path, sizeof path), -1);
                  EXPECT_EQ(DrvBoot_FormatSrcPath("r", nullptr, "f", path, sizeof path), -1);
                  EXPECT_EQ(DrvBoot_FormatSrcPath("r", "d", nullptr, path, sizeof path), -1);
                  EXPECT_EQ(DrvBoot_FormatSrcPath("r", "d", "f", nullptr, 384), -1);
              }),
              nothing());
    EXPECT_STREQ(path, "left alone");
}

// ---- DrvBoot_IsFileExisted -------------------------------------------------------------------------------

TEST_F(LinkStepsTest, AFileADirectoryAndWhatALinkLeadsToExist)
{
    deliver(src("a"));
    link(src("link"), "a");
    for (const std::string &path : {src("a"), src("link"), root, std::string("/dev/null")})
        EXPECT_EQ(during([&] { EXPECT_EQ(DrvBoot_IsFileExisted(path.c_str()), 1u); }), nothing()) << path;
    std::filesystem::permissions(src("a"), std::filesystem::perms::none);
    EXPECT_EQ(DrvBoot_IsFileExisted(src("a").c_str()), 1u); // none of its rights is asked for
}

TEST_F(LinkStepsTest, WhatDoesNotExistIsToldWithItsReason)
{
    deliver(src("a"));
    link(src("dangling"), "gone");
    link(src("circle"), "circle");
    const auto expect_absent = [&](const std::string &path, int error) {
        EXPECT_EQ(during([&] { EXPECT_EQ(DrvBoot_IsFileExisted(path.c_str()), 0u); }), absent(path, error));
    };
    for (const auto &[missing, reason] : {std::pair{src("gone"), ENOENT},
                                          {src("dangling"), ENOENT},
                                          {src("circle"), ELOOP},
                                          {src("a/b"), ENOTDIR},
                                          {std::string(), ENOENT},
                                          {src(std::string(300, 'n')), ENAMETOOLONG}})
        expect_absent(missing, reason);
    fail_libc("access", EACCES);
    expect_absent(src("a"), EACCES);
}

TEST_F(LinkStepsTest, ANullPathDoesNotExist)
{
    EXPECT_EQ(during([] { EXPECT_EQ(DrvBoot_IsFileExisted(nullptr), 0u); }), nothing());
}

// ---- DrvBoot_LinkExistedBootFile -------------------------------------------------------------------------

TEST_F(LinkStepsTest, ALinkIsMadeSilentlyAndItsTargetNotLookedAt)
{
    EXPECT_EQ(during([&] { EXPECT_EQ(DrvBoot_LinkExistedBootFile("gone", dst("a").c_str(), "name"), 0); }),
              nothing());
    EXPECT_EQ(at(dst("a")), "-> gone");
    EXPECT_EQ(file_calls(), std::vector<std::string>{"symlink " + dst("a")});
}

TEST_F(LinkStepsTest, ALinkThatCannotBeMadeIsToldByItsName)
{
    link(dst("a"), "earlier");
    const auto expect_refused = [&](const std::string &path, int error) {
        EXPECT_EQ(during([&] { EXPECT_EQ(DrvBoot_LinkExistedBootFile("target", path.c_str(), "name"), -1); }),
                  not_made("name", error));
    };
    expect_refused(dst("a"), EEXIST);
    expect_refused(place + "/none/a", ENOENT);
    fail_libc("symlink", EDQUOT);
    expect_refused(dst("b"), EDQUOT);
    EXPECT_EQ(at(dst("a")), "-> earlier");
    EXPECT_EQ(at(dst("b")), "nothing");
}

TEST_F(LinkStepsTest, ANullPathIsNotLinked)
{
    EXPECT_EQ(during([&] {
                  EXPECT_EQ(DrvBoot_LinkExistedBootFile(nullptr, dst("a").c_str(), "name"), -1);
                  EXPECT_EQ(DrvBoot_LinkExistedBootFile("target", nullptr, "name"), -1);
              }),
              nothing());
    EXPECT_EQ(at(dst("a")), "nothing");
}

// ---- DrvBoot_UnlinkExistedUnexpectedBootFile -------------------------------------------------------------

TEST_F(LinkStepsTest, TheLinkOfEachBootFileIsRemoved)
{
    for (const BootFileRow &file : boot_file_rows)
        for (const char *suffix : {"", ".sig"}) {
            const std::string name = file.name + suffix;
            link(dst("a"), "gone");
            EXPECT_EQ(during([&] {
                          EXPECT_EQ(DrvBoot_UnlinkExistedUnexpectedBootFile(name.c_str(), dst("a").c_str()),
                                    0);
                      }),
                      nothing());
            EXPECT_EQ(at(dst("a")), "nothing") << name;
        }
}

TEST_F(LinkStepsTest, RemovingGivesTheKernelsResult)
{
    const auto remove = [](const std::string &path) {
        return DrvBoot_UnlinkExistedUnexpectedBootFile("HSM1.5_qs3540.bin", path.c_str());
    };
    EXPECT_EQ(during([&] {
                  EXPECT_EQ(remove(dst("none")), -1);
                  EXPECT_EQ(remove(place + "/conf"), -1);
                  EXPECT_EQ(remove(deliver(dst("file"))), 0);
              }),
              nothing());
    EXPECT_EQ(at(place + "/conf"), "directory");
    EXPECT_EQ(at(dst("file")), "nothing");
}

TEST_F(LinkStepsTest, TheLinkOfAnotherFileStays)
{
    link(dst("a"), "gone");
    for (const BootFileRow &file : boot_file_rows) {
        const std::string shorter = file.name.substr(0, file.name.size() - 1);
        const std::string later = "x" + file.name;
        for (const std::string &name : {shorter, later})
            EXPECT_NE(DrvBoot_UnlinkExistedUnexpectedBootFile(name.c_str(), dst("a").c_str()), 0) << name;
    }
    for (const char *name : {"", "default.cfg", "paf.dat", "libatom_np_sdk_3540.so", "zzz"})
        EXPECT_NE(DrvBoot_UnlinkExistedUnexpectedBootFile(name, dst("a").c_str()), 0) << name;
    EXPECT_EQ(at(dst("a")), "-> gone");
    EXPECT_TRUE(file_calls().empty());
}

TEST_F(LinkStepsTest, NothingIsRemovedWithoutANameOrAPath)
{
    link(dst("a"), "gone");
    EXPECT_EQ(during([&] {
                  EXPECT_NE(DrvBoot_UnlinkExistedUnexpectedBootFile(nullptr, dst("a").c_str()), 0);
                  EXPECT_NE(DrvBoot_UnlinkExistedUnexpectedBootFile("bios_qs3540_mpu.bin", nullptr), 0);
              }),
              nothing());
    EXPECT_EQ(at(dst("a")), "-> gone");
}

} // namespace
} // namespace test
