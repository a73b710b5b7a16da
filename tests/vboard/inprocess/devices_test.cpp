// SPDX-License-Identifier: Apache-2.0
// Descriptors of the board's devices: they come, go and are copied as any others.
#include "devices.hpp"

#include <thread>

using namespace vboard_test;
using testing::ElementsAre;
using vboard::Fault;
using vboard::Op;

namespace
{

TEST_P(Devices, AQueryIsOneOpenOneIoctlOneClose)
{
    const int fd = call.open(board0, O_RDONLY | O_NONBLOCK);
    ASSERT_GE(fd, 0);
    EXPECT_EQ(board.open_files(), 1u);
    std::uint32_t value = 0;
    errno = EDOM;
    EXPECT_EQ(ask(fd, &value), 0);
    EXPECT_EQ(errno, EDOM) << "a success leaves errno as it was";
    EXPECT_EQ(value, 3u);
    EXPECT_EQ(call.close(fd), 0);
    EXPECT_EQ(board.open_files(), 0u);
    EXPECT_THAT(operations(), ElementsAre("open", "get"));
    EXPECT_EQ(board.journal()[0].pid, getpid());
}

TEST_P(Devices, EnvironmentAndConsoleWork)
{
    char name[256] = "BOOTMEDIA", value[256] = "";
    DrvbootEnvBlock block = {reinterpret_cast<std::uintptr_t>(name), reinterpret_cast<std::uintptr_t>(value),
                             256, 256};
    const int fd = call.open("/dev/envinfo0", O_RDWR);
    EXPECT_EQ(call.ioctl(fd, DRVBOOT_ENV_READ, &block), 0);
    EXPECT_STREQ(value, "NAND");
    std::strcpy(name, "nothing");
    EXPECT_EQ(call.ioctl(fd, DRVBOOT_ENV_READ, &block), -1);
    EXPECT_EQ(errno, ENOENT);
    call.close(fd);

    const int console = call.open("/dev/ttyS0", O_RDWR);
    EXPECT_EQ(call.write(console, "hello", 5), 5);
    char text[8];
    EXPECT_EQ(call.read(console, text, sizeof text), 0);
    EXPECT_EQ(board.console(), "hello");
    call.close(console);
}

TEST_P(Devices, AFailedOpenStaysFailedAndLeavesNothingBehind)
{
    Fault fault;
    fault.op = Op::open;
    fault.device = board0;
    fault.error = EACCES;
    board.add_fault(fault);
    EXPECT_EQ(call.open(board0, O_RDONLY), -1);
    EXPECT_EQ(errno, EACCES);
    EXPECT_EQ(descriptors(), before);
    EXPECT_EQ(call.open("/dev/slot33", O_RDONLY), -1) << "not on this board";
    EXPECT_EQ(errno, ENOENT);
    EXPECT_EQ(call.open("/dev/board1", O_RDONLY), -1);
}

TEST_P(Devices, AnUnknownRequestGetsWhatAKernelGives)
{
    const int fd = call.open(board0, O_RDONLY);
    EXPECT_EQ(ask(fd, nullptr, 4711), -1);
    EXPECT_EQ(errno, ENOTTY);
    EXPECT_EQ(call.ioctl(fd, 3, nullptr), -1);
    EXPECT_EQ(errno, EFAULT);
    EXPECT_THAT(operations(), ElementsAre("open", "unknown", "get"));
    call.close(fd);
}

TEST_P(Devices, PlannedFaultsReachTheCaller)
{
    Fault fault;
    fault.result = 5;
    board.add_fault(fault);
    fault.result = -1;
    board.add_fault(fault);
    const int fd = call.open(board0, O_RDONLY);
    EXPECT_EQ(ask(fd), 5);
    errno = EDOM;
    EXPECT_EQ(ask(fd), -1);
    EXPECT_EQ(errno, EDOM) << "this fault has no errno of its own";
    call.close(fd);
}

TEST_P(Devices, CopiesOfADescriptorShareTheDevice)
{
    const int fd = call.open(board0, O_RDONLY);
    const int copies[] = {call.dup(fd), call.dup2(fd, 200), call.dup3(fd, 201, O_CLOEXEC),
                          call.fcntl(fd, F_DUPFD, 210), call.fcntl(fd, F_DUPFD_CLOEXEC, 210)};
    EXPECT_EQ(call.close(fd), 0);
    EXPECT_EQ(error_without_board(fd), EBADF);
    for (const int copy : copies) {
        ASSERT_GE(copy, 0);
        EXPECT_EQ(board.open_files(), 1u);
        EXPECT_EQ(ask(copy), 0) << copy;
        EXPECT_EQ(call.close(copy), 0);
    }
    EXPECT_EQ(board.open_files(), 0u);
}

TEST_P(Devices, ACopyOntoADescriptorReplacesWhatWasThere)
{
    const int device = call.open(board0, O_RDONLY);
    const int file = call.open("/dev/zero", O_RDONLY);
    EXPECT_EQ(call.dup2(device, device), device);
    EXPECT_EQ(ask(device), 0) << "a copy onto itself changes nothing";
    EXPECT_EQ(call.dup2(device, file), file);
    EXPECT_EQ(ask(file), 0);
    const int zero = call.open("/dev/zero", O_RDONLY);
    EXPECT_EQ(call.dup2(zero, device), device);
    EXPECT_EQ(call.dup2(zero, file), file);
    EXPECT_EQ(board.open_files(), 0u);
    char byte = 1;
    EXPECT_EQ(call.read(device, &byte, 1), 1) << "it is the zero device now";
    EXPECT_EQ(byte, 0);
    EXPECT_EQ(call.dup2(999, zero), -1);
    EXPECT_EQ(errno, EBADF);
    for (const int fd : {device, file, zero})
        call.close(fd);
}

TEST_P(Devices, ANumberThatIsUsedAgainStandsForTheNewFile)
{
    const int device = call.open(board0, O_RDONLY);
    call.close(device);
    const int file = call.open("/dev/zero", O_RDONLY);
    EXPECT_EQ(file, device);
    EXPECT_EQ(error_without_board(file), ENOTTY);
    call.close(file);
    const int other = call.open("/dev/slot5", O_RDONLY);
    EXPECT_EQ(other, device);
    EXPECT_EQ(ask(other), 0);
    EXPECT_EQ(board.journal().back().device, "/dev/slot5");
    call.close(other);
}

TEST_P(Devices, FlagsOfADescriptorAreAsAskedFor)
{
    const int fd = call.open(board0, O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    EXPECT_EQ(call.fcntl(fd, F_GETFL, 0) & (O_ACCMODE | O_NONBLOCK), O_RDONLY | O_NONBLOCK);
    EXPECT_EQ(call.fcntl(fd, F_GETFD, 0), FD_CLOEXEC);
    EXPECT_EQ(call.write(fd, "x", 1), -1);
    EXPECT_EQ(errno, EBADF);
    call.close(fd);
    const int writer = call.open("/dev/ttyS0", O_WRONLY);
    char byte;
    EXPECT_EQ(call.read(writer, &byte, 1), -1);
    EXPECT_EQ(errno, EBADF);
    EXPECT_EQ(call.write(writer, nullptr, 1), -1);
    EXPECT_EQ(errno, EFAULT);
    call.close(writer);
}

TEST_P(Devices, OpenatTakesADevicesPathToo)
{
    const int fd = call.openat(AT_FDCWD, board0, O_RDONLY);
    ASSERT_GE(fd, 0);
    EXPECT_EQ(ask(fd), 0);
    call.close(fd);
    const int directory = call.open("/dev", O_RDONLY | O_DIRECTORY);
    const int zero = call.openat(directory, "zero", O_RDONLY);
    EXPECT_GE(zero, 0);
    call.close(zero);
    call.close(directory);
}

TEST_P(Devices, OtherFilesAreLeftAlone)
{
    char path[] = "/tmp/inprocess-XXXXXX";
    const int made = mkstemp(path);
    ASSERT_GE(made, 0);
    call.close(made);
    unlink(path);
    const int fd = call.open_new(path, O_RDWR | O_CREAT | O_EXCL, 0640);
    ASSERT_GE(fd, 0);
    EXPECT_EQ(call.write(fd, "abc", 3), 3);
    EXPECT_EQ(call.lseek(fd), 3);
    EXPECT_EQ(call.open_new(path, O_RDWR | O_CREAT | O_EXCL, 0640), -1);
    EXPECT_EQ(errno, EEXIST);
    call.close(fd);
    unlink(path);
    EXPECT_EQ(call.open(nullptr, O_RDONLY), -1);
    EXPECT_EQ(errno, EFAULT);
    EXPECT_EQ(call.close(-1), -1);
    EXPECT_EQ(errno, EBADF);
    EXPECT_TRUE(board.journal().empty());
}

TEST_P(Devices, ManyDescriptorsAtOnce)
{
    std::vector<int> open_now;
    open_now.reserve(100);
    for (int i = 0; i < 100; ++i)
        open_now.push_back(call.open(("/dev/slot" + std::to_string(i % 32 + 1)).c_str(), O_RDONLY));
    EXPECT_EQ(board.open_files(), 100u);
    for (const int fd : open_now)
        EXPECT_EQ(ask(fd), 0);
    for (const int fd : open_now)
        EXPECT_EQ(call.close(fd), 0);
    EXPECT_EQ(board.journal().size(), 200u);
}

TEST_P(Devices, ThreadsDoNotGetInEachOthersWay)
{
    std::vector<std::thread> threads;
    for (unsigned t = 0; t < 4; ++t)
        threads.emplace_back([this] {
            for (int i = 0; i < 100; ++i) {
                const int fd = call.open(board0, O_RDONLY);
                const int copy = call.dup(fd);
                call.close(fd);
                std::uint32_t value = 0;
                EXPECT_EQ(ask(copy, &value), 0);
                EXPECT_EQ(value, 3u);
                call.close(copy);
                const int file = call.open("/dev/zero", O_RDONLY);
                EXPECT_EQ(ask(file), -1);
                call.close(file);
            }
        });
    for (std::thread &thread : threads)
        thread.join();
    EXPECT_EQ(board.journal().size(), 800u);
}

TEST_P(Devices, DetachingTakesTheDevicesAway)
{
    const int fd = call.open(board0, O_RDONLY);
    vboard::detach();
    EXPECT_EQ(board.open_files(), 0u);
    EXPECT_EQ(error_without_board(fd), ENOTTY);
    EXPECT_EQ(call.close(fd), 0);
    EXPECT_EQ(call.open(board0, O_RDONLY), -1);
    EXPECT_EQ(errno, ENOENT);
}

INSTANTIATE_TEST_SUITE_P(From, Devices, everywhere, place_name);

} // namespace
