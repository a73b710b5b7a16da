// SPDX-License-Identifier: Apache-2.0
// Hard information that is not to be had: arguments, memory, the device, each word of the reply.
#include "board/allocations.hpp"
#include "board/hard_info_test.hpp"

namespace test
{
namespace
{

class HardInfoFailureTest : public HardInfoTest
{
};

TEST_P(HardInfoFailureTest, ANullRecordIsRefusedUnasked)
{
    EXPECT_EQ(during([&] { EXPECT_EQ(GetParam()(nullptr), err_ioctl); }),
              failure("Drvboot get hard info not success for arg is null\n"));
    EXPECT_TRUE(operations().empty());
}

TEST_P(HardInfoFailureTest, NoFirstOrNoSecondBlockIsExhaustedMemory)
{
    MoxHardInfo unused;
    EXPECT_EQ(GetParam()(&unused), 0u);
    const std::vector<Call> good_run = allocations();
    ASSERT_EQ(good_run.size(), 2u);
    forget_journal();
    for (std::size_t block : {0u, 1u}) {
        EXPECT_EQ(good_run[block].size, 256u);
        fail_allocation(good_run, block);
        EXPECT_EQ(during([&] { EXPECT_EQ(ask(), err_ioctl); }),
                  failure("Drvboot get hard info not success for memory exhaust\n"));
        EXPECT_EQ(blocks_held(), 0u);
    }
    EXPECT_TRUE(untouched());
    EXPECT_TRUE(operations().empty());
}

TEST_P(HardInfoFailureTest, ADeviceThatDoesNotOpenIsTriedOnceMoreAfterHalfASecond)
{
    deny(board0, ENXIO);
    EXPECT_EQ(during([&] { EXPECT_EQ(ask(), 0u); }), nothing());
    EXPECT_EQ(info.slot, 0x11u);
    ASSERT_EQ(calls("usleep").size(), 1u);
    EXPECT_EQ(calls("usleep")[0].microseconds, 500000u);
    EXPECT_EQ(calls("open").size(), 2u);
    EXPECT_EQ(calls("close").size(), 1u);
    std::vector<std::string> order;
    for (const Call &call : calls())
        if (call.function == "open" || call.function == "usleep" || call.function == "ioctl")
            order.push_back(call.function);
    EXPECT_EQ(order, (std::vector<std::string>{"open", "usleep", "open", "ioctl"}));
}

TEST_P(HardInfoFailureTest, ADeviceThatDoesNotOpenTwiceFails)
{
    deny(board0, EACCES, 2);
    EXPECT_EQ(
        during([&] { EXPECT_EQ(ask(), err_ioctl); }),
        failure("Drvboot get hard info not success for open /dev/board0 not ok(Permission denied), fd -1\n"));
    EXPECT_EQ(calls("open").size(), 2u);
    EXPECT_EQ(calls("usleep").size(), 1u);
    EXPECT_TRUE(untouched());
    EXPECT_TRUE(requests().empty());
}

TEST_P(HardInfoFailureTest, TheSecondFailuresReasonIsTold)
{
    deny(board0, EACCES);
    deny(board0, ENODEV);
    EXPECT_EQ(
        during([&] { EXPECT_EQ(ask(), err_ioctl); }),
        failure("Drvboot get hard info not success for open /dev/board0 not ok(No such device), fd -1\n"));
}

TEST_P(HardInfoFailureTest, AFailedIoctlIsSilent)
{
    vboard::Fault fault = on_request();
    fault.error = EIO;
    expect_silent_refusal(fault);
}

TEST_P(HardInfoFailureTest, AnIoctlThatGivesMoreThanZeroFailed)
{
    vboard::Fault fault = on_request();
    fault.result = 1;
    expect_silent_refusal(fault);
}

TEST_P(HardInfoFailureTest, EachWordOfTheReplysHeaderIsChecked)
{
    for (std::uint32_t wrong : {0u, 0x1000001u})
        expect_word_refused(0, wrong);
    for (std::uint32_t wrong : {0u, 0x101u})
        expect_word_refused(8, wrong);
    for (std::uint32_t wrong : {0u, 3u, 8u})
        expect_word_refused(12, wrong);
    for (std::uint32_t wrong : {1u, 0x80000000u, minus_one})
        expect_word_refused(16, wrong);
}

TEST_P(HardInfoFailureTest, TheReplysOuterLengthIsNotChecked)
{
    vboard::Fault fault = on_request();
    fault.reply_words[4] = 0xffffffff;
    board.add_fault(fault);
    EXPECT_EQ(ask(), 0u);
    EXPECT_EQ(info.hard_type, an_mpu);
}

TEST_P(HardInfoFailureTest, AReplyThatEndsInItsHeaderIsRefused)
{
    for (std::uint32_t length : {0u, 4u, 8u, 12u}) {
        vboard::Fault fault = on_request();
        fault.cut = length;
        expect_silent_refusal(fault);
    }
}

TEST_P(HardInfoFailureTest, WhatAShortReplyDoesNotHoldReadsZero)
{
    vboard::Fault fault = on_request();
    fault.cut = 56; // up to the hard type
    board.add_fault(fault);
    EXPECT_EQ(ask(), 0u);
    EXPECT_EQ(info.slot, 0x11u);
    EXPECT_EQ(info.hard_type, an_mpu);
    EXPECT_EQ(info.item_2200, 0u);
    EXPECT_EQ(info.item_29b4, 0u);
    EXPECT_EQ(info.address_length, 6u);
    EXPECT_EQ(info.address[0], 0u);
    EXPECT_EQ(info.address[5], 0u);
    EXPECT_EQ(info.address[6], 0xa5u);
}

TEST_P(HardInfoFailureTest, AnAddressThatCannotBeCopiedFails)
{
    answer_platform("memcpy_s", EINVAL);
    EXPECT_EQ(during([&] { EXPECT_EQ(ask(), err_ioctl); }),
              failure("memcpy_s not success, not ok code is 22.\n"));
    EXPECT_TRUE(untouched());
    EXPECT_EQ(g_idebug_print_flag, 1u);
}

INSTANTIATE_TEST_SUITE_P(Names, HardInfoFailureTest,
                         testing::Values(MOX_GetHard_Info, drvboot_impl_get_hardinfo), asker_name);

} // namespace
} // namespace test
