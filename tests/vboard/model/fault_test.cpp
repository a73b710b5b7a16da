// SPDX-License-Identifier: Apache-2.0
#include "vboard/model/board.hpp"
#include "vboard/model/requests.hpp"

#include <gtest/gtest.h>

#include <cerrno>
#include <chrono>
#include <thread>

using namespace vboard_test;
using vboard::Board;
using vboard::Fault;
using vboard::Op;

namespace
{

class PlannedFault : public testing::Test
{
  protected:
    Board board{small_profile()};

    void plan(const Fault &fault)
    {
        board.add_fault(fault);
    }
    vboard::IoctlReply ask()
    {
        return board.ioctl(get(board0, role_item));
    }
};

TEST_F(PlannedFault, BitesOnceThenIsGone)
{
    Fault fault;
    fault.error = EIO;
    plan(fault);
    EXPECT_EQ(ask().error, EIO);
    EXPECT_EQ(ask().result, 0);
    EXPECT_TRUE(board.faults().empty());
    EXPECT_TRUE(board.journal()[0].faulted);
    EXPECT_FALSE(board.journal()[1].faulted);
}

TEST_F(PlannedFault, LetsOperationsPassAndBitesAsOftenAsPlanned)
{
    Fault fault;
    fault.error = EIO;
    fault.skip = 2;
    fault.times = 3;
    plan(fault);
    std::string outcome;
    for (int i = 0; i < 7; ++i)
        outcome += ask().result == 0 ? '.' : 'X';
    EXPECT_EQ(outcome, "..XXX..");
}

TEST_F(PlannedFault, WithTimesZeroBitesForEverUntilCleared)
{
    Fault fault;
    fault.error = EBUSY;
    fault.times = 0;
    plan(fault);
    for (int i = 0; i < 10; ++i)
        EXPECT_EQ(ask().error, EBUSY);
    EXPECT_EQ(board.faults().size(), 1u);
    board.clear_faults();
    EXPECT_EQ(ask().result, 0);
}

TEST_F(PlannedFault, MatchesEveryFieldThatIsGiven)
{
    Fault fault;
    fault.error = EIO;
    fault.times = 0;
    fault.device = "/dev/slot7";
    fault.request = 3;
    fault.item = 0x10002636;
    plan(fault);
    EXPECT_EQ(ask().result, 0) << "other device";
    EXPECT_EQ(board.ioctl(get("/dev/slot7", 1)).result, 0) << "other item";
    EXPECT_EQ(board.ioctl(set("/dev/slot7", 0x10002636, 1)).result, 0) << "other request";
    EXPECT_EQ(board.open("/dev/slot7", 0, 1), 0) << "other operation";
    EXPECT_EQ(board.ioctl(get("/dev/slot7", 0x10002636)).error, EIO);
}

TEST_F(PlannedFault, MatchesAnyItemOfHardInformation)
{
    Fault fault;
    fault.item = 0x10002800;
    fault.error = EIO;
    plan(fault);
    EXPECT_EQ(board.ioctl(hard_info({hard_type_item, 0x10002800})).error, EIO);
}

TEST_F(PlannedFault, MatchesAVariableByName)
{
    Fault fault;
    fault.variable = "BOOTMEDIA";
    fault.error = EACCES;
    plan(fault);
    EXPECT_EQ(board.ioctl(env(0x4501, "bootdelay")).result, 0);
    EXPECT_EQ(board.ioctl(env(0x4501, "BOOTMEDIA")).error, EACCES);
}

TEST_F(PlannedFault, OnOpenReadAndWriteFailsWithTheErrno)
{
    for (const Op op : {Op::open, Op::read, Op::write}) {
        Fault fault;
        fault.op = op;
        fault.error = EACCES;
        plan(fault);
    }
    EXPECT_EQ(board.open("/dev/ttyS0", 0, 1), EACCES);
    EXPECT_EQ(board.open_files(), 0u);
    EXPECT_EQ(board.read("/dev/ttyS0", 4, 1).error, EACCES);
    EXPECT_EQ(board.write("/dev/ttyS0", {'a'}, 1).error, EACCES);
    EXPECT_EQ(board.console(), "");
    EXPECT_TRUE(board.faults().empty());
}

TEST_F(PlannedFault, CutsAWriteShort)
{
    Fault fault;
    fault.op = Op::write;
    fault.cut = 2;
    plan(fault);
    EXPECT_EQ(board.write("/dev/ttyS0", {'a', 'b', 'c'}, 1).result, 2);
    EXPECT_EQ(board.console(), "ab");
}

TEST_F(PlannedFault, ErrorLeavesTheBoardAsItWas)
{
    Fault fault;
    fault.error = EIO;
    fault.times = 2;
    plan(fault);
    board.ioctl(set(board0, role_item, 2));
    board.ioctl(env(0x4502, "bootdelay", "9"));
    EXPECT_EQ(board.item(board0, role_item), 3u);
    EXPECT_EQ(board.boot_env("bootdelay"), "3");
}

TEST_F(PlannedFault, ResultTakesThePlaceOfZeroAndTheReplyStays)
{
    Fault fault;
    fault.result = 7;
    plan(fault);
    const auto reply = ask();
    EXPECT_EQ(reply.result, 7);
    EXPECT_EQ(word(reply.out, 28), 3u);
    EXPECT_EQ(board.journal()[0].result, 7);
}

TEST_F(PlannedFault, CodeMakesTheDriverRefuse)
{
    Fault fault;
    fault.code = 9;
    fault.times = 2;
    plan(fault);
    EXPECT_EQ(word(ask().out, 16), 9u);
    EXPECT_EQ(word(board.ioctl(set(board0, role_item, 2)).out, 16), 9u);
    EXPECT_EQ(board.item(board0, role_item), 3u);
    EXPECT_EQ(board.journal()[0].code, 9u);
    EXPECT_EQ(board.journal()[0].answer, std::nullopt);
}

TEST_F(PlannedFault, PutsWordsIntoTheReplyButNeverBeyondTheBuffer)
{
    Fault fault;
    fault.reply_words = {{8, 0x101}, {60, 0xaabbccdd}, {62, 0x11223344}, {64, 1}, {4000, 1}};
    plan(fault);
    const auto reply = ask();
    EXPECT_EQ(reply.out.size(), 64u);
    EXPECT_EQ(word(reply.out, 8), 0x101u);
    EXPECT_EQ(word(reply.out, 60), 0x3344ccddu);
}

TEST_F(PlannedFault, CutsTheReply)
{
    Fault fault;
    fault.cut = 10;
    plan(fault);
    EXPECT_EQ(ask().out.size(), 10u);
    EXPECT_EQ(board.journal()[0].answer, std::nullopt);
}

TEST_F(PlannedFault, RewritesTheSizeAndTheValueOfAVariable)
{
    Fault fault;
    fault.value = Bytes(300, 'y');
    fault.value_size = 1000;
    plan(fault);
    const auto reply = board.ioctl(env(0x4501, "BOOTMEDIA"));
    EXPECT_EQ(reply.result, 0);
    EXPECT_EQ(reply.value, Bytes(256, 'y')) << "no terminator, and never more than the buffer holds";
    EXPECT_EQ(reply.value_size, 1000u);
}

TEST_F(PlannedFault, FirstDueFaultInOrderBites)
{
    Fault first, second;
    first.error = EIO;
    first.skip = 1;
    second.error = EBUSY;
    plan(first);
    plan(second);
    EXPECT_EQ(ask().error, EBUSY) << "the first lets one pass";
    EXPECT_EQ(ask().error, EIO);
    EXPECT_EQ(ask().result, 0);
}

TEST_F(PlannedFault, DelayHoldsUpNobodyElse)
{
    Fault fault;
    fault.device = board0;
    fault.delay_ms = 300;
    plan(fault);
    using clock = std::chrono::steady_clock;
    const auto start = clock::now();
    std::thread slow([&] { ask(); });
    while (!board.faults().empty())
        std::this_thread::yield();
    board.ioctl(get("/dev/slot7", 0x10002636));
    const auto quick = clock::now() - start;
    slow.join();
    EXPECT_GE(clock::now() - start, std::chrono::milliseconds(300));
    EXPECT_LT(quick, std::chrono::milliseconds(250));
    EXPECT_EQ(board.journal().front().device, "/dev/slot7");
}

} // namespace
