// SPDX-License-Identifier: Apache-2.0
// The notice to the board driver that the board is about to be reset, and the pre-reset reason.
#include "reset/reset_test.hpp"

namespace test
{
namespace
{

class SelfResetTest : public ResetTest
{
  protected:
    static std::uint32_t notify()
    {
        return MOX_SelfReset(a_reason, &a_date);
    }
    static vboard::Fault on_notice()
    {
        vboard::Fault fault;
        fault.request = 1;
        return fault;
    }
    static Said told()
    {
        return information("Drvboot rst self, reason id 0x5, date 2024/3/1 8:0:5\n");
    }
    void expect_refused(const vboard::Fault &fault)
    {
        board.add_fault(fault);
        EXPECT_EQ(during([] { EXPECT_EQ(notify(), err_ioctl); }), told());
    }
};

const std::string notice = "self reset /dev/board0 0x10002206 0x10002207 5";

TEST_F(SelfResetTest, TheDriverGetsReasonAndDate)
{
    for (auto function : {&MOX_SelfReset, &drvboot_impl_self_reset}) {
        forget_journal();
        EXPECT_EQ(during([&] { EXPECT_EQ(function(a_reason, &a_date), 0u); }), told());
        EXPECT_EQ(operations(), (std::vector<std::string>{"open /dev/board0", notice}));
        EXPECT_EQ(board.journal().back().value, "2024/03/01 08:00:05");
    }
}

// What the driver was told is what the next start reads.
TEST_F(SelfResetTest, TheReasonSurvivesTheReset)
{
    ASSERT_EQ(MOX_SelfReset(0x10100d9, &a_date), 0u);
    board.reset(vboard::Reset::cold);
    char reason[72] = "";
    std::uint32_t code = 0;
    EXPECT_EQ(MOX_ReadResetReason(reason, sizeof reason, &code), 0u);
    EXPECT_EQ(code, 0x10100d9u);
    EXPECT_STREQ(reason, "2024/03/01 08:00:05,0x010100d9,");
}

TEST_F(SelfResetTest, AnyReasonAndDateAreTold)
{
    const MoxResetDate largest = {65535, 255, 255, 255, 255, 255};
    EXPECT_EQ(during([&] { EXPECT_EQ(MOX_SelfReset(minus_one, &largest), 0u); }),
              information("Drvboot rst self, reason id 0xffffffff, date 65535/255/255 255:255:255\n"));
    const MoxResetDate zero = {};
    EXPECT_EQ(during([&] { EXPECT_EQ(MOX_SelfReset(0, &zero), 0u); }),
              information("Drvboot rst self, reason id 0x0, date 0/0/0 0:0:0\n"));
}

TEST_F(SelfResetTest, ThreeWordsOfTheReplyCount)
{
    for (auto [at, words] :
         std::map<std::uint32_t, std::vector<std::uint32_t>>{{0, {0, 0x1000000, 0x1000002, 0x2000003}},
                                                             {8, {0, 255, 257, 0x10100}},
                                                             {12, {0, 3, 5, 0x104}}}) {
        for (std::uint32_t word : words) {
            vboard::Fault fault = on_notice();
            fault.reply_words = {{at, word}};
            expect_refused(fault);
        }
    }
}

TEST_F(SelfResetTest, TheOthersDoNot)
{
    vboard::Fault fault = on_notice();
    fault.reply_words[4] = 0xffffffff;
    for (std::uint32_t at = 16; at < 64; at += 4)
        fault.reply_words[at] = 0xffffffff;
    board.add_fault(fault);
    EXPECT_EQ(during([] { EXPECT_EQ(notify(), 0u); }), told());
    fault = on_notice();
    fault.code = 9;
    board.add_fault(fault);
    EXPECT_EQ(notify(), 0u);
}

TEST_F(SelfResetTest, AReplyThatNeverCameIsARefusal)
{
    vboard::Fault fault = on_notice();
    fault.cut = 0;
    expect_refused(fault);
    fault.cut = 12;
    expect_refused(fault);
}

TEST_F(SelfResetTest, AFailedRequestIsARefusal)
{
    vboard::Fault fault = on_notice();
    fault.error = EIO;
    expect_refused(fault);
    fault = on_notice();
    fault.result = 1; // with a good reply
    expect_refused(fault);
}

TEST_F(SelfResetTest, ADeviceThatDoesNotOpenIsReported)
{
    deny(board0, EACCES);
    EXPECT_EQ(
        during([] { EXPECT_EQ(notify(), minus_one); }),
        failure(text("Drvboot rst self not success for open board0 not ok(%d), fd 0xffffffff\n", EACCES)));
    EXPECT_TRUE(requests().empty());
}

TEST_F(SelfResetTest, WithoutADateTheDriverIsNotAsked)
{
    EXPECT_EQ(during([] { EXPECT_EQ(MOX_SelfReset(a_reason, nullptr), minus_one); }),
              failure("Drvboot rst self not success for input arg is null\n"));
    EXPECT_TRUE(operations().empty());
}

TEST_F(SelfResetTest, APlatformThatDoesNotCopyTheDateEndsItSilently)
{
    for (unsigned copy : {0u, 1u}) {
        forget_journal();
        forget_calls();
        answer_platform("memcpy_s", 22, copy);
        EXPECT_EQ(during([] { EXPECT_EQ(notify(), minus_one); }), nothing());
        EXPECT_EQ(operations(), std::vector<std::string>{"open /dev/board0"});
        EXPECT_EQ(calls("close").size(), 1u);
    }
}

TEST_F(SelfResetTest, ThePreResetReasonIsAnItem)
{
    constexpr std::uint32_t item = 0x1100aaab;
    EXPECT_EQ(during([] { EXPECT_EQ(drvboot_impl_pre_reset_board(7), 10000); }),
              failure("Not succeed to set /dev/board0 l2_type=0x1100aaab, ret=0x2710.\n") +
                  failure("\r\n Not succeed to set pre rst reason,ret=0x2710.\n"));
    deny(board0, ENOENT);
    EXPECT_EQ(during([] { EXPECT_EQ(drvboot_impl_pre_reset_board(7), -1); }),
              failure("Not succeed to set /dev/board0 l2_type=0x1100aaab, ret=0xffffffff.\n") +
                  failure("\r\n Not succeed to set pre rst reason,ret=0xffffffff.\n"));
    board.set_item(board0, item, 0);
    forget_journal();
    EXPECT_EQ(during([] { EXPECT_EQ(drvboot_impl_pre_reset_board(4711), 0); }), nothing());
    EXPECT_EQ(requests(), std::vector<std::string>{"set /dev/board0 0x1100aaab 4711"});
    EXPECT_EQ(board.item(board0, item), 4711u);
}

} // namespace
} // namespace test
