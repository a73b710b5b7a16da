// SPDX-License-Identifier: Apache-2.0
// Coarse answers: CPU type, role of the board, block time.
#include "board/hard_type_lists.hpp"
#include "support/board_test.hpp"

namespace test
{
namespace
{

constexpr std::uint32_t cpu_id_item = 0x10002801;
constexpr std::uint32_t role_item = 0x10002858;
constexpr std::uint32_t mmb_item = 0x10002980;
const std::string ask_type = "get /dev/board0 0x8000001";
const std::string ask_role = "get /dev/board0 0x10002858";
const std::string ask_mmb = "get /dev/board0 0x10002980";

class ClassifyTest : public BoardTest
{
  protected:
    std::uint32_t role = 99;
    Said ask_role_of_board(std::int32_t result)
    {
        return during([&] { EXPECT_EQ(MOX_GetRoleOfBoard(&role), result); });
    }
};

// ---- CPU type --------------------------------------------------------------------------------------------

TEST_F(ClassifyTest, TheCpuTypeFollowsTheCpuIdAndIsAlwaysTold)
{
    for (std::uint32_t id : {0u, 1u, 2u, 3u, 4u, 5u, 8u, 9u, 10u, 11u, 0x1000au, minus_one}) {
        std::uint32_t type = id == 10 ? 33 : id == 4 || id == 9 ? 35 : 0;
        board.set_item(board0, cpu_id_item, id);
        EXPECT_EQ(during([&] { EXPECT_EQ(MOX_GetCpuFullType(), type) << "CPU id " << id; }),
                  information(text("Drvboot get cpu full tpye 0x%x\n", type)));
    }
}

TEST_F(ClassifyTest, AnUnreadableCpuIdIsIdOne)
{
    EXPECT_EQ(during([] { EXPECT_EQ(MOX_GetCpuFullType(), 0u); }),
              failure("\r\nFailed to get board hardtype,ret=0x2710.\n") +
                  information("Drvboot get cpu full tpye 0x0\n"));
    EXPECT_EQ(requests(), std::vector<std::string>{"get /dev/board0 0x10002801"});
}

// ---- role ------------------------------------------------------------------------------------------------

TEST_F(ClassifyTest, AnMpuIsTheMmbOrNot)
{
    board.set_item(board0, role_item, 3); // read, and not heeded
    for (std::uint32_t state : {0u, 1u, 2u, minus_one}) {
        board.set_item(board0, mmb_item, state);
        forget_journal();
        EXPECT_EQ(ask_role_of_board(0), nothing());
        EXPECT_EQ(role, state == 0 ? 1u : 0u);
        EXPECT_EQ(requests(), (std::vector<std::string>{ask_type, ask_role, ask_type, ask_mmb}));
    }
}

TEST_F(ClassifyTest, EveryMpuTakesThatWay)
{
    board.set_item(board0, role_item, 0);
    board.set_item(board0, mmb_item, 0);
    for (std::uint32_t hard_type : mpu_boards) {
        be(hard_type);
        role = 99;
        EXPECT_EQ(MOX_GetRoleOfBoard(&role), 0);
        EXPECT_EQ(role, 1u) << "hard type 0x" << std::hex << hard_type;
    }
}

TEST_F(ClassifyTest, AnMpuThatAnswersNothingElseIsNotTheMmb)
{
    EXPECT_EQ(ask_role_of_board(0), failure("\r\nFailed to get board role,ret=0x2710.\n") +
                                        failure("Not succeed to get board is mmb,ret=0x2710.\n"));
    EXPECT_EQ(role, 0u);
}

TEST_F(ClassifyTest, ALineCardIsRoleThree)
{
    for (std::uint32_t hard_type : {first_lpu, first_lpu + 1, last_lpu, a_line_card, lpu_boards.back()}) {
        be(hard_type);
        forget_journal();
        EXPECT_EQ(ask_role_of_board(0), nothing());
        EXPECT_EQ(role, 3u);
        EXPECT_EQ(requests(), std::vector<std::string>{ask_type});
    }
}

TEST_F(ClassifyTest, AnyOtherBoardIsRoleFour)
{
    for (std::uint32_t hard_type : {0u, first_lpu - 1, last_lpu + 1, 0x90000869u, 0xffffffffu}) {
        be(hard_type);
        forget_journal();
        EXPECT_EQ(ask_role_of_board(0), nothing());
        EXPECT_EQ(role, 4u);
        EXPECT_EQ(requests(), std::vector<std::string>{ask_type});
    }
}

TEST_F(ClassifyTest, WithoutAHardTypeThereIsNoRole)
{
    refuse(board0, item_hard_type);
    EXPECT_EQ(ask_role_of_board(-1),
              failure("Not succeed to get board hardtype,ret=0x2710.\n") +
                  failure("Drvboot get role of board not success for get hard type not success\n"));
    EXPECT_EQ(role, 99u);
    EXPECT_EQ(requests(), std::vector<std::string>{ask_type});
}

TEST_F(ClassifyTest, ANullRoleIsRefusedUnasked)
{
    EXPECT_EQ(during([] { EXPECT_EQ(MOX_GetRoleOfBoard(nullptr), 1); }), nothing());
    EXPECT_TRUE(operations().empty());
}

// ---- block time ------------------------------------------------------------------------------------------

TEST_F(ClassifyTest, BlockTimeKnowsOneIdentifier)
{
    EXPECT_EQ(during([] {
                  EXPECT_EQ(MOX_GetBlockTime(0x6010017), 0);
                  for (std::uint32_t id : {0u, 1u, 0x6010016u, 0x6010018u, 0x86010017u, 0xffffffffu})
                      EXPECT_EQ(MOX_GetBlockTime(id), 2);
              }),
              nothing());
    EXPECT_TRUE(operations().empty());
}

} // namespace
} // namespace test
