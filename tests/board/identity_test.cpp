// SPDX-License-Identifier: Apache-2.0
// Whether this board is an MPU, and who sits in which slot.
#include "support/board_test.hpp"

#include "board/hard_type_lists.hpp"

namespace test
{
namespace
{

constexpr std::uint32_t present_item = 0x10002202;
const std::string ask_type = "get /dev/board0 0x8000001";

class IdentityTest : public BoardTest
{
};

TEST_F(IdentityTest, AnMpuIsOne)
{
    for (std::uint32_t hard_type : mpu_boards) {
        be(hard_type);
        EXPECT_EQ(drvboot_impl_is_mpu_brd(), 1u) << "hard type 0x" << std::hex << hard_type;
    }
    EXPECT_EQ(requests().size(), mpu_boards.size());
}

TEST_F(IdentityTest, AnyOtherBoardIsNoMpuAndNothingIsSaid)
{
    for (std::uint32_t hard_type : lpu_boards) {
        be(hard_type);
        EXPECT_EQ(during([&] { EXPECT_EQ(drvboot_impl_is_mpu_brd(), 0u); }), nothing());
    }
    for (std::uint32_t hard_type : {0u, 1u, 0x90000869u, 0x10000a40u, 0xffffffffu}) {
        be(hard_type);
        EXPECT_EQ(drvboot_impl_is_mpu_brd(), 0u) << "hard type 0x" << std::hex << hard_type;
    }
}

TEST_F(IdentityTest, ABoardThatCannotTellCountsAsAnMpu)
{
    be(a_line_card);
    deny(board0, EACCES);
    EXPECT_EQ(during([&] { EXPECT_EQ(drvboot_impl_is_mpu_brd(), 1u); }),
              failure("Not succeed to get board hardtype,ret=0xffffffff.\n") +
                  failure("[DRVBOOT MPU]Unable to get hard type\n"));
    EXPECT_EQ(drvboot_impl_is_mpu_brd(), 0u); // and it is asked anew each time
}

TEST_F(IdentityTest, PresenceIsAskedOfTheSlotDevice)
{
    for (std::uint32_t slot : {1u, 9u, 10u, 31u, 32u}) {
        std::string device = text("/dev/slot%u", slot);
        std::uint32_t present = 99;
        board.set_item(device, present_item, slot * 3);
        forget_journal();
        EXPECT_EQ(during([&] { EXPECT_EQ(drvboot_impl_get_brd_present(slot, &present), 0u); }), nothing());
        EXPECT_EQ(present, slot * 3);
        EXPECT_EQ(requests(),
                  (std::vector<std::string>{ask_type, text("get %s 0x10002202", device.c_str())}));
    }
}

TEST_F(IdentityTest, ASlotOutsideTheChassisIsRefusedOnEveryBoardUnasked)
{
    std::uint32_t present = 99;
    for (std::uint32_t hard_type : {an_mpu, a_line_card})
        for (std::uint32_t slot : {0u, 33u, 0x80000001u, 0xffffffffu}) {
            be(hard_type);
            EXPECT_EQ(during([&] { EXPECT_EQ(drvboot_impl_get_brd_present(slot, &present), minus_one); }),
                      failure(text("Drvboot get board present state not success for slot id %u is invalid\n",
                                   slot)));
        }
    EXPECT_EQ(present, 99u);
    EXPECT_TRUE(operations().empty());
}

TEST_F(IdentityTest, OnlyAnMpuKnowsWhoIsPresent)
{
    std::uint32_t present = 99;
    be(a_line_card);
    EXPECT_EQ(during([&] { EXPECT_EQ(drvboot_impl_get_brd_present(3, &present), minus_one); }), nothing());
    EXPECT_EQ(present, 99u);
    EXPECT_EQ(requests(), std::vector<std::string>{ask_type});
}

TEST_F(IdentityTest, AFailedPresenceQueryIsSilent)
{
    std::uint32_t present = 99;
    board.set_item("/dev/slot4", present_item, 1);
    refuse("/dev/slot4", present_item);
    EXPECT_EQ(during([&] { EXPECT_EQ(drvboot_impl_get_brd_present(4, &present), minus_one); }), nothing());
    deny("/dev/slot4", ENODEV);
    EXPECT_EQ(during([&] { EXPECT_EQ(drvboot_impl_get_brd_present(4, &present), minus_one); }), nothing());
    EXPECT_EQ(present, 99u);
}

TEST_F(IdentityTest, PresenceOfABoardThatCannotTellItsTypeIsAsked)
{
    std::uint32_t present = 99;
    board.set_item("/dev/slot32", present_item, 1);
    refuse(board0, item_hard_type);
    EXPECT_EQ(during([&] { EXPECT_EQ(drvboot_impl_get_brd_present(32, &present), 0u); }),
              failure("Not succeed to get board hardtype,ret=0x2710.\n") +
                  failure("[DRVBOOT MPU]Unable to get hard type\n"));
    EXPECT_EQ(present, 1u);
}

TEST_F(IdentityTest, PresenceWithoutAnOutputIsAFailure)
{
    during([&] { EXPECT_EQ(drvboot_impl_get_brd_present(3, nullptr), minus_one); });
    EXPECT_THAT(requests(), testing::Not(testing::Contains("get /dev/slot3 0x10002202")));
}

} // namespace
} // namespace test
