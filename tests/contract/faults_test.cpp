// SPDX-License-Identifier: Apache-2.0
// Planned faults bite in the same way whichever way the request came.
#include "contract/contract.hpp"

#include <atomic>
#include <thread>

using namespace contract;
using vboard::Fault;
using vboard::Op;

namespace
{

class Faults : public OpenBoard
{
  protected:
    // On requests for the item of the tests.
    static Fault on_item()
    {
        Fault fault;
        fault.device = board0;
        fault.item = item_a;
        return fault;
    }
};

TEST_F(Faults, AnErrorLeavesTheCallersMemoryAlone)
{
    Fault fault = on_item();
    fault.error = EIO;
    board.add_fault(fault);
    const ItemCall call = get_call({item_a}).ask(fd);
    EXPECT_EQ(call.result, -1);
    EXPECT_EQ(call.error, EIO);
    EXPECT_TRUE(call.untouched_from(0));
    EXPECT_EQ(call.status, untouched_status);
    EXPECT_EQ(value_through(fd, item_a), 0x11223344) << "once was planned";
    const auto all = events();
    ASSERT_GE(all.size(), 1u);
    EXPECT_EQ(all[0].error, EIO);
    EXPECT_TRUE(all[0].faulted);
}

TEST_F(Faults, EveryErrorArrivesAsItIs)
{
    for (const int error : {EPERM, ENOENT, EINTR, EAGAIN, ENOMEM, EBUSY, ENODEV, ETIMEDOUT}) {
        Fault fault = on_item();
        fault.error = error;
        board.add_fault(fault);
        EXPECT_EQ(value_through(fd, item_a), -error);
    }
}

TEST_F(Faults, ARefusalIsACodeInAReplyThatIsInOrder)
{
    Fault fault = on_item();
    fault.code = 7;
    board.add_fault(fault);
    board.add_fault(fault);
    ItemCall get = get_call({item_a});
    EXPECT_EQ(get.ask(fd).result, 0);
    EXPECT_EQ(get.out[4], 7u);
    EXPECT_EQ(get.status, 7u);
    ItemCall set = set_call(item_a, 1);
    EXPECT_EQ(set.ask(fd, DRVBOOT_CMD_SET).result, 0);
    EXPECT_EQ(set.out[4], 7u);
    EXPECT_EQ(board.item(board0, item_a), 0x11223344u) << "what was refused is not done";
}

TEST_F(Faults, AResultOfItsOwnComesWithTheReply)
{
    Fault fault = on_item();
    fault.result = 5;
    board.add_fault(fault);
    ItemCall call = get_call({item_a});
    EXPECT_EQ(call.ask(fd).result, 5);
    EXPECT_EQ(call.out[7], 0x11223344u);
}

TEST_F(Faults, ACutReplyFillsOnlyItsBeginning)
{
    Fault fault = on_item();
    fault.cut = 22;
    board.add_fault(fault);
    ItemCall call = get_call({item_a});
    EXPECT_EQ(call.ask(fd).result, 0);
    EXPECT_EQ(call.out[4], 0u);
    EXPECT_EQ(call.out[5], (untouched & 0xFFFF0000u) | (item_a & 0xFFFFu));
    EXPECT_TRUE(call.untouched_from(6));
    fault.cut = 0;
    board.add_fault(fault);
    ItemCall nothing = get_call({item_a});
    EXPECT_EQ(nothing.ask(fd).result, 0);
    EXPECT_TRUE(nothing.untouched_from(0));
    EXPECT_EQ(nothing.status, 0u);
}

TEST_F(Faults, WordsOfAReplyCanBeWrong)
{
    Fault fault = on_item();
    fault.reply_words = {{4, 0xFFFFFFFF}, {20, 0x12345678}, {60, 3}};
    board.add_fault(fault);
    ItemCall call = get_call({item_a});
    EXPECT_EQ(call.ask(fd).result, 0);
    EXPECT_EQ(call.out[1], 0xFFFFFFFFu);
    EXPECT_EQ(call.out[5], 0x12345678u);
    EXPECT_EQ(call.out[7], 0x11223344u);
    EXPECT_EQ(call.out[15], 3u);
}

TEST_F(Faults, AReplyCanComeWithAFailure)
{
    Fault fault = on_item();
    fault.reply_words = {{0, 0xAAAAAAAA}};
    board.add_fault(fault);
    // The request itself is wrong: a get that brings a value.
    ItemCall call({DRVBOOT_TLV_L1_TYPE, 12, item_a, 4, 5});
    EXPECT_EQ(call.ask(fd).result, -1);
    EXPECT_EQ(call.error, EINVAL);
    EXPECT_EQ(call.out[0], 0xAAAAAAAAu);
    EXPECT_TRUE(call.untouched_from(1));
    EXPECT_EQ(call.status, untouched_status);
}

TEST_F(Faults, AreCounted)
{
    Fault fault = on_item();
    fault.error = EIO;
    fault.skip = 2;
    fault.times = 2;
    board.add_fault(fault);
    std::vector<std::int64_t> values;
    for (int i = 0; i < 5; ++i)
        values.push_back(value_through(fd, item_a));
    EXPECT_THAT(values, testing::ElementsAre(0x11223344, 0x11223344, -EIO, -EIO, 0x11223344));
    EXPECT_EQ(board.faults(), 0u);
}

TEST_F(Faults, AreAboutOneItemOfOneDevice)
{
    Fault fault = on_item();
    fault.error = EIO;
    fault.times = 0;
    board.add_fault(fault);
    board.set_item(chassis0, item_a, 6);
    EXPECT_EQ(value_through(fd, item_b), 0x55667788);
    EXPECT_EQ(value_of(chassis0, item_a), 6);
    EXPECT_EQ(value_through(fd, item_a), -EIO);
    EXPECT_EQ(value_through(fd, item_a), -EIO);
    board.clear_faults();
    EXPECT_EQ(value_through(fd, item_a), 0x11223344);
}

TEST_F(Faults, AFailedOpenStaysFailedAndLeavesNothingBehind)
{
    for (const int error : {EACCES, ENODEV, EMFILE}) {
        Fault fault;
        fault.op = Op::open;
        fault.device = "/dev/slot2";
        fault.error = error;
        board.add_fault(fault);
        const Open failed("/dev/slot2", O_RDONLY);
        EXPECT_EQ(failed, -1);
        EXPECT_EQ(failed.error(), error);
    }
    expect_open_files(1); // the test's own
    const Open good("/dev/slot2", O_RDONLY);
    EXPECT_GE(good, 0);
}

TEST_F(Faults, ADelayHoldsUpNobodyElse)
{
    Fault fault = on_item();
    fault.delay_ms = 1500;
    board.add_fault(fault);
    std::atomic<bool> slow_done = false;
    std::thread slow([&] {
        EXPECT_EQ(value_of(board0, item_a), 0x11223344);
        slow_done = true;
    });
    while (board.faults() != 0)
        std::this_thread::yield(); // until it has struck
    for (int i = 0; i < 20; ++i)
        EXPECT_EQ(value_of(board0, item_b), 0x55667788);
    EXPECT_FALSE(slow_done);
    slow.join();
    EXPECT_TRUE(slow_done);
}

} // namespace
