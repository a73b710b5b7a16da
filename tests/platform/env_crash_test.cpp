// SPDX-License-Identifier: Apache-2.0
// A process that is killed while it changes an environment leaves a whole store.
#include "platform/calls.hpp"
#include "platform/env_stores.hpp"

#include <csignal>
#include <ctime>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <random>
#include <set>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace
{

using namespace std::string_literals;
using test::read_file;
using test::write_file;

class EnvCrash : public test::Stores
{
};
BOTH_STORES(EnvCrash);

TEST_P(EnvCrash, AChangeIsOnTheDeviceBeforeItGetsItsNameAndTheNameBeforeSuccessIsTold)
{
    write_file(path, "a=old\0"s);
    std::vector<std::string> steps;
    bool good = false;
    {
        test::Watch watch([&](const test::Call &call) -> std::optional<long> {
            const std::string function = call.function;
            if (function == "flock" || function == "read" || function == "write" || function == "fsync" ||
                function == "rename")
                steps.push_back(function);
            return std::nullopt;
        });
        good = set("a", "new");
    }
    EXPECT_TRUE(good);
    EXPECT_THAT(steps, testing::ElementsAre("flock", "read", "write", "fsync", "rename", "fsync", "flock"));
}

TEST_P(EnvCrash, AKillBeforeAnyCallOfAChangeLeavesTheOldStoreOrTheNew)
{
    const std::string old = "a=old\0b=other\0"s;
    const std::string changed = "b=other\0a=new\0"s;
    unsigned kills = 0;
    unsigned found_new = 0;
    for (;; ++kills) {
        ASSERT_LT(kills, 100u);
        write_file(path, old);
        const pid_t child = fork();
        ASSERT_GE(child, 0);
        if (child == 0) {
            unsigned number = 0;
            test::Watch watch([&](const test::Call &) -> std::optional<long> {
                if (number++ == kills)
                    kill(getpid(), SIGKILL);
                return std::nullopt;
            });
            _exit(set("a", "new") ? 0 : 1);
        }
        int status = 0;
        ASSERT_EQ(waitpid(child, &status, 0), child);
        if (WIFEXITED(status)) {
            EXPECT_EQ(WEXITSTATUS(status), 0);
            break;
        }
        SCOPED_TRACE("killed before call " + std::to_string(kills));
        const std::string left = read_file(path);
        EXPECT_TRUE(left == old || left == changed) << testing::PrintToString(left);
        found_new += left == changed ? 1 : 0;
        // Neither the lock nor what lies beside stands in the way of the next.
        EXPECT_TRUE(set("b", "again"));
        EXPECT_EQ(get("b"), "again");
    }
    EXPECT_GE(kills, 10u);
    EXPECT_GE(found_new, 1u);
    EXPECT_EQ(read_file(path), changed);
}

TEST_P(EnvCrash, AKillAtAnyMomentLeavesWholeValues)
{
    std::mt19937 random(20240501);
    for (int round = 0; round < 25; ++round) {
        const pid_t child = fork();
        ASSERT_GE(child, 0);
        if (child == 0) {
            for (unsigned n = 0;; ++n)
                if (!set(n % 2 == 0 ? "even" : "odd", std::string(250, static_cast<char>('a' + n % 26))))
                    _exit(1);
        }
        const timespec pause{0,
                             static_cast<long>(std::uniform_int_distribution<>(1, 20)(random)) * 1'000'000};
        nanosleep(&pause, nullptr);
        kill(child, SIGKILL);
        int status = 0;
        ASSERT_EQ(waitpid(child, &status, 0), child);
        ASSERT_TRUE(WIFSIGNALED(status)) << "a change was refused";
        for (const char *name : {"even", "odd"})
            if (const auto value = get(name)) {
                ASSERT_EQ(value->size(), 250u);
                EXPECT_EQ(*value, std::string(250, value->at(0)));
            }
        const std::set<size_t> whole = {0, 256, 256 + 255}; // no record yet, "even=...", both
        EXPECT_EQ(whole.count(read_file(path).size()), 1u) << read_file(path).size();
    }
    EXPECT_TRUE(set("last", "1"));
    EXPECT_EQ(get("last"), "1");
}

} // namespace
