// SPDX-License-Identifier: Apache-2.0
#include "support/board_test.hpp"

#include <cerrno>
#include <chrono>
#include <csignal>
#include <sys/time.h>
#include <unistd.h>

using namespace test;
using testing::ElementsAre;

namespace
{

class Device : public BoardTest
{
  protected:
    std::vector<std::uint64_t> waits() const
    {
        std::vector<std::uint64_t> all;
        for (const Call &call : calls("select"))
            all.push_back(call.microseconds);
        return all;
    }
};

// ---- MOX_GetBoardFd --------------------------------------------------------------------------------------

TEST_F(Device, BoardDescriptorIsOpenAndBelongsToTheCaller)
{
    int fd = -1;
    EXPECT_EQ(during([&] { fd = MOX_GetBoardFd(); }), nothing());
    ASSERT_GE(fd, 0);
    EXPECT_THAT(operations(), ElementsAre("open /dev/board0"));
    EXPECT_TRUE(calls("close").empty());
    EXPECT_EQ(close(fd), 0);
}

TEST_F(Device, EveryCallGivesADescriptorOfItsOwn)
{
    int first = MOX_GetBoardFd();
    int second = MOX_GetBoardFd();
    EXPECT_NE(first, second);
    close(first);
    close(second);
}

TEST_F(Device, BoardDescriptorThatDoesNotOpenIsReportedWithItsReason)
{
    for (int error : {ENOENT, EACCES, EMFILE}) {
        deny(board0, error);
        int fd = 99;
        EXPECT_EQ(during([&] { fd = MOX_GetBoardFd(); }),
                  failure(text("Drvboot get board fd not success for open /dev/board0 not ok(%d), fd -1\n",
                               error)));
        EXPECT_EQ(fd, -1);
    }
}

// ---- Iof_GetAddrToAddrDes --------------------------------------------------------------------------------

TEST_F(Device, AddressReaderGivesTheLowestByteOnly)
{
    for (std::uint32_t count : {1u, 2u, 4u, 8u}) {
        AddrDes descriptor = {{0xfe, 0x22, 0x33, 0x44, 0x55, 0x66, 0x77, 0x88}, count};
        std::uint32_t address = 0xabababab;
        EXPECT_EQ(Iof_GetAddrToAddrDes(&address, &descriptor), 0u) << count;
        EXPECT_EQ(address, 0xfeu) << count;
    }
}

TEST_F(Device, AddressReaderReadsNothingBeyondTheDescriptor)
{
    AddrDes descriptor = {{0x11}, 0xFFFFFFFF};
    std::uint32_t address = 0;
    EXPECT_EQ(Iof_GetAddrToAddrDes(&address, &descriptor), 0u);
    EXPECT_EQ(address, 0x11u);
}

TEST_F(Device, AddressReaderRefusesAnEmptyDescriptor)
{
    AddrDes descriptor = {{0x11, 0x22}, 0};
    std::uint32_t address = 0xabababab;
    Said said = during([&] { EXPECT_EQ(Iof_GetAddrToAddrDes(&address, &descriptor), 0xFFFFFFFAu); });
    EXPECT_EQ(said, nothing());
    EXPECT_EQ(address, 0xababababu);
}

TEST_F(Device, AddressReaderRefusesNullPointers)
{
    AddrDes descriptor = {{0x11}, 4};
    std::uint32_t address = 0xabababab;
    Said said = during([&] {
        EXPECT_EQ(Iof_GetAddrToAddrDes(nullptr, &descriptor), 0xFFFFFFFCu);
        EXPECT_EQ(Iof_GetAddrToAddrDes(&address, nullptr), 0xFFFFFFFCu);
        EXPECT_EQ(Iof_GetAddrToAddrDes(nullptr, nullptr), 0xFFFFFFFCu);
        descriptor.count = 0;
        EXPECT_EQ(Iof_GetAddrToAddrDes(nullptr, &descriptor), 0xFFFFFFFCu) << "pointers are looked at first";
    });
    EXPECT_EQ(said, nothing());
    EXPECT_EQ(address, 0xababababu);
}

// ---- drvboot_taskdelay -----------------------------------------------------------------------------------

TEST_F(Device, DelayIsOneWaitOfTheTimeAskedFor)
{
    answer_libc("select", 0);
    EXPECT_EQ(during([] { drvboot_taskdelay(1500); }), nothing());
    EXPECT_THAT(waits(), ElementsAre(1500000u));
}

TEST_F(Device, DelayIsRepeatedWhileItIsInterrupted)
{
    fail_libc("select", EINTR, 0, 3);
    drvboot_taskdelay(1);
    EXPECT_EQ(waits().size(), 4u);
}

TEST_F(Device, DelayIsNotRepeatedAfterAnyOtherError)
{
    fail_libc("select", ENOMEM);
    drvboot_taskdelay(1500);
    EXPECT_EQ(waits().size(), 1u);
}

// A few signals only: a user-mode emulator does not count down the time that is left, so that endless ones
// would keep it waiting for ever.
void count_signal(int)
{
    static volatile std::sig_atomic_t count = 0;
    count = count + 1;
    if (count == 3)
        std::signal(SIGALRM, SIG_IGN);
}

TEST_F(Device, DelayTakesItsTimeInSpiteOfSignals)
{
    struct sigaction action = {};
    action.sa_handler = count_signal;
    ASSERT_EQ(sigaction(SIGALRM, &action, nullptr), 0);
    itimerval timer = {{0, 40000}, {0, 40000}}; // every 40 ms
    ASSERT_EQ(setitimer(ITIMER_REAL, &timer, nullptr), 0);

    auto before = std::chrono::steady_clock::now();
    drvboot_taskdelay(150);
    auto took = std::chrono::steady_clock::now() - before;

    timer = {};
    setitimer(ITIMER_REAL, &timer, nullptr);
    EXPECT_GE(took, std::chrono::milliseconds(149));
    EXPECT_GT(waits().size(), 1u) << "no signal came through";
}

} // namespace
