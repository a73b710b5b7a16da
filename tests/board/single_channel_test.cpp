// SPDX-License-Identifier: Apache-2.0
// Whether the board has a single channel.
#include "board/family_rows.hpp"
#include "support/board_test.hpp"
#include "support/direct_log.hpp"

namespace test
{
namespace
{

class SingleChannelTest : public BoardTest
{
  protected:
    std::uint32_t flag = 99;

    void expect_failure(const std::string &code)
    {
        flag = 99;
        EXPECT_EQ(with_direct_lines(during([&] { EXPECT_EQ(MOX_IsSingleChlBoard(&flag), err_ioctl); })),
                  failure("Not succeed to get board hardtype,ret=0x" + code + ".\n") +
                      logged_directly("get board type unsuccess.\n"));
        EXPECT_EQ(flag, 0u);
    }
};

TEST_F(SingleChannelTest, OneBoardHasASingleChannel)
{
    be(0x90000762);
    EXPECT_EQ(during([&] { EXPECT_EQ(MOX_IsSingleChlBoard(&flag), 0u); }), nothing());
    EXPECT_EQ(flag, 1u);
    EXPECT_EQ(requests(), std::vector<std::string>{"get /dev/board0 0x8000001"});
}

TEST_F(SingleChannelTest, NoOtherBoardHas)
{
    std::set<std::uint32_t> others = family_candidates();
    others.insert({0x90000761, 0x90000763, 0x762, 0x90020762, 0x10000762});
    others.erase(0x90000762);
    EXPECT_EQ(during([&] {
                  for (std::uint32_t hard_type : others) {
                      be(hard_type);
                      flag = 99;
                      EXPECT_EQ(MOX_IsSingleChlBoard(&flag), 0u);
                      EXPECT_EQ(flag, 0u) << "hard type 0x" << std::hex << hard_type;
                  }
              }),
              nothing());
}

TEST_F(SingleChannelTest, ABoardThatCannotTellIsAFailureThatOnlyTheSystemLogHears)
{
    be(0x90000762);
    deny(board0, EACCES);
    expect_failure("ffffffff");
    refuse(board0, item_hard_type);
    expect_failure("2710");
}

TEST_F(SingleChannelTest, ANullFlagIsAFailureUnasked)
{
    EXPECT_EQ(during([&] { EXPECT_EQ(MOX_IsSingleChlBoard(nullptr), err_ioctl); }), nothing());
    EXPECT_TRUE(operations().empty());
}

} // namespace
} // namespace test
