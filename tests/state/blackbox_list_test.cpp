// SPDX-License-Identifier: Apache-2.0
// Which black boxes there are.
#include "state/blackbox_test.hpp"
#include "state/free_spy.hpp"

#include <algorithm>
#include <cerrno>
#include <dirent.h>

using namespace test;
using testing::ElementsAre;
using testing::IsEmpty;

namespace
{

class BlackBoxList : public BoardTest
{
  protected:
    static void make(const std::string &name)
    {
        put_file(box_directory + name, "");
    }
    // The names found, sorted; the list is released.
    std::vector<std::string> query(const char *pattern)
    {
        std::uint32_t count = 77;
        char *list = reinterpret_cast<char *>(this);
        forget_calls();
        EXPECT_EQ(during([&] { result = MOX_QueryBlackbox(pattern, &count, &list); }), nothing());
        std::vector<std::string> names;
        EXPECT_EQ(list == nullptr, count == 0);
        for (std::uint32_t i = 0; i < count && list != nullptr; ++i) {
            const std::string entry(list + 64 * i, 64);
            const std::string name(entry.c_str());
            EXPECT_LE(name.size(), 63u);
            EXPECT_EQ(entry.substr(name.size()), std::string(64 - name.size(), '\0')) << "not zeroed";
            names.push_back(name);
        }
        EXPECT_EQ(blocks_held(), count == 0 ? 0u : 1u);
        const auto freed = freed_during([&] { MOX_ReleaseBlackbox(list); });
        EXPECT_EQ(freed, std::vector<const void *>(count == 0 ? 0 : 1, list));
        std::sort(names.begin(), names.end());
        return names;
    }
    // What the library asked for; which of the two functions it calls is the compiler's choice.
    static std::vector<std::size_t> allocated()
    {
        std::vector<std::size_t> sizes;
        for (const char *function : {"malloc", "calloc"})
            for (const Call &call : calls(function))
                sizes.push_back(call.size);
        return sizes;
    }
    std::int32_t result = 99;
};

TEST_F(BlackBoxList, EmptyPatternFindsAllThatAreBoxes)
{
    for (const char *name : {"b_blackbox", "a_blackbox", "_blackbox", "box", "c_blackbo", "d_blackbox.old"})
        make(name);
    EXPECT_THAT(query(""), ElementsAre("_blackbox", "a_blackbox", "b_blackbox", "d_blackbox.old"));
    EXPECT_EQ(result, 0);
}

TEST_F(BlackBoxList, PatternIsAnyPartOfTheName)
{
    for (const char *name : {"crash_blackbox", "crash2_blackbox", "words_blackbox", "crash", "rash_blackbox"})
        make(name);
    EXPECT_THAT(query("rash"), ElementsAre("crash2_blackbox", "crash_blackbox", "rash_blackbox"));
    EXPECT_THAT(query("crash_"), ElementsAre("crash_blackbox"));
    EXPECT_THAT(query("s_black"), ElementsAre("words_blackbox"));
    EXPECT_THAT(query("words_blackbox"), ElementsAre("words_blackbox"));
    EXPECT_THAT(query("CRASH"), IsEmpty());
    EXPECT_EQ(result, 0);
}

TEST_F(BlackBoxList, NamesThatAreNoBoxesAreNotFound)
{
    make("crash");
    make("crash_black");
    EXPECT_THAT(query("crash"), IsEmpty());
    EXPECT_EQ(result, 0);
    EXPECT_THAT(allocated(), IsEmpty());
}

TEST_F(BlackBoxList, AnyKindOfEntryCounts)
{
    ASSERT_EQ(mkdir("/opt/moxv8/var/dir_blackbox", 0755), 0);
    ASSERT_EQ(symlink("nowhere", "/opt/moxv8/var/link_blackbox"), 0);
    EXPECT_THAT(query(""), ElementsAre("dir_blackbox", "link_blackbox"));
}

TEST_F(BlackBoxList, NamesAreCutAt63Characters)
{
    const std::string prefix = "_blackbox";
    for (char mark : {'a', 'b', 'c', 'd'}) {
        const std::size_t length = mark == 'a' ? 62 : mark == 'b' ? 63 : mark == 'c' ? 64 : 200;
        make(std::string(length - prefix.size(), mark) + prefix);
    }
    make(std::string(100, 'e') + prefix);
    const std::vector<std::string> cut = query("");
    EXPECT_THAT(cut,
                ElementsAre(std::string(53, 'a') + prefix, std::string(54, 'b') + prefix,
                            std::string(55, 'c') + "_blackbo", std::string(63, 'd'), std::string(63, 'e')));
    // What is matched is the whole name.
    EXPECT_THAT(query("eee_blackbox"), ElementsAre(std::string(63, 'e')));
}

TEST_F(BlackBoxList, ListsAsManyAsThereAre)
{
    std::vector<std::string> expected;
    for (int i = 0; i < 700; ++i) {
        expected.push_back(text("module%03d_blackbox", i));
        make(expected.back());
        make(text("other%03d", i));
    }
    EXPECT_EQ(query("module"), expected);
    // The block, each entry with "." and "..", and the array.
    EXPECT_EQ(calls("free").size(), 1u + 1402u + 1u);
    EXPECT_THAT(allocated(), ElementsAre(700u * 64));
}

TEST_F(BlackBoxList, ScansTheBoxDirectoryOnce)
{
    make("a_blackbox");
    query("");
    ASSERT_EQ(calls("scandir").size(), 1u);
    EXPECT_EQ(calls("scandir")[0].path, "/opt/moxv8/var/");
}

TEST_F(BlackBoxList, FailedScanIsAnEmptyResult)
{
    make("a_blackbox");
    fail_libc("scandir", ENOMEM);
    EXPECT_THAT(query(""), IsEmpty());
    EXPECT_EQ(result, 0);
    EXPECT_TRUE(calls("free").empty());
    EXPECT_THAT(query(""), ElementsAre("a_blackbox"));

    ASSERT_EQ(unlink("/opt/moxv8/var/a_blackbox"), 0);
    ASSERT_EQ(rmdir("/opt/moxv8/var"), 0);
    EXPECT_THAT(query(""), IsEmpty());
    EXPECT_EQ(result, 0);
    answer_libc("scandir", 0);
    EXPECT_THAT(query(""), IsEmpty());
    EXPECT_EQ(result, 0);
}

TEST_F(BlackBoxList, ExhaustedMemoryGivesItsCodeAndNothing)
{
    make("a_blackbox");
    make("b_blackbox");
    fail_libc("malloc", ENOMEM);
    fail_libc("calloc", ENOMEM);
    EXPECT_THAT(query(""), IsEmpty());
    EXPECT_EQ(result, -10);
    EXPECT_EQ(calls("free").size(), 4u + 1u);
}

TEST_F(BlackBoxList, NullArgumentIsRefused)
{
    std::uint32_t count = 77;
    char *list = reinterpret_cast<char *>(this);
    EXPECT_EQ(during([&] {
                  EXPECT_EQ(MOX_QueryBlackbox(nullptr, &count, &list), -1);
                  EXPECT_EQ(MOX_QueryBlackbox("", nullptr, &list), -1);
                  EXPECT_EQ(MOX_QueryBlackbox("", &count, nullptr), -1);
              }),
              nothing());
    EXPECT_EQ(count, 77u);
    EXPECT_EQ(list, reinterpret_cast<char *>(this));
    EXPECT_TRUE(calls("scandir").empty());
}

TEST_F(BlackBoxList, ScanResultIsFreedWithItsEntries)
{
    make("a_blackbox");
    dirent **names = nullptr;
    const int count = scandir(box_directory, &names, nullptr, nullptr);
    ASSERT_EQ(count, 3);
    const std::vector<const void *> all = {names[0], names[1], names[2], names};
    EXPECT_THAT(freed_during([&] { MOX_DestroyScanDirNameList(names, 0); }), IsEmpty());
    EXPECT_EQ(freed_during([&] { MOX_DestroyScanDirNameList(names, 3); }), all);
    EXPECT_THAT(freed_during([] { MOX_DestroyScanDirNameList(nullptr, 3); }), IsEmpty());
}

} // namespace
