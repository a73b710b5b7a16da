// SPDX-License-Identifier: Apache-2.0
// A board that has hard information to give, and a record to put it in.
#pragma once

#include "support/board_test.hpp"

#include <cstring>

namespace test
{

using Asker = std::uint32_t (*)(MoxHardInfo *);

class HardInfoTest : public BoardTest, public testing::WithParamInterface<Asker>
{
  protected:
    MoxHardInfo info;

    void SetUp() override
    {
        BoardTest::SetUp();
        std::memset(&info, 0xa5, sizeof info);
        g_idebug_print_flag = 1; // as at load
        board.set_item(board0, 0x1000280e, 0x77778888);
        board.set_item(board0, 0x10002800, 0x00090011);
        board.set_item(board0, 0x10002200, 0x22002200);
        board.set_item(board0, 0x100029b4, 0x29b429b4);
    }
    std::uint32_t ask()
    {
        return GetParam()(&info);
    }
    // The record as the caller had it.
    bool untouched() const
    {
        MoxHardInfo before;
        std::memset(&before, 0xa5, sizeof before);
        return std::memcmp(&before, &info, sizeof info) == 0;
    }
    static vboard::Fault on_request()
    {
        vboard::Fault fault;
        fault.device = board0;
        return fault;
    }
    void expect_silent_refusal(const vboard::Fault &fault)
    {
        board.add_fault(fault);
        EXPECT_EQ(during([&] { EXPECT_EQ(ask(), err_ioctl); }), nothing());
        EXPECT_TRUE(untouched());
        EXPECT_EQ(g_idebug_print_flag, 1u);
    }
    // A reply in which one word, by its byte offset, is another one.
    void expect_word_refused(std::uint32_t offset, std::uint32_t word)
    {
        SCOPED_TRACE(text("word at %u: 0x%x", offset, word));
        vboard::Fault fault = on_request();
        fault.reply_words[offset] = word;
        expect_silent_refusal(fault);
    }
};

inline std::string asker_name(const testing::TestParamInfo<Asker> &info)
{
    return info.param == MOX_GetHard_Info ? "MOX_GetHard_Info" : "drvboot_impl_get_hardinfo";
}

} // namespace test
