// SPDX-License-Identifier: Apache-2.0
// What the two environments refuse.
#include "platform/calls.hpp"
#include "platform/env_stores.hpp"

#include <cerrno>
#include <filesystem>
#include <gmock/gmock.h>
#include <optional>
#include <string>
#include <vector>

namespace
{

using namespace std::string_literals;
using test::read_file;
using test::write_file;

class EnvLimits : public test::Stores
{
};
BOTH_STORES(EnvLimits);

TEST_P(EnvLimits, NamesAndValuesHaveAtMost255Characters)
{
    const std::string longest(255, 'n');
    const std::string value(255, 'v');
    EXPECT_TRUE(set(longest, value));
    EXPECT_EQ(get(longest), value);
    const std::string before = read_file(path);
    EXPECT_FALSE(set(longest + "n", "1"));
    EXPECT_FALSE(set("a", value + "v"));
    EXPECT_FALSE(set("a", std::string(100'000, 'v')));
    EXPECT_EQ(get(longest + "n"), std::nullopt);
    EXPECT_EQ(read_file(path), before);
}

TEST_P(EnvLimits, NamesAreNeitherEmptyNorHoldAnEqualSign)
{
    for (const char *name : {"", "=", "a=b", "a="}) {
        EXPECT_FALSE(set(name, "1")) << name;
        EXPECT_EQ(get(name), std::nullopt) << name;
    }
    EXPECT_TRUE(scratch.names().empty());
    write_file(path, "a=b=c\0=d\0"s);
    EXPECT_EQ(get("a=b"), std::nullopt);
    EXPECT_EQ(get(""), std::nullopt);
}

TEST_P(EnvLimits, NullIsRefused)
{
    char value[256] = "old";
    EXPECT_NE(GetParam().get(nullptr, value), 0u);
    EXPECT_STREQ(value, "old");
    EXPECT_NE(GetParam().get("a", nullptr), 0u);
    EXPECT_NE(GetParam().set(nullptr, "1"), 0u);
    EXPECT_NE(GetParam().set("a", nullptr), 0u);
    EXPECT_TRUE(scratch.names().empty());
}

TEST_P(EnvLimits, AValueTooLongForTheInterfaceIsUnreadable)
{
    write_file(path, "a=" + std::string(256, 'v') + "\0b="s + std::string(255, 'v') + "\0"s);
    EXPECT_EQ(get("a"), std::nullopt);
    EXPECT_EQ(get("b"), std::string(255, 'v'));
}

TEST_P(EnvLimits, AMissingFolderIsAFailureAndIsNotMade)
{
    setenv(GetParam().variable, scratch.path("none/store").c_str(), 1);
    EXPECT_FALSE(set("a", "1"));
    EXPECT_EQ(get("a"), std::nullopt);
    EXPECT_TRUE(scratch.names().empty());
}

TEST_P(EnvLimits, APathTooLongForItsNeighboursIsAFailure)
{
    setenv(GetParam().variable, (scratch.path("store") + std::string(5000, 'x')).c_str(), 1);
    EXPECT_FALSE(set("a", "1"));
    EXPECT_EQ(get("a"), std::nullopt);
}

TEST_P(EnvLimits, WhatIsNoFileIsNoStore)
{
    std::filesystem::create_directory(path);
    EXPECT_FALSE(set("a", "1"));
    EXPECT_EQ(get("a"), std::nullopt);
    EXPECT_TRUE(std::filesystem::is_directory(path));
    setenv(GetParam().variable, "/dev/zero", 1);
    EXPECT_EQ(get("a"), std::nullopt);
}

TEST_P(EnvLimits, AFileThatIsFarTooLargeIsNoStore)
{
    write_file(path, "a=1\0"s);
    std::filesystem::resize_file(path, (1 << 20) + 1);
    EXPECT_EQ(get("a"), std::nullopt);
    EXPECT_FALSE(set("a", "2"));
    EXPECT_EQ(std::filesystem::file_size(path), (1u << 20) + 1);
}

TEST_P(EnvLimits, AFullStoreStaysAsItIs)
{
    std::string full;
    while (full.size() + 257 <= 1 << 20)
        full += "v" + std::to_string(full.size()) + "=" + std::string(200, 'x') + "\0"s;
    full += "z=" + std::string((1 << 20) - full.size() - 3, 'z') + "\0"s;
    write_file(path, full);
    EXPECT_FALSE(set("a", "1"));
    EXPECT_EQ(read_file(path), full);
}

// Every libc call of a change fails in turn: a failed change says so, and leaves the old store or, once the
// new one has its name, the new one; never anything between, nor a file beside it, nor an open descriptor.
TEST_P(EnvLimits, AFailureOfAnyCallIsReportedAndLeavesAWholeStore)
{
    const std::string old = "a=old\0b=other\0"s;
    const std::string changed = "b=other\0a=new\0"s;
    unsigned failures = 0;
    for (unsigned failing = 0;; ++failing) {
        write_file(path, old);
        const auto before = test::open_descriptors();
        unsigned number = 0;
        std::string failed;
        bool renamed = false;
        bool good = false;
        int new_file = -1;
        bool harmless = false; // closing what was only read or flushed has nothing to lose
        {
            test::Watch watch([&](const test::Call &call) -> std::optional<long> {
                const std::string function = call.function;
                // Letting go is not a step of the change: it cannot be refused.
                if (function == "unlink" || (function == "flock" && call.flags == 8))
                    return std::nullopt;
                if (function == "fchmod")
                    new_file = call.fd;
                if (number++ != failing) {
                    renamed = renamed || function == "rename";
                    return std::nullopt;
                }
                failed = function;
                if (function == "close") {
                    harmless = call.fd != new_file || renamed;
                    ::close(call.fd);
                }
                errno = EIO;
                return -1;
            });
            good = set("a", "new");
        }
        if (failed.empty()) {
            EXPECT_TRUE(good);
            break;
        }
        SCOPED_TRACE("call " + std::to_string(failing) + ": " + failed);
        EXPECT_EQ(good, harmless);
        EXPECT_EQ(read_file(path), renamed ? changed : old);
        failures += good ? 0 : 1;
        EXPECT_EQ(scratch.names().count("store.new"), 0u);
        EXPECT_EQ(test::open_descriptors(), before);
    }
    EXPECT_GE(failures, 10u);
}

TEST_P(EnvLimits, InterruptedAndPartialCallsAreCarriedOn)
{
    EXPECT_TRUE(set("a", "1"));
    std::set<std::string> interrupted;
    {
        test::Watch watch([&](const test::Call &call) -> std::optional<long> {
            const std::string function = call.function;
            const bool may_be =
                function == "read" || function == "write" || (function == "flock" && call.flags == 2);
            if (!may_be || !interrupted.insert(function).second)
                return std::nullopt;
            errno = EINTR;
            return -1;
        });
        EXPECT_TRUE(set("b", "2"));
    }
    EXPECT_EQ(interrupted, (std::set<std::string>{"flock", "read", "write"}));
    EXPECT_EQ(read_file(path), "a=1\0b=2\0"s);
}

TEST_P(EnvLimits, AStoreThatCannotBeReadWholeIsLeftAlone)
{
    EXPECT_TRUE(set("a", "1"));
    const auto cut = [](const test::Call &call) -> std::optional<long> {
        return strcmp(call.function, "read") == 0 ? std::optional<long>(0) : std::nullopt;
    };
    {
        test::Watch watch(cut);
        EXPECT_FALSE(set("b", "2"));
        EXPECT_EQ(get("a"), std::nullopt);
    }
    EXPECT_EQ(read_file(path), "a=1\0"s);
}

// The sizes that only the memory environment's interface has.
class MemoryEnv : public test::Stores
{
  protected:
    MemoryEnv() : Stores(test::memory) {}
};

TEST_F(MemoryEnv, AReadNeedsRoomForValueAndTerminator)
{
    ASSERT_EQ(bsp_setenv_s("a", "1234", 5), 0u);
    char value[8] = "#######";
    EXPECT_NE(bsp_getmemenv_s("a", value, 4), 0u);
    EXPECT_NE(bsp_getmemenv_s("a", value, 0), 0u);
    EXPECT_STREQ(value, "#######");
    EXPECT_EQ(bsp_getmemenv_s("a", value, 5), 0u);
    EXPECT_STREQ(value, "1234");
    EXPECT_STREQ(value + 5, "##");
}

TEST_F(MemoryEnv, TheLengthOfAWriteMustReachTheTerminator)
{
    EXPECT_NE(bsp_setenv_s("a", "1234", 0), 0u);
    EXPECT_NE(bsp_setenv_s("a", "1234", 4), 0u);
    EXPECT_EQ(get("a"), std::nullopt);
    EXPECT_EQ(bsp_setenv_s("a", "1234", 5), 0u);
    EXPECT_EQ(get("a"), "1234");
}

TEST_F(MemoryEnv, AWholeBufferMayBeHandedOver)
{
    const char buffer[36] = "0x55aa";
    EXPECT_EQ(bsp_setenv_s("flag", buffer, sizeof buffer), 0u);
    EXPECT_EQ(get("flag"), "0x55aa");
    EXPECT_EQ(read_file(path), "flag=0x55aa\0"s);
}

} // namespace
