// SPDX-License-Identifier: Apache-2.0
// Which of its functions the library calls for links and boot files, with what, and what it does with their
// results; and its longest lines in full.
#include "install/boot_file_package.hpp"
#include "install/link_asked.hpp"
#include "install/link_own.hpp"
#include "install/link_test.hpp"

#include <moxboot/boot_file.h>
#include <moxboot/link.h>

namespace test
{
namespace
{

using Steps = std::vector<std::string>;

// A line of a report, as the two functions are handed it.
Steps told(const std::string &line, unsigned level = 1)
{
    return {text("trace 0 %u: ", level) + line, "message 3: " + line};
}

Steps operator+(Steps first, const Steps &second)
{
    first.insert(first.end(), second.begin(), second.end());
    return first;
}

class LinkOverrideTest : public LinkTest
{
  protected:
    void SetUp() override
    {
        LinkTest::SetUp();
        forget_package();
        own_answers.clear();
        own_logic_id = 8;
        steps.clear();
    }
    Steps after(const std::function<void()> &action)
    {
        steps.clear();
        EXPECT_EQ(during(action), nothing()) << "all reports are caught";
        return steps;
    }
    static Steps row_told(unsigned i, const std::string &source, const std::string &destination)
    {
        return told(text("Drvboot create link %u, src: ", i) + source + "\n") +
               told(text("Drvboot create link %u, dst: ", i) + destination + "\n");
    }
};

TEST_F(LinkOverrideTest, AnInstallationsLinksAreTheTwoWalksOverTheLibrarysTables)
{
    for (const std::uint32_t first : {0u, 1u, minus_one})
        for (const std::uint32_t second : {0u, 7u, minus_one}) {
            own_answers = {{"DrvBoot_InstallBootFile", first}, {"DrvBoot_Encap_InstallBootFile", second}};
            EXPECT_EQ(
                after([&] { EXPECT_EQ(MOX_AfterInstallRunFile("root"), static_cast<std::int32_t>(second)); }),
                told("\nDrvboot install run file begin...\n") + Steps{"walk links 98 root"} +
                    (first != 0 ? told("Drvboot install run file NOK\n") : Steps{}) +
                    Steps{"walk links by id 119 root"} +
                    (second != 0 ? told("Drvboot encap install run file NOK\n") : Steps{}) +
                    told("Drvboot install run file end\n"));
        }
}

TEST_F(LinkOverrideTest, AnInstallationsBootFilesAreExtractedToBoot)
{
    for (const std::int64_t result : {0LL, 5LL, -1LL}) {
        own_answers["DrvBoot_ExtractBootFileXTN"] = result;
        g_nandFlashDeleteFlag = 1;
        EXPECT_EQ(after([&] { EXPECT_EQ(MOX_InstallPkgNotify(4, "package", "path"), result); }),
                  told("Drvboot install pkg package, Phase 4, install path path\n") +
                      Steps{"extract package boot files 22 /boot"} +
                      (result != 0 ? told("Drvboot install pkg NOK\n", 4) : Steps{}) +
                      told("Drvboot install pkg end\n"));
        EXPECT_EQ(g_nandFlashDeleteFlag, 0u);
    }
}

TEST_F(LinkOverrideTest, AFailedExtractionIsCheckedForABiosAndThenTold)
{
    const BootFileDesc table[] = {{"a", "0x1", yes}, {"b", "0x2", yes}};
    refusals = {{"/to/a", 1}, {"/to/b", 1}};
    for (const std::int64_t answer : {0, 1, -1}) { // which nobody looks at
        own_answers["Drvboot_ClearBiosFile"] = answer;
        EXPECT_EQ(after([&] { EXPECT_EQ(DrvBoot_ExtractBootFileXTN("p", table, 2, "/to"), 0u); }),
                  Steps{"extract p own 2 /to"} + Steps{"clear a"} +
                      told("Drvboot extract a unsuccessfully\n", 4) + Steps{"clear b"} +
                      told("Drvboot extract b unsuccessfully\n", 4));
    }
}

TEST_F(LinkOverrideTest, ARowByPredicateIsMadeOfFourSteps)
{
    const LinkFileDesc table[] = {{"../src", "a", "../conf", "b", nullptr}};
    deliver(src("a"));
    const Steps before = Steps{"walk own 1 " + root} + Steps{"format " + root + " ../src a 384"} +
                         row_told(0, src("a"), dst("b")) + Steps{"existed " + src("a")};
    const auto walk = [&] { EXPECT_EQ(DrvBoot_InstallBootFile(table, 1, root.c_str()), 0u); };
    const Steps whole =
        before + Steps{"unlink a " + dst("b")} + Steps{"link " + src("a") + " " + dst("b") + " a"};
    EXPECT_EQ(after(walk), whole);
    std::filesystem::remove(dst("b"));
    for (const std::int64_t answer : {0, 5, -1}) { // which nobody looks at
        own_answers = {{"DrvBoot_UnlinkExistedUnexpectedBootFile", answer}};
        EXPECT_EQ(after(walk), whole);
        std::filesystem::remove(dst("b"));
    }
    for (const std::int64_t answer : {0, 2, -1}) { // anything but 1 is a no
        own_answers = {{"DrvBoot_IsFileExisted", answer}};
        EXPECT_EQ(after(walk), before);
    }
}

TEST_F(LinkOverrideTest, ASourcePathThatIsNotMadeEndsTheWalkByPredicate)
{
    const LinkFileDesc table[] = {{"../src", "a", "../conf", "a", nullptr},
                                  {"../src", "a", "../conf", "b", nullptr}};
    deliver(src("a"));
    for (const std::int64_t answer : {-1, 1}) {
        own_answers["DrvBoot_FormatSrcPath"] = answer;
        EXPECT_EQ(after([&] { EXPECT_EQ(DrvBoot_InstallBootFile(table, 2, root.c_str()), minus_one); }),
                  Steps{"walk own 2 " + root} + Steps{"format " + root + " ../src a 384"});
    }
}

TEST_F(LinkOverrideTest, ALinkThatIsNotMadeEndsTheWalkByPredicateWithoutAnError)
{
    const LinkFileDesc table[] = {{"../src", "a", "../conf", "a", nullptr},
                                  {"../src", "a", "../conf", "b", nullptr}};
    deliver(src("a"));
    own_answers["DrvBoot_LinkExistedBootFile"] = -1;
    EXPECT_EQ(after([&] { EXPECT_EQ(DrvBoot_InstallBootFile(table, 2, root.c_str()), 0u); }).back(),
              "link " + src("a") + " " + dst("a") + " a");
}

TEST_F(LinkOverrideTest, RowsOfTheLogicIdAreLinkedOneByOneAndTheLastResultHandedOn)
{
    const LinkEncapFileDesc table[] = {
        {8, "d", "f", "d", "f"}, {9, "d", "f", "d", "f"}, {8, "d", "f", "d", "f"}};
    for (const std::uint32_t result : {0u, 5u, minus_one}) {
        own_answers["DrvBoot_LinkFile"] = result;
        EXPECT_EQ(
            after([&] { EXPECT_EQ(DrvBoot_Encap_InstallBootFile(table, 3, "root"), result); }),
            Steps{"walk own 3 root"} + Steps{"logic id, 0 before"} + told("Drvboot get logic id 0x8\n") +
                Steps{"row own 0 root"} + told(text("Drvboot get encap file, i is 0x0, ret:%u\n", result)) +
                Steps{"row own 2 root"} + told(text("Drvboot get encap file, i is 0x2, ret:%u\n", result)));
    }
}

TEST_F(LinkOverrideTest, TheLogicIdsCodeIsHandedOnWhateverItIs)
{
    const LinkEncapFileDesc table[] = {{8, "d", "f", "d", "f"}};
    for (const std::uint32_t code : {1u, 0x1234u, minus_one}) {
        own_answers["MOX_GetSelfEncapLogicId"] = code;
        EXPECT_EQ(after([&] { EXPECT_EQ(DrvBoot_Encap_InstallBootFile(table, 1, "root"), code); }),
                  Steps{"walk own 1 root"} + Steps{"logic id, 0 before"} +
                      told(text("Drvboot get local encap logic id NOK, return 0x%x\n", code), 4));
    }
}

TEST_F(LinkOverrideTest, ARowOfALogicIdAsksWhetherItsSourceIsThere)
{
    const LinkEncapFileDesc table[] = {{8, "../src", "a", "../conf", "b"}};
    deliver(src("a"));
    for (const std::int64_t answer : {0, 2, -1}) { // anything but 1 is a no
        own_answers = {{"DrvBoot_IsFileExisted", answer}};
        EXPECT_EQ(after([&] { EXPECT_EQ(DrvBoot_LinkFile(table, 0, root.c_str()), 0u); }),
                  Steps{"row own 0 " + root} + Steps{"format " + root + " ../src a 384"} +
                      told("Drvboot create link 0, src: " + src("a") + "\n") +
                      told("Drvboot create link 0, desc:" + dst("b") + "\n") +
                      told("Drvboot create link 0, src: ../src, desc: ../conf\n") +
                      Steps{"existed " + src("a")} +
                      told("Drvboot create link 0, src: " + src("a") + " not exist\n"));
    }
    own_answers = {{"DrvBoot_FormatSrcPath", 1}};
    EXPECT_EQ(after([&] { EXPECT_EQ(DrvBoot_LinkFile(table, 0, root.c_str()), minus_one); }).size(), 2u);
}

// 383 characters of it, which is all that a path holds.
TEST_F(LinkOverrideTest, ALongTargetIsToldAsFarAsAPathGoes)
{
    const LinkFileDesc by_predicate[] = {{"../src", "a", "../conf", "b", nullptr}};
    const LinkEncapFileDesc by_logic_id[] = {{8, "../src", "a", "../conf", "b"}};
    deliver(src("a"));
    for (const std::size_t length : {1u, 382u, 383u, 384u, 385u, 1000u}) {
        std::string target;
        for (std::size_t i = 0; i < length; ++i)
            target += static_cast<char>('a' + i % 23);
        std::filesystem::remove(dst("b"));
        link(dst("b"), target);
        const Steps walked = after([&] { DrvBoot_InstallBootFile(by_predicate, 1, root.c_str()); });
        const Steps read = told("Drvboot install bootfile, read link 0 exist\n") +
                           told("Drvboot src path " + target.substr(0, 383) + "\n");
        ASSERT_GT(walked.size(), 4u);
        EXPECT_EQ(Steps(walked.end() - 4, walked.end()), read);
        const Steps replaced = after([&] { DrvBoot_LinkFile(by_logic_id, 0, root.c_str()); });
        EXPECT_THAT(replaced, testing::Contains("trace 0 1:   " + target.substr(0, 383) + "\n"));
        EXPECT_THAT(replaced, testing::Contains("message 3:   " + target.substr(0, 383) + "\n"));
    }
}

TEST_F(LinkOverrideTest, LongPathsAreToldInFull)
{
    const std::string source = deep(place + "/src", 381);
    deliver(source + "/a");
    const LinkFileDesc table[] = {{source.c_str(), "a", "../conf", "b", nullptr},
                                  {source.c_str(), "b", "../conf", "b", nullptr}};
    const Steps told_of_both = after([&] { DrvBoot_InstallBootFile(table, 2, root.c_str()); });
    for (const Steps &lines : {row_told(0, source + "/a", dst("b")), row_told(1, source + "/b", dst("b")),
                               told("Drvboot file " + source + "/b access not ok(2)\n")})
        for (const std::string &line : lines)
            EXPECT_THAT(told_of_both, testing::Contains(line));
    EXPECT_EQ((source + "/a").size(), 383u);
}

} // namespace
} // namespace test
