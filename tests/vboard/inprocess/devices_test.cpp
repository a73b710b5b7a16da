// SPDX-License-Identifier: Apache-2.0
// The board's devices as a program in the same process sees them, from the program itself (plain calls) and
// out of shared libraries.
#include "caller.h"
#include "vboard/front/inprocess.hpp"

#include <moxboot/driver.h>

#include <gmock/gmock.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <dirent.h>
#include <fcntl.h>
#include <sys/ioctl.h>
#include <thread>
#include <unistd.h>

using testing::ElementsAre;
using vboard::Fault;
using vboard::Op;

namespace
{

constexpr const char *board0 = "/dev/board0";
constexpr std::uint32_t role_item = 0x10002987;

const caller program_caller = {
    [](const char *path, int flags) { return open(path, flags); },
    [](const char *path, int flags, int mode) { return open(path, flags, mode); },
    [](int directory, const char *path, int flags) { return openat(directory, path, flags); },
    [](int fd) { return close(fd); },
    [](int fd, unsigned long request, void *argument) { return ioctl(fd, request, argument); },
    [](int fd, void *buffer, std::size_t size) { return static_cast<long>(read(fd, buffer, size)); },
    [](int fd, const void *buffer, std::size_t size) { return static_cast<long>(write(fd, buffer, size)); },
    [](int fd) { return dup(fd); },
    [](int fd, int copy) { return dup2(fd, copy); },
    [](int fd, int copy, int flags) { return dup3(fd, copy, flags); },
    [](int fd, int command, long argument) { return fcntl(fd, command, argument); },
    [](int fd) { return static_cast<long>(lseek(fd, 0, SEEK_CUR)); },
    {},
    {},
    {},
    {},
    {},
    {},
    {},
    {},
    {},
    {},
    {},
    {}};

std::vector<int> descriptors()
{
    std::vector<int> open_now;
    DIR *directory = opendir("/proc/self/fd");
    while (const dirent *entry = readdir(directory))
        if (const long fd = std::strtol(entry->d_name, nullptr, 10);
            entry->d_name[0] != '.' && fd != dirfd(directory))
            open_now.push_back(static_cast<int>(fd));
    closedir(directory);
    std::ranges::sort(open_now);
    return open_now;
}

class Devices : public testing::TestWithParam<const caller *>
{
  protected:
    vboard::Board board{[] {
        vboard::Profile profile;
        profile.items[board0] = {{role_item, 3}};
        profile.boot_env = {{"BOOTMEDIA", "NAND"}};
        return profile;
    }()};
    const caller &call = *GetParam();
    std::vector<int> before = descriptors();

    void SetUp() override
    {
        vboard::attach(&board);
    }
    void TearDown() override
    {
        vboard::detach();
        EXPECT_EQ(descriptors(), before);
        EXPECT_EQ(board.open_files(), 0u);
    }

    // Asks for the role through an open descriptor; the ioctl's result.
    int ask(int fd, std::uint32_t *value = nullptr, std::uint32_t request = 3) const
    {
        std::uint32_t in[16] = {DRVBOOT_TLV_L1_TYPE, 8, role_item, 0};
        std::uint32_t out[16] = {};
        std::uint32_t status = 0xffffffff;
        DrvbootIoctlBlock block = {};
        const auto put = [](void *buffer, AddrDes &descriptor) {
            const auto address = reinterpret_cast<std::uintptr_t>(buffer);
            std::memcpy(descriptor.addr, &address, sizeof address);
            descriptor.count = sizeof address;
        };
        put(in, block.in);
        put(out, block.out);
        put(&status, block.status);
        block.in_length = block.out_length = sizeof in;
        const int result = call.ioctl(fd, request, &block);
        if (value)
            *value = out[7];
        return result;
    }
    // The errno of a request on a descriptor that is no device of the board. The request is one that
    // emulators know too.
    int error_without_board(int fd) const
    {
        const std::size_t events = board.journal().size();
        int bytes = 0;
        EXPECT_EQ(call.ioctl(fd, FIONREAD, &bytes), -1);
        const int error = errno;
        EXPECT_EQ(board.journal().size(), events) << "the board was asked";
        return error;
    }
    std::vector<std::string> operations() const
    {
        std::vector<std::string> words;
        for (const vboard::Event &event : board.journal())
            words.push_back(event.op == Op::open ? "open" : event.op == Op::ioctl ? event.what : "other");
        return words;
    }
};

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

INSTANTIATE_TEST_SUITE_P(From, Devices, testing::Values(&program_caller, &plain_caller, &wide_caller),
                         [](const auto &test) {
                             return test.param == &program_caller ? "Program"
                                    : test.param == &plain_caller ? "PlainLibrary"
                                                                  : "WideLibrary";
                         });

} // namespace
