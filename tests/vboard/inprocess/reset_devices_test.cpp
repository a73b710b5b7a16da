// SPDX-License-Identifier: Apache-2.0
// What a program that takes the board down asks of its devices.
#include "devices.hpp"

using namespace vboard_test;
using testing::ElementsAre;

namespace
{

class ResetDevices : public Devices
{
};

TEST_P(ResetDevices, WatchdogServiceTakesCommands)
{
    const int fd = call.open("/proc/wdt", O_WRONLY);
    ASSERT_GE(fd, 0);
    EXPECT_EQ(board.open_files(), 1u);
    const DrvbootWdtCommand threshold{DRVBOOT_WDT_SET_THRESHOLD, 7};
    errno = EDOM;
    EXPECT_EQ(call.write(fd, &threshold, sizeof threshold), 8);
    EXPECT_EQ(errno, EDOM);
    EXPECT_EQ(board.watchdog().threshold, 7u);
    const DrvbootWdtCommand stop{DRVBOOT_WDT_STOP_KERNEL_FEEDER, 0};
    EXPECT_EQ(call.write(fd, &stop, sizeof stop), 8);
    EXPECT_EQ(call.write(fd, &stop, sizeof stop), -1);
    EXPECT_EQ(errno, EINVAL);
    EXPECT_EQ(call.write(fd, &stop, 4), -1);
    EXPECT_EQ(errno, EINVAL);
    char text[8];
    EXPECT_EQ(call.read(fd, text, sizeof text), -1);
    EXPECT_EQ(errno, EBADF);
    EXPECT_EQ(call.close(fd), 0);
    ASSERT_EQ(board.journal().size(), 5u);
    EXPECT_EQ(board.journal()[1].what, "wdt set threshold");
}

TEST_P(ResetDevices, WatchdogServiceCannotBeRead)
{
    const int fd = call.open("/proc/wdt", O_RDWR);
    char text[8];
    EXPECT_EQ(call.read(fd, text, sizeof text), -1);
    EXPECT_EQ(errno, EINVAL);
    call.close(fd);
    const int reader = call.open("/proc/wdt", O_RDONLY);
    const DrvbootWdtCommand clear{DRVBOOT_WDT_CLEAR, 0};
    EXPECT_EQ(call.write(reader, &clear, sizeof clear), -1);
    EXPECT_EQ(errno, EBADF);
    call.close(reader);
}

TEST_P(ResetDevices, OtherFilesBelowProcStayTheKernels)
{
    const int fd = call.open("/proc/self/stat", O_RDONLY);
    char text[8];
    EXPECT_EQ(call.read(fd, text, sizeof text), 8);
    call.close(fd);
    EXPECT_EQ(call.open("/proc/wdt0", O_WRONLY), -1);
    EXPECT_EQ(errno, ENOENT);
    EXPECT_TRUE(board.journal().empty());
}

TEST_P(ResetDevices, SelfResetIsARequestOfTheBoardDevice)
{
    std::uint32_t in[16] = {0x1000003, 40, 0x8000004, 0, 0x10002206, 4, 5, 0x10002207, 12, 0x150b07ea};
    std::uint32_t out[16] = {};
    DrvbootIoctlBlock block = {};
    put(in, block.in);
    put(out, block.out);
    block.in_length = block.out_length = sizeof in;
    const int fd = call.open(board0, O_RDONLY);
    EXPECT_EQ(call.ioctl(fd, DRVBOOT_CMD_SELF_RESET, &block), 0);
    call.close(fd);
    EXPECT_THAT(std::vector(out, out + 6), ElementsAre(0x1000003, 12, 256, 4, 0, 0));
    EXPECT_EQ(board.journal().at(1).sent, 5u);
    EXPECT_EQ(board.journal().at(1).value, "2026/11/21 00:00:00");
}

INSTANTIATE_TEST_SUITE_P(From, ResetDevices, everywhere, place_name);

} // namespace
