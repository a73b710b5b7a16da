// SPDX-License-Identifier: Apache-2.0
// The board's devices as a program in the same process sees them, from the program itself (plain calls) and
// out of shared libraries.
#pragma once

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
#include <string>
#include <sys/ioctl.h>
#include <unistd.h>
#include <vector>

namespace vboard_test
{

constexpr const char *board0 = "/dev/board0";
constexpr std::uint32_t role_item = 0x10002987;

inline const caller program_caller = {
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
    {},
    nullptr};

inline std::vector<int> descriptors()
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

inline void put(void *buffer, AddrDes &descriptor)
{
    const auto address = reinterpret_cast<std::uintptr_t>(buffer);
    std::memcpy(descriptor.addr, &address, sizeof address);
    descriptor.count = sizeof address;
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
            words.push_back(event.op == vboard::Op::open    ? "open"
                            : event.op == vboard::Op::ioctl ? event.what
                                                            : "other");
        return words;
    }
};

// From everywhere that calls can come from.
inline const auto everywhere = testing::Values(&program_caller, &plain_caller, &wide_caller);

inline std::string place_name(const testing::TestParamInfo<const caller *> &test)
{
    return test.param == &program_caller ? "Program"
           : test.param == &plain_caller ? "PlainLibrary"
                                         : "WideLibrary";
}

} // namespace vboard_test
