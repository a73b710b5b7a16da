// SPDX-License-Identifier: Apache-2.0
// What a hook sees of the calls that a shared library makes, and what it can do about them.
#include "hook_test.hpp"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <dlfcn.h>
#include <sys/ioctl.h>
#include <sys/time.h>
#include <syslog.h>
#include <thread>

using namespace hook_test;

namespace
{

TEST_P(Hook, FailsEveryFunctionOnDescriptors)
{
    char byte = 'x';
    fails("open", [&] { return call.open("/dev/zero", O_RDONLY); });
    fails("open", [&] { return call.openat(AT_FDCWD, "/dev/zero", O_RDONLY); });
    fails("close", [&] { return call.close(1); });
    fails("ioctl", [&] { return call.ioctl(1, 3, nullptr); });
    fails("read", [&] { return call.read(0, &byte, 1); });
    fails("write", [&] { return call.write(1, &byte, 1); });
    fails("dup", [&] { return call.dup(1); });
    fails("dup2", [&] { return call.dup2(1, 2); });
    fails("dup3", [&] { return call.dup3(1, 2, 0); });
    fails("fcntl", [&] { return call.fcntl(1, F_DUPFD, 0); });
    fails("lseek", [&] { return call.lseek(1); });
    fails("fstat", [&] { return call.fstat(1); });
}

TEST_P(Hook, FailsSleepsAndClocks)
{
    fails("usleep", [&] { return call.usleep(1); });
    fails("nanosleep", [&] { return call.nanosleep(1); });
    fails("select", [&] { return call.select(0, 1); });
    fails("time", [&] { return call.time(); });
    fails("clock_gettime", [&] { return call.clock_gettime(); });
    fails("sysinfo", [&] { return call.sysinfo(); });
    plan("localtime_r", 0, EOVERFLOW);
    EXPECT_EQ(heard([&] { return call.localtime_r(); }), 0);
    EXPECT_EQ(errno, EOVERFLOW);
}

TEST_P(Hook, FailsAllocations)
{
    plan("malloc", 0, ENOMEM);
    EXPECT_EQ(heard([&] { return call.malloc(10); }), nullptr);
    EXPECT_EQ(errno, ENOMEM);
    plan("calloc", 0, ENOMEM);
    EXPECT_EQ(heard([&] { return call.calloc(10, 2); }), nullptr);
    EXPECT_EQ(seen.at(0).size, 20u);
    EXPECT_TRUE(blocks.empty());
}

TEST_P(Hook, SeesWhatACallIsAbout)
{
    const int fd = heard([&] { return call.open("/dev/zero", O_RDONLY | O_CLOEXEC); });
    EXPECT_GE(fd, 0);
    EXPECT_EQ(errno, EDOM);
    EXPECT_EQ(seen[0].path, "/dev/zero");
    EXPECT_EQ(static_cast<int>(seen[0].size) & O_CLOEXEC, O_CLOEXEC);
    char bytes[4];
    EXPECT_EQ(heard([&] { return call.read(fd, bytes, 4); }), 4);
    EXPECT_EQ(seen[0].fd, fd);
    EXPECT_EQ(seen[0].size, 4u);
    int number = 0;
    EXPECT_EQ(heard([&] { return call.ioctl(fd, FIONREAD, &number); }), -1);
    EXPECT_EQ(errno, ENOTTY);
    EXPECT_EQ(seen[0].size, static_cast<std::size_t>(FIONREAD));
    EXPECT_EQ(seen[0].data, &number);
    EXPECT_EQ(heard([&] { return call.close(fd); }), 0);
    EXPECT_EQ(seen[0].fd, fd);
    EXPECT_EQ(heard([&] { return call.select(0, 1500); }), 0);
    EXPECT_EQ(seen[0].microseconds, 1500u);
    EXPECT_EQ(heard([&] { return call.nanosleep(1200); }), 0);
    EXPECT_EQ(seen[0].microseconds, 1200u);
    EXPECT_EQ(heard([&] { return call.usleep(7); }), 0);
    EXPECT_EQ(seen[0].microseconds, 7u);
    plan("select", 0, std::nullopt);
    EXPECT_EQ(heard([&] { return call.select(3, 250000); }), 0);
    EXPECT_EQ(seen[0].microseconds, 3250000u);
}

TEST_P(Hook, LetsCallsThroughUnharmed)
{
    timeval now{};
    gettimeofday(&now, nullptr);
    const long told = heard([&] { return call.time(); });
    EXPECT_GE(told, now.tv_sec - 1); // the coarse clock may lag
    EXPECT_LE(told, now.tv_sec + 5);
    EXPECT_EQ(heard([&] { return call.clock_gettime(); }), 0);
    EXPECT_EQ(heard([&] { return call.localtime_r(); }), 1);
    EXPECT_EQ(heard([&] { return call.sysinfo(); }), 0);
    EXPECT_EQ(heard([&] { return call.fstat(2); }), 0);
    const int copy = heard([&] { return call.dup(2); });
    EXPECT_EQ(heard([&] { return call.dup2(2, copy); }), copy);
    EXPECT_EQ(heard([&] { return call.dup3(2, copy, 0); }), copy);
    EXPECT_EQ(heard([&] { return call.fcntl(copy, F_GETFD, 0); }), 0);
    EXPECT_EQ(call.close(copy), 0);
}

TEST_P(Hook, KnowsEveryBlockThatIsHandedOutAndTakenBack)
{
    void *block = heard([&] { return call.malloc(100); });
    ASSERT_NE(block, nullptr);
    std::memset(block, 1, 100);
    auto *zeroed = static_cast<char *>(heard([&] { return call.calloc(10, 10); }));
    ASSERT_NE(zeroed, nullptr);
    EXPECT_EQ(std::count(zeroed, zeroed + 100, '\0'), 100);
    EXPECT_THAT(blocks, testing::ElementsAre(block, static_cast<void *>(zeroed)));
    for (void *one : {block, static_cast<void *>(zeroed)}) {
        heard([&] {
            call.free(one);
            return 0;
        });
        EXPECT_EQ(seen[0].function, "free");
        EXPECT_EQ(seen[0].data, one);
    }
    call.free(nullptr);
}

TEST_P(Hook, SeesAndSilencesTheSystemLog)
{
    listening = true;
    for (const char *function : {"openlog", "syslog", "closelog"}) {
        seen.clear();
        plan(function, 0, std::nullopt);
        call.log("not to be logged");
        ASSERT_EQ(seen.size(), 3u);
    }
    listening = false;
    EXPECT_EQ(seen[0].function, "openlog");
    EXPECT_EQ(seen[0].path, "caller");
    EXPECT_EQ(seen[0].size, static_cast<std::size_t>(LOG_DAEMON));
    EXPECT_EQ(seen[1].function, "syslog");
    EXPECT_EQ(seen[1].path, "%s");
    EXPECT_EQ(seen[1].size, static_cast<std::size_t>(LOG_INFO));
    EXPECT_EQ(seen[2].function, "closelog");
}

TEST_P(Hook, TellsWhoCalled)
{
    static const void *caller_address = nullptr;
    vboard::set_libc_hook([](const LibcCall &one) -> std::optional<LibcAnswer> {
        if (listening && std::strcmp(one.function, "time") == 0)
            caller_address = one.caller;
        return std::nullopt;
    });
    listening = true;
    call.time();
    listening = false;
    Dl_info info{};
    ASSERT_NE(dladdr(caller_address, &info), 0);
    EXPECT_THAT(info.dli_fname, testing::HasSubstr("libvboard_inprocess_caller"));
}

TEST_P(Hook, AnswersBeforeTheBoardIsAsked)
{
    vboard::Board board{vboard::Profile{}};
    vboard::attach(&board);
    plan("open", -1, EMFILE);
    EXPECT_EQ(heard([&] { return call.open("/dev/board0", O_RDONLY); }), -1);
    EXPECT_EQ(errno, EMFILE);
    EXPECT_TRUE(board.journal().empty());
    planned.reset();
    const int fd = call.open("/dev/board0", O_RDONLY);
    plan("close", -1, EIO);
    EXPECT_EQ(heard([&] { return call.close(fd); }), -1);
    EXPECT_EQ(board.open_files(), 1u) << "the call was not made";
    planned.reset();
    EXPECT_EQ(call.close(fd), 0);
    vboard::detach();
}

INSTANTIATE_TEST_SUITE_P(From, Hook, testing::Values(&plain_caller, &wide_caller), library_name);

} // namespace
