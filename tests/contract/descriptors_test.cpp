// SPDX-License-Identifier: Apache-2.0
// Descriptors of the devices: copied, inherited, shared by threads and processes.
#include "contract/contract.hpp"

#include <atomic>
#include <functional>
#include <sys/wait.h>
#include <thread>

using namespace contract;

namespace
{

class Descriptors : public Contract
{
  protected:
    // What the child returns is its exit status.
    static int in_a_child(const std::function<int()> &what)
    {
        const pid_t child = fork();
        if (child == 0)
            _exit(what());
        int status = 0;
        EXPECT_EQ(waitpid(child, &status, 0), child);
        return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }
    static bool works(int fd)
    {
        return value_through(fd, item_a) == 0x11223344 && value_through(fd, item_b) == 0x55667788;
    }
};

TEST_F(Descriptors, CopiesShareTheDevice)
{
    const int fd = open(board0, O_RDONLY | O_NONBLOCK);
    ASSERT_GE(fd, 0);
    const int copies[] = {dup(fd), dup2(fd, 200), dup3(fd, 201, O_CLOEXEC), fcntl(fd, F_DUPFD, 210),
                          fcntl(fd, F_DUPFD_CLOEXEC, 210)};
    expect_open_files(1);
    EXPECT_EQ(close(fd), 0);
    // EBADF; but where an emulator runs single programs it refuses a request that it does not know before it
    // looks at the number.
    constexpr int never_open = 900;
    EXPECT_LT(value_through(fd, item_a), 0);
    EXPECT_EQ(value_through(fd, item_a), value_through(never_open, item_a));
    for (const int copy : copies) {
        expect_open_files(1);
        EXPECT_TRUE(works(copy)) << copy;
        EXPECT_EQ(close(copy), 0);
    }
    expect_open_files(0);
}

TEST_F(Descriptors, ACopyReplacesWhatWasThere)
{
    const int device = open(board0, O_RDONLY), zero = open("/dev/zero", O_RDONLY);
    EXPECT_EQ(dup2(device, zero), zero);
    EXPECT_TRUE(works(zero));
    const int other = open("/dev/zero", O_RDONLY);
    EXPECT_EQ(dup2(other, device), device);
    EXPECT_EQ(dup2(other, zero), zero);
    expect_open_files(0);
    char byte = 1;
    EXPECT_EQ(read(device, &byte, 1), 1);
    EXPECT_EQ(byte, 0);
    for (const int fd : {device, zero, other})
        close(fd);
}

TEST_F(Descriptors, ANumberThatIsUsedAgainStandsForTheNewFile)
{
    const int fd = open(board0, O_RDONLY);
    close(fd);
    board.set_item("/dev/slot5", item_a, 55);
    const int slot = open("/dev/slot5", O_RDONLY);
    EXPECT_EQ(slot, fd);
    EXPECT_EQ(value_through(slot, item_a), 55);
    close(slot);
}

TEST_F(Descriptors, ManyMayBeOpen)
{
    std::vector<int> all;
    for (unsigned i = 0; i < 100; ++i) {
        const std::string device = "/dev/slot" + std::to_string(i % 32 + 1);
        board.set_item(device, item_a, i % 32 + 1);
        all.push_back(open(device.c_str(), O_RDONLY));
    }
    expect_open_files(100);
    for (unsigned i = 0; i < 100; ++i) {
        EXPECT_EQ(value_through(all[i], item_a), i % 32 + 1);
        EXPECT_EQ(close(all[i]), 0);
    }
}

TEST_F(Descriptors, HaveTheFlagsThatWereAskedFor)
{
    const Open fd(board0, O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    EXPECT_EQ(fcntl(fd, F_GETFL) & (O_ACCMODE | O_NONBLOCK) & ~O_RDWR, O_RDONLY | O_NONBLOCK);
    EXPECT_EQ(fcntl(fd, F_GETFD), FD_CLOEXEC);
}

TEST_F(Descriptors, WhatIsNotThereCannotBeOpened)
{
    for (const char *path : {"/dev/board1", "/dev/slot0", "/dev/slot33", "/dev/chassis1"}) {
        const Open fd(path, O_RDONLY);
        EXPECT_EQ(fd, -1) << path;
        EXPECT_EQ(fd.error(), ENOENT) << path;
    }
    EXPECT_TRUE(events().empty());
}

TEST_F(Descriptors, AChildInheritsThem)
{
    const Open fd(board0, O_RDONLY);
    EXPECT_EQ(in_a_child([&] { return works(fd) ? 0 : 1; }), 0);
    EXPECT_TRUE(works(fd)) << "the child's end takes nothing away";
    EXPECT_EQ(in_a_child([&] {
                  close(fd);
                  const Open own(board0, O_RDONLY);
                  return works(own) ? 0 : 1;
              }),
              0);
    EXPECT_TRUE(works(fd));
    expect_open_files(1);
}

TEST_F(Descriptors, ProcessesSeeOneBoard)
{
    if (!board.shared())
        GTEST_SKIP() << "this board is inside the process: a child has a copy of it";
    const Open fd(board0, O_RDONLY);
    EXPECT_EQ(in_a_child([&] { return set_call(item_b, 77).ask(fd, DRVBOOT_CMD_SET).out[4] == 0 ? 0 : 1; }),
              0);
    EXPECT_EQ(value_through(fd, item_b), 77);
    ASSERT_GE(events().size(), 2u);
    EXPECT_NE(events()[1].pid, getpid()) << "the child asked";
}

TEST_F(Descriptors, ADeadProcessLeavesNothingOpen)
{
    if (!board.shared())
        GTEST_SKIP() << "this board is inside the process: a child has a copy of it";
    const pid_t child = fork();
    if (child == 0) {
        open(board0, O_RDONLY);
        open(chassis0, O_RDONLY);
        pause();
        _exit(0);
    }
    expect_open_files(2);
    kill(child, SIGKILL);
    EXPECT_EQ(waitpid(child, nullptr, 0), child);
    expect_open_files(0);
}

TEST_F(Descriptors, ThreadsOfSeveralProcessesGetTheirOwnAnswers)
{
    constexpr unsigned values = 5;
    for (unsigned i = 0; i < values; ++i)
        board.set_item(board0, 0x7a000020 + i, 1000 + i);
    const Open fd(board0, O_RDONLY);
    const auto ask_around = [&](unsigned first) {
        std::atomic<int> wrong = 0;
        std::vector<std::thread> threads;
        for (unsigned t = 0; t < 4; ++t)
            threads.emplace_back([&, t] {
                for (unsigned i = 0; i < 50; ++i) {
                    const unsigned which = (first + t + i) % values;
                    wrong += value_through(fd, 0x7a000020 + which) == 1000 + which ? 0 : 1;
                }
            });
        for (std::thread &thread : threads)
            thread.join();
        return wrong == 0 ? 0 : 1;
    };
    const pid_t child = fork();
    if (child == 0)
        _exit(ask_around(2));
    EXPECT_EQ(ask_around(0), 0);
    int status = -1;
    EXPECT_EQ(waitpid(child, &status, 0), child);
    EXPECT_EQ(status, 0);
}

} // namespace
