// SPDX-License-Identifier: Apache-2.0
// Which boards can run on their own, and two answers that never change.
#include "support/board_test.hpp"

#include <set>

namespace test
{
namespace
{

class SelfRunTest : public BoardTest
{
};

const std::set<std::uint32_t> self_run_boards = {
    0x9000085d, 0x9000085e, 0x9000085f, 0x90000860, 0x90000861, 0x90000862,
    0x90000863, 0x9000086d, 0x9000086e, 0x9000086f, 0x90000871,
};

TEST_F(SelfRunTest, ElevenBoardsCan)
{
    ASSERT_EQ(self_run_boards.size(), 11u);
    EXPECT_EQ(during([&] {
                  for (std::uint32_t type = 0x90000840; type <= 0x900008a0; ++type)
                      EXPECT_EQ(MOX_IsBoardSuppSelfRun(type), self_run_boards.count(type))
                          << "hard type 0x" << std::hex << type;
              }),
              nothing());
    EXPECT_TRUE(operations().empty());
}

TEST_F(SelfRunTest, NoBoardFarAwayCan)
{
    for (std::uint32_t type : {0u, 1u, 0x85du, 0x1000085du, 0x9002085du, 0x900008ddu, 0x9000087du,
                               0x90000872u, 0x7fffffffu, 0x80000000u, 0xffffffffu})
        EXPECT_EQ(MOX_IsBoardSuppSelfRun(type), 0u) << "hard type 0x" << std::hex << type;
    for (std::uint32_t type : self_run_boards)
        for (unsigned bit = 5; bit < 32; ++bit)
            EXPECT_EQ(MOX_IsBoardSuppSelfRun(type ^ (1u << bit)), self_run_boards.count(type ^ (1u << bit)));
}

TEST_F(SelfRunTest, IsEnabledAndTheMmbStateIsZeroOnEveryBoardUnasked)
{
    EXPECT_EQ(during([&] {
                  for (std::uint32_t type : {an_mpu, a_line_card, 0x9000085du, 0u}) {
                      be(type);
                      EXPECT_EQ(MOX_IsSysSelfRunEnable(), 1u);
                      EXPECT_EQ(MOX_GetSysMMBState(), 0u);
                  }
              }),
              nothing());
    EXPECT_TRUE(operations().empty());
}

} // namespace
} // namespace test
