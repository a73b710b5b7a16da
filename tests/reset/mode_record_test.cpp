// SPDX-License-Identifier: Apache-2.0
// The reset mode record: handed on as it is, once as the driver sent it and then with two bytes marked.
#include "reset/reset_test.hpp"

#include <array>

namespace test
{
namespace
{

using Mode = std::array<std::uint8_t, 8>;

constexpr Mode as_sent = {1, 2, 3, 4, 5, 6, 7, 8};
constexpr Mode marked = {1, 2, 3, 4, 5, 0xff, 0xff, 8};
constexpr Mode blank = {};
constexpr Mode untouched = {9, 9, 9, 9, 9, 9, 9, 9};
const std::vector<std::string> asked = {"get /dev/board0 0x10002208"};

class ModeRecordTest : public ResetTest
{
  protected:
    ModeRecordTest()
    {
        record({as_sent.begin(), as_sent.end()});
    }
    void record(const vboard::Bytes &bytes)
    {
        board.set_reset_record(mode_item, bytes);
    }
    static Mode cache()
    {
        return std::to_array(g_stResetMode);
    }

    Mode mode = untouched;
    std::uint32_t read()
    {
        return MOX_ReadResetReasonMode(mode.data());
    }
    // A call that fails: nothing is cached, and the next call asks again.
    void expect_refused(std::uint32_t result, const Said &said)
    {
        EXPECT_EQ(during([&] { EXPECT_EQ(read(), result); }), said);
        EXPECT_EQ(cache(), blank);
        forget_journal();
        record({as_sent.begin(), as_sent.end()});
        EXPECT_EQ(read(), 0u);
        EXPECT_EQ(mode, as_sent);
        EXPECT_EQ(requests(), asked);
    }
};

TEST_F(ModeRecordTest, OnlyTheFirstCallerSeesTheDriversMarks)
{
    EXPECT_EQ(cache(), blank);
    EXPECT_EQ(during([&] { EXPECT_EQ(read(), 0u); }), nothing());
    EXPECT_EQ(mode, as_sent);
    EXPECT_EQ(cache(), marked);
    EXPECT_EQ(operations(), (std::vector<std::string>{"open /dev/board0", asked[0]}));
    forget_journal();
    record(vboard::Bytes(8, 0x77));
    for (auto function : {&MOX_ReadResetReasonMode, &drvboot_impl_read_reset_reason_mode}) {
        mode = untouched;
        EXPECT_EQ(during([&] { EXPECT_EQ(function(mode.data()), 0u); }), nothing());
        EXPECT_EQ(mode, marked);
    }
    EXPECT_TRUE(operations().empty());
}

TEST_F(ModeRecordTest, MarksThatTheDriverSendsAreAsGood)
{
    record({1, 2, 3, 4, 5, 0xff, 0xff, 8});
    EXPECT_EQ(read(), 0u);
    EXPECT_EQ(mode, marked);
    EXPECT_EQ(cache(), marked);
    EXPECT_EQ(read(), 0u);
    EXPECT_EQ(requests(), asked);
}

TEST_F(ModeRecordTest, OneMarkAloneDoesNotMakeTheCacheValid)
{
    for (std::size_t mark : {5u, 6u}) {
        memset(g_stResetMode, 0, sizeof g_stResetMode);
        g_stResetMode[mark] = 0xff;
        forget_journal();
        EXPECT_EQ(read(), 0u);
        EXPECT_EQ(mode, as_sent);
        EXPECT_EQ(requests(), asked);
    }
}

TEST_F(ModeRecordTest, WhoFillsTheCacheHimselfKeepsTheDriverOut)
{
    memcpy(g_stResetMode, marked.data(), marked.size());
    EXPECT_EQ(read(), 0u);
    EXPECT_EQ(mode, marked);
    EXPECT_TRUE(operations().empty());
}

TEST_F(ModeRecordTest, AnyOtherLengthIsRefusedSilently)
{
    for (std::size_t length : {0u, 7u, 9u, 12u}) {
        record(vboard::Bytes(length, 0x11));
        EXPECT_EQ(during([&] { EXPECT_EQ(read(), err_ioctl); }), nothing()) << length;
    }
    EXPECT_EQ(mode, untouched);
    expect_refused(err_ioctl, (record(vboard::Bytes(7, 0x11)), nothing()));
}

TEST_F(ModeRecordTest, ARecordOutsideTheReplyIsRefusedSilently)
{
    for (std::uint32_t offset : {5u, 8u, 12u, 13u, 20u, 0x7fffffffu, 0xfffffff0u, 0xffffffffu}) {
        // Whatever lies within the reply says 8.
        reply_with(mode_item, {{20, 8}, {24, 8}, {28, 8}, {32, 8}, {12, offset}});
        EXPECT_EQ(during([&] { EXPECT_EQ(read(), err_ioctl); }), nothing()) << offset;
    }
    EXPECT_EQ(mode, untouched);
    EXPECT_EQ(cache(), blank);
}

TEST_F(ModeRecordTest, TheDriverSaysWhereTheRecordStands)
{
    reply_with(mode_item, {{12, 0}, {20, 8}, {24, 0x04030201}, {28, 0x08070605}});
    EXPECT_EQ(read(), 0u);
    EXPECT_EQ(mode, as_sent);
}

TEST_F(ModeRecordTest, WithoutMemoryTheDriverIsNotAsked)
{
    fail_libc("malloc", ENOMEM);
    forget_calls();
    EXPECT_EQ(during([&] { EXPECT_EQ(read(), minus_one); }),
              failure("Drvboot read rst mode not success for memory exhaust\n"));
    ASSERT_EQ(calls("malloc").size(), 1u);
    EXPECT_EQ(calls("malloc")[0].size, 36u);
    EXPECT_TRUE(operations().empty());
    EXPECT_EQ(mode, untouched);
}

TEST_F(ModeRecordTest, ADeviceThatDoesNotOpenIsReported)
{
    deny(board0, EMFILE);
    expect_refused(
        minus_one,
        failure(text("Drvboot read rst mode not success for open /dev/board0 not ok(%d), fd -1\n", EMFILE)));
}

TEST_F(ModeRecordTest, AFailedRequestIsReported)
{
    vboard::Fault fault = on_item(mode_item);
    fault.error = EBUSY;
    board.add_fault(fault);
    expect_refused(
        minus_one,
        failure(text("Drvboot read rst mode not success for ioctl return -1, not ok: %d\n", EBUSY)));
}

TEST_F(ModeRecordTest, AStatusOtherThanZeroIsRefusedSilently)
{
    vboard::Fault fault = on_item(mode_item);
    fault.code = 3;
    board.add_fault(fault);
    expect_refused(minus_one, nothing());
}

TEST_F(ModeRecordTest, APlatformThatDoesNotCopyIsRefusedSilently)
{
    answer_platform("memcpy_s", 22);
    EXPECT_EQ(during([&] { EXPECT_EQ(read(), err_ioctl); }), nothing());
    EXPECT_EQ(mode, untouched);
    answer_platform("memcpy_s", 22, 1);
    expect_refused(err_ioctl, nothing()); // the caller has his copy, the cache has not
}

TEST_F(ModeRecordTest, AModeWithoutAnOutputIsAFailure)
{
    EXPECT_EQ(during([&] { EXPECT_EQ(MOX_ReadResetReasonMode(nullptr), minus_one); }), nothing());
    memcpy(g_stResetMode, marked.data(), marked.size());
    EXPECT_EQ(MOX_ReadResetReasonMode(nullptr), minus_one);
    EXPECT_TRUE(operations().empty());
}

} // namespace
} // namespace test
