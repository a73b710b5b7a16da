// SPDX-License-Identifier: Apache-2.0
// Many threads asking the board at once: each gets the answer to its own question.
#include "support/board_test.hpp"

#include <atomic>
#include <thread>

namespace test
{
namespace
{

constexpr unsigned rounds = 60;

class BoardThreadsTest : public BoardTest
{
  protected:
    // Runs every question in a thread of its own, many times; a question tells whether its answer was right.
    static unsigned wrong_answers(const std::vector<std::function<bool()>> &questions)
    {
        std::atomic<std::size_t> waiting = questions.size();
        std::atomic<unsigned> wrong = 0;
        std::vector<std::thread> threads;
        threads.reserve(questions.size());
        for (const auto &question : questions)
            threads.emplace_back([&] {
                --waiting;
                while (waiting > 0)
                    std::this_thread::yield();
                for (unsigned round = 0; round < rounds; ++round)
                    wrong += question() ? 0 : 1;
            });
        for (std::thread &thread : threads)
            thread.join();
        return wrong;
    }
};

template <typename Getter>
std::function<bool()> stores(Getter getter, std::uint32_t result, std::uint32_t expected)
{
    return [=] {
        std::uint32_t value = ~expected;
        return static_cast<std::uint32_t>(getter(&value)) == result && value == expected;
    };
}

TEST_F(BoardThreadsTest, DifferentItemsDoNotMix)
{
    board.set_item(board0, 0x10002987, 3);
    board.set_item(board0, 0x10002980, 0);
    board.set_item(board0, 0x10002982, 1);
    board.set_item(board0, 0x10002205, 55);
    board.set_item(board0, 0x10002801, 10);
    board.set_item(board0, 0x10003044, 77);
    board.set_item(board0, 0x10004725, 5);
    board.set_item(chassis0, 0x8000001, 0x1234);
    board.set_item(chassis0, 0x10002400, 9);
    board.set_item("/dev/slot7", 0x10002202, 1);
    Said said = during([&] {
        EXPECT_EQ(wrong_answers({
                      stores(MOX_GetBoardHardType, 1, an_mpu),
                      stores(MOX_GetChassis_HardType, 0, 0x1234),
                      stores(MOX_GetChassis_PcbVerson, 0, 9),
                      stores(MOX_GetSlaveBoardRegStatus, 0, 77),
                      stores(MOX_GetBoardHardActiveState, 0, 1),
                      stores(MOX_GetBoardBackupState, 0, 0),
                      stores(drvboot_impl_pre_rstmode, 0, 5),
                      stores(MOX_GetRoleOfBoard, 0, 1),
                      [] { return MOX_GetBoardRole() == 3; },
                      [] { return MOX_BoardIsMMB() == 1; },
                      [] { return MOX_BoardStatusIsActive() == 0; },
                      [] { return MOX_GetLogicHaStatus() == 55; },
                      [] { return GetCpuIdFromLpu() == 10; },
                      [] { return MOX_GetOsType() == 6; },
                      [] {
                          std::uint32_t present = 0;
                          return drvboot_impl_get_brd_present(7, &present) == 0 && present == 1;
                      },
                  }),
                  0u);
    });
    // The role item is missing on this board, and each time the role of the board is asked it is said once.
    std::vector<std::string> expected(rounds, "\r\nFailed to get board role,ret=0x2710.\n");
    EXPECT_EQ(said.syslog, expected);
}

TEST_F(BoardThreadsTest, HardInformationOfSeveralThreadsDoesNotMix)
{
    for (std::uint32_t item : {0x1000280eu, 0x10002200u, 0x100029b4u})
        board.set_item(board0, item, item);
    board.set_item(board0, 0x10002800, 12);
    board.set_item("/dev/slot12", 0x10002636, 0xcafe);
    auto whole = [] {
        MoxHardInfo info = {};
        return MOX_GetHard_Info(&info) == 0 && info.slot == 12 && info.hard_type == an_mpu &&
               info.item_29b4 == 0x100029b4;
    };
    g_idebug_print_flag =
        0; // cleared once by the first success in a process, which is not this test's matter
    auto logic_id = stores(MOX_GetSelfEncapLogicId, 0, 0xcafe);
    EXPECT_EQ(wrong_answers({whole, whole, whole, logic_id, logic_id}), 0u);
    EXPECT_EQ(blocks_held(), 0u);
}

TEST_F(BoardThreadsTest, SettersReachTheirOwnItems)
{
    for (std::uint32_t item : {0x10002987u, 0x10002858u, 0x1000474bu, 0x1000299du, 0x1000221eu, 0x10002982u})
        board.set_item(board0, item, 0x77);
    EXPECT_EQ(wrong_answers({
                  [] { return MOX_SetBoardRole(2) == 0; },
                  [] { return MOX_SetRoleOfBoard(4) == 0; },
                  [] { return MOX_SetBackupStatetoDrv(1) == 0; },
                  [] { return MOX_GetM2SPID(6) == 0; },
                  [] { return MOX_SetBoardXcsActiveState(0) == 0; },
                  [] { return drvboot_impl_set_brd_hard_active_state(1) == 0; },
              }),
              0u);
    EXPECT_EQ(board.item(board0, 0x10002987), 2u);
    EXPECT_EQ(board.item(board0, 0x10002858), 4u);
    EXPECT_EQ(board.item(board0, 0x1000474b), 1u);
    EXPECT_EQ(board.item(board0, 0x1000299d), 6u);
    EXPECT_EQ(board.item(board0, 0x1000221e), 1u);
    EXPECT_EQ(board.item(board0, 0x10002982), 1u);
}

TEST_F(BoardThreadsTest, TheTimeBaseRunsOnForEachOfThem)
{
    auto runs_on = [] {
        std::uint64_t first = drvboot_get_tb();
        return first != 0 && drvboot_get_tb() >= first;
    };
    EXPECT_EQ(wrong_answers({runs_on, runs_on, runs_on, runs_on}), 0u);
}

} // namespace
} // namespace test
