// SPDX-License-Identifier: Apache-2.0
// What the two environments keep, and in what form.
#include "platform/env_stores.hpp"

#include <gmock/gmock.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace
{

using namespace std::string_literals;
using test::read_file;
using test::write_file;
using testing::ElementsAre;

class Env : public test::Stores
{
};
BOTH_STORES(Env);

TEST_P(Env, AVariableComesBackAsItWasSet)
{
    EXPECT_TRUE(set("mode", "base"));
    EXPECT_EQ(get("mode"), "base");
}

TEST_P(Env, AnAbsentVariableIsRefused)
{
    EXPECT_EQ(get("mode"), std::nullopt);
    EXPECT_TRUE(set("model", "1"));
    EXPECT_TRUE(set("mod", "2"));
    EXPECT_EQ(get("mode"), std::nullopt);
    EXPECT_EQ(get("MODEL"), std::nullopt);
}

TEST_P(Env, ReadingMakesNoFile)
{
    EXPECT_EQ(get("mode"), std::nullopt);
    EXPECT_TRUE(scratch.names().empty());
}

TEST_P(Env, ANewValueReplacesTheOldOneAndLeavesTheOthers)
{
    EXPECT_TRUE(set("first", "1"));
    EXPECT_TRUE(set("second", "2"));
    EXPECT_TRUE(set("third", "3"));
    EXPECT_TRUE(set("second", "a longer value"));
    EXPECT_EQ(get("first"), "1");
    EXPECT_EQ(get("second"), "a longer value");
    EXPECT_EQ(get("third"), "3");
    EXPECT_TRUE(set("second", ""));
    EXPECT_EQ(get("second"), "");
}

TEST_P(Env, ValuesMayHoldEveryCharacter)
{
    std::string all;
    for (int byte = 1; byte < 256; ++byte)
        all.push_back(static_cast<char>(byte));
    EXPECT_TRUE(set("all", all));
    EXPECT_TRUE(set("next", "=x=y"));
    EXPECT_EQ(get("all"), all);
    EXPECT_EQ(get("next"), "=x=y");
}

TEST_P(Env, TheFileHoldsOneRecordAVariable)
{
    EXPECT_TRUE(set("a", "1"));
    EXPECT_TRUE(set("b", ""));
    EXPECT_EQ(read_file(path), "a=1\0b=\0"s);
    EXPECT_TRUE(set("a", "2"));
    EXPECT_EQ(read_file(path), "b=\0a=2\0"s);
    EXPECT_THAT(scratch.names(), ElementsAre("store", "store.lock"));
}

TEST_P(Env, AFileWrittenElsewhereIsRead)
{
    write_file(path, "a=1\0\0no sign\0b=2"s); // the last record has no terminator
    EXPECT_EQ(get("a"), "1");
    EXPECT_EQ(get("b"), "2");
    EXPECT_EQ(get("no sign"), std::nullopt);
    EXPECT_TRUE(set("c", "3"));
    EXPECT_EQ(get("a"), "1");
    EXPECT_EQ(get("b"), "2");
    EXPECT_EQ(get("c"), "3");
}

TEST_P(Env, OfTwoRecordsTheFirstCountsAndASetReplacesBoth)
{
    write_file(path, "a=1\0a=2\0"s);
    EXPECT_EQ(get("a"), "1");
    EXPECT_TRUE(set("a", "3"));
    EXPECT_EQ(read_file(path), "a=3\0"s);
}

TEST_P(Env, AChangeReplacesTheFileAndKeepsItsMode)
{
    EXPECT_TRUE(set("a", "1"));
    ASSERT_EQ(chmod(path.c_str(), 0640), 0);
    std::ifstream old_reader(path, std::ios::binary);
    EXPECT_TRUE(set("a", "2"));
    struct stat status = {};
    ASSERT_EQ(stat(path.c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 07777, 0640u);
    const std::string seen(std::istreambuf_iterator<char>(old_reader), {});
    EXPECT_EQ(seen, "a=1\0"s) << "a reader sees the old store whole";
}

TEST_P(Env, NoDescriptorStaysOpen)
{
    const auto before = test::open_descriptors();
    EXPECT_TRUE(set("a", "1"));
    EXPECT_EQ(get("a"), "1");
    EXPECT_EQ(get("b"), std::nullopt);
    EXPECT_EQ(test::open_descriptors(), before);
}

TEST_P(Env, ChangesOfSeveralProcessesAreAllKept)
{
    constexpr int processes = 6;
    constexpr int each = 15;
    for (int i = 0; i < processes; ++i) {
        const pid_t child = fork();
        ASSERT_GE(child, 0);
        if (child != 0)
            continue;
        bool good = true;
        for (int n = 0; n < each; ++n) {
            good = good && set("own" + std::to_string(i), std::to_string(n));
            good = good && set("p" + std::to_string(i) + "n" + std::to_string(n), "x");
            good = good && get("own" + std::to_string(i)) == std::to_string(n);
        }
        _exit(good ? 0 : 1);
    }
    for (int i = 0; i < processes; ++i) {
        int status = 1;
        ASSERT_GT(wait(&status), 0);
        EXPECT_EQ(status, 0);
    }
    for (int i = 0; i < processes; ++i) {
        EXPECT_EQ(get("own" + std::to_string(i)), std::to_string(each - 1));
        for (int n = 0; n < each; ++n)
            EXPECT_EQ(get("p" + std::to_string(i) + "n" + std::to_string(n)), "x") << i << " " << n;
    }
}

TEST(EnvPlaces, TheTwoEnvironmentsAreApart)
{
    const test::Scratch scratch;
    setenv("MOXPLATFORM_ENV", scratch.path("lasting").c_str(), 1);
    setenv("MOXPLATFORM_MEMENV", scratch.path("memory").c_str(), 1);
    EXPECT_EQ(SetEnv("a", "1"), 0u);
    EXPECT_EQ(bsp_setenv_s("a", "2", 2), 0u);
    char value[256];
    EXPECT_EQ(GetEnv("a", value), 0u);
    EXPECT_STREQ(value, "1");
    EXPECT_EQ(bsp_getmemenv_s("a", value, sizeof value), 0u);
    EXPECT_STREQ(value, "2");
    unsetenv("MOXPLATFORM_ENV");
    unsetenv("MOXPLATFORM_MEMENV");
}

} // namespace
