// SPDX-License-Identifier: Apache-2.0
// In which boot directory a package is kept.
#include "state/package_files.hpp"

#include <array>
#include <cerrno>

namespace test
{
namespace
{

namespace fs = std::filesystem;

constexpr std::uint32_t the_board = 0x900005d1;
enum class Entry { missing, file, directory, link, dangling_link };

class ProductPathTest : public BoardTest
{
  protected:
    std::array<char, 32> path = {};

    void SetUp() override
    {
        BoardTest::SetUp();
        be(the_board);
        make_homes();
        make_file("/tmp/target");
    }
    static void put(const std::string &place, Entry entry)
    {
        fs::remove_all(place);
        if (entry == Entry::file)
            make_file(place);
        if (entry == Entry::directory)
            fs::create_directory(place);
        if (entry == Entry::link)
            fs::create_symlink("/tmp/target", place);
        if (entry == Entry::dangling_link)
            fs::create_symlink("/tmp/nowhere", place);
    }
    std::uint32_t ask(const std::string &package, std::uint32_t size = 32)
    {
        path.fill('#');
        return MOX_GetPdtPath(0, package.c_str(), path.data(), size);
    }
    // What is said until the directories are looked at.
    static Said names(const std::string &package, const std::string &file)
    {
        return reported(1, "[get pdt path] pkg name pPara=" + package + "\n\n") +
               reported(1, "[get pdt path] pkg name filename=" + file + "\n\n");
    }
    static Said paths(const std::string &file)
    {
        return reported(1, "[get pdt path] path = " + (main_home + file) + ",path_bak=" + backup_home + file +
                               "\n\n");
    }
    static Said found(const char *format, const std::string &place)
    {
        struct stat status = {};
        if (lstat(place.c_str(), &status) != 0)
            return nothing();
        return information(text(
            "[get pdt path] %s dir,st_mode = %#x,%s%d.\n\n", format, static_cast<unsigned>(status.st_mode),
            std::string(format) == "pkg home" ? "S_ISLNK = " : "S_ISLNK=", S_ISLNK(status.st_mode) ? 1 : 0));
    }
    static Said main_found(const std::string &file)
    {
        return found("pkg home", main_home + file);
    }
    static Said backup_found(const std::string &file)
    {
        return found("pkg bak home", backup_home + file);
    }
    void expect(const std::string &package, std::uint32_t result, const std::string &answer, const Said &said)
    {
        EXPECT_EQ(during([&] { EXPECT_EQ(ask(package), result); }), said) << package;
        const std::string rest(path.size(), '#');
        EXPECT_EQ(std::string(path.data(), path.size()),
                  answer.empty() ? rest : answer + '\0' + rest.substr(answer.size() + 1));
    }
};

const Said in_main = information("[get pdt path] pkg in home dir,pcPath =/boot/.\n\n");
const Said in_backup = information("[get pdt path] pkg in bak home dir,pcPath=/bootbak/.\n\n");
const Said nowhere = failure("[get pdt path] pkg not exist.\n\n");

TEST_F(ProductPathTest, ARealEntryInTheMainHomeWinsThenOneInTheBackup)
{
    constexpr Entry all[] = {Entry::missing, Entry::file, Entry::directory, Entry::link,
                             Entry::dangling_link};
    const auto real = [](Entry entry) { return entry == Entry::file || entry == Entry::directory; };
    for (const Entry main : all)
        for (const Entry backup : all) {
            SCOPED_TRACE(text("%d %d", static_cast<int>(main), static_cast<int>(backup)));
            put(main_home + std::string("p.cc"), main);
            put(backup_home + std::string("p.cc"), backup);
            const Said start = names("p.cc", "p.cc") + paths("p.cc") + main_found("p.cc");
            if (real(main))
                expect("p.cc", 0, "/boot/", start + in_main);
            else if (real(backup))
                expect("p.cc", 0, "/bootbak/", start + backup_found("p.cc") + in_backup);
            else
                expect("p.cc", minus_one, "", start + backup_found("p.cc") + nowhere);
        }
}

TEST_F(ProductPathTest, BothPlacesAreLookedAtOnceAndNotFollowed)
{
    forget_calls();
    EXPECT_EQ(ask("p.cc"), minus_one);
    const auto looked = calls("lstat");
    ASSERT_EQ(looked.size(), 2u);
    EXPECT_EQ(looked[0].path, "/opt/moxv8/home/p.cc");
    EXPECT_EQ(looked[1].path, "/opt/moxv8bak/home/p.cc");
    EXPECT_TRUE(calls("stat").empty());
    make_file(main_home + std::string("p.cc"));
    forget_calls();
    EXPECT_EQ(ask("p.cc"), 0u);
    EXPECT_EQ(calls("lstat").size(), 1u);
}

TEST_F(ProductPathTest, APlaceThatCannotBeLookedAtCountsAsEmpty)
{
    make_file(main_home + std::string("p.cc"));
    make_file(backup_home + std::string("p.cc"));
    const Said start = names("p.cc", "p.cc") + paths("p.cc");
    fail_libc("lstat", EIO);
    expect("p.cc", 0, "/bootbak/", start + backup_found("p.cc") + in_backup);
    fail_libc("lstat", EACCES, 0, 2);
    expect("p.cc", minus_one, "", start + nowhere);
}

TEST_F(ProductPathTest, WhatFollowsTheLastSlashIsTheFile)
{
    make_file(main_home + std::string("p.cc"));
    for (const char *package :
         {"p.cc", "/p.cc", "./p.cc", "/opt/moxv8bak/home/p.cc", "a//p.cc", "/x/../p.cc"})
        expect(package, 0, "/boot/", names(package, "p.cc") + paths("p.cc") + main_found("p.cc") + in_main);
    expect("p.cc.", minus_one, "", names("p.cc.", "p.cc.") + paths("p.cc.") + nowhere);
}

TEST_F(ProductPathTest, ANameThatEndsInASlashIsTheHomeItself)
{
    for (const char *package : {"", "/", "p.cc/"})
        expect(package, 0, "/boot/", names(package, "") + paths("") + main_found("") + in_main);
}

TEST_F(ProductPathTest, ANameOf236CharactersFitsBesideBothHomes)
{
    for (const std::size_t length : {235u, 236u}) {
        const std::string name(length, 'n');
        const Said start = names("/some/" + name, name) + paths(name);
        expect("/some/" + name, minus_one, "", start + nowhere);
        make_file(backup_home + name);
        expect("/some/" + name, 0, "/bootbak/", start + backup_found(name) + in_backup);
        make_file(main_home + name);
        expect("/some/" + name, 0, "/boot/", start + main_found(name) + in_main);
    }
}

TEST_F(ProductPathTest, ALongerNameFitsBesideNoneOfThemOrTheMainHomeAlone)
{
    for (const std::size_t length : {237u, 238u, 239u}) {
        const std::string name(length, 'n');
        make_file(main_home + name); // and is not found
        expect(name, minus_one, "",
               names(name, name) +
                   failure("[MOX get pdt path] string cat path_bak unsuccessful, ret=34\n\n"));
    }
    for (const std::size_t length : {240u, 241u, 255u, 1000u}) {
        const std::string name(length, 'n');
        expect(name, minus_one, "",
               names(name, name) + failure("[MOX get pdt path] string cat path unsuccessful, ret=34\n\n"));
    }
}

TEST_F(ProductPathTest, CopiesThatFailHandOnTheirCode)
{
    make_file(main_home + std::string("p.cc"));
    make_file(backup_home + std::string("q.cc"));
    const Said start = names("p.cc", "p.cc");
    for (const char *function : {"strncpy_s", "strncat_s"})
        for (const auto &[skip, place] : {std::pair{0u, "path"}, {1u, "path_bak"}}) {
            answer_platform(function, 77, skip);
            expect("p.cc", minus_one, "",
                   start + failure(text("[MOX get pdt path] string cat %s unsuccessful, ret=77\n\n", place)));
        }
    const Said not_copied = failure("String copy not success, return check code=77\n\n");
    answer_platform("strcpy_s", 77);
    expect("p.cc", minus_one, "", start + paths("p.cc") + main_found("p.cc") + not_copied);
    answer_platform("strcpy_s", 77);
    expect("q.cc", minus_one, "", names("q.cc", "q.cc") + paths("q.cc") + backup_found("q.cc") + not_copied);
}

TEST_F(ProductPathTest, TheAnswerNeedsItsRoom)
{
    make_file(main_home + std::string("p.cc"));
    make_file(backup_home + std::string("q.cc"));
    for (const auto &[package, answer] : {std::pair{"p.cc", std::string("/boot/")}, {"q.cc", "/bootbak/"}}) {
        const Said start = names(package, package) + paths(package) + main_found(package) +
                           (answer == "/boot/" ? nothing() : backup_found(package));
        const auto room = static_cast<std::uint32_t>(answer.size()) + 1;
        for (std::uint32_t size = 0; size < room; ++size) {
            EXPECT_EQ(during([&] { EXPECT_EQ(ask(package, size), minus_one); }),
                      start + failure("String copy not success, return check code=34\n\n"));
            EXPECT_EQ(std::string(path.data() + 1, path.size() - 1), std::string(path.size() - 1, '#'));
            EXPECT_EQ(path[0], size == 0 ? '#' : '\0');
        }
        EXPECT_EQ(ask(package, room), 0u);
        EXPECT_EQ(path.data(), answer);
    }
}

TEST_F(ProductPathTest, OnAnyOtherBoardNothingIsTouched)
{
    make_file(main_home + std::string("p.cc"));
    for (const std::uint32_t type : {0u, 1u, 0x900005d0u, 0x900005d2u, 0x900005f4u, an_mpu, a_line_card}) {
        be(type);
        forget_journal();
        forget_calls();
        EXPECT_EQ(ask("p.cc"), minus_one);
        EXPECT_EQ(requests(), std::vector<std::string>{"get /dev/board0 0x8000001"});
        EXPECT_TRUE(calls("lstat").empty());
        ASSERT_EQ(calls("open").size(), 1u);
        EXPECT_EQ(calls("open")[0].path, board0);
        expect("p.cc", minus_one, "",
               failure(text("[get pdt path] mpu is not qrm4tzwe uiBoardType=%#x\n\n", type)));
    }
}

TEST_F(ProductPathTest, ABoardThatCannotTellItsTypeIsAnother)
{
    deny(board0, EACCES);
    expect("p.cc", minus_one, "",
           failure("Not succeed to get board hardtype,ret=0xffffffff.\n") +
               failure("[get pdt path] mpu is not qrm4tzwe uiBoardType=0\n\n"));
    refuse(board0, item_hard_type);
    expect("p.cc", minus_one, "",
           failure("Not succeed to get board hardtype,ret=0x2710.\n") +
               failure("[get pdt path] mpu is not qrm4tzwe uiBoardType=0\n\n"));
}

TEST_F(ProductPathTest, OnlyTheBootPathIsServedAndOthersAskNothing)
{
    for (const std::uint32_t which : {1u, 2u, 0x7fffffffu, 0xffffffffu}) {
        path.fill('#');
        EXPECT_EQ(
            during([&] { EXPECT_EQ(MOX_GetPdtPath(which, "p.cc", path.data(), 32), minus_one); }),
            failure(text("[get pdt path] pdt path is not boot enPdtPath=%d\n\n", static_cast<int>(which))));
        EXPECT_EQ(path[0], '#');
    }
    EXPECT_TRUE(operations().empty());
}

TEST_F(ProductPathTest, NullPointersAreRefusedSilently)
{
    path.fill('#');
    EXPECT_EQ(during([&] {
                  EXPECT_EQ(MOX_GetPdtPath(0, nullptr, path.data(), 32), minus_one);
                  EXPECT_EQ(MOX_GetPdtPath(0, "p.cc", nullptr, 32), minus_one);
              }),
              nothing());
    EXPECT_EQ(path[0], '#');
    EXPECT_TRUE(calls("lstat").empty());
}

} // namespace
} // namespace test
