// SPDX-License-Identifier: Apache-2.0
// Hardware faults of the peer: the halves, the last value, the lines after a failure.
#include "support/board_test.hpp"

namespace test
{
namespace
{

constexpr std::uint32_t hard_bad_item = 0x100030ad;
constexpr std::uint32_t registration_item = 0x10003044;

class PeerTest : public BoardTest
{
  protected:
    std::uint32_t status = 99;
    Said ask_for(std::uint32_t raw)
    {
        board.set_item(board0, hard_bad_item, raw);
        return during([&] { EXPECT_EQ(Drv_GetPeerBoardHardBadStatus(&status), 0u); });
    }
};

TEST_F(PeerTest, ThePeersHalfIsTheUpperOne)
{
    EXPECT_EQ(ask_for(0x00030001),
              information("Get hard status =  0x30001\n") + information("Get peer hard status =  0x3\n"));
    EXPECT_EQ(status, 3u);
}

TEST_F(PeerTest, BothNamesShareTheLastValue)
{
    ask_for(0x00010000);
    EXPECT_EQ(during([&] { EXPECT_EQ(drvboot_impl_get_peerbrd_hardbad_status(&status), 0u); }),
              information("Get peer hard status =  0x1\n"));
    EXPECT_EQ(requests(),
              (std::vector<std::string>{"get /dev/board0 0x100030ad", "get /dev/board0 0x100030ad"}));
}

TEST_F(PeerTest, AFailureStoresZeroAndIsFollowedByTheStateLines)
{
    ask_for(0x00040000);
    refuse(board0, hard_bad_item);
    EXPECT_EQ(during([&] { EXPECT_EQ(Drv_GetPeerBoardHardBadStatus(&status), err_ioctl); }),
              failure("Drvboot get board hardbad status not success, excute cmd return 0x2710\n") +
                  information("Get hard status =  0x0\n") + information("Get peer hard status =  0x0\n"));
    EXPECT_EQ(status, 0u);
}

TEST_F(PeerTest, AStateWithoutAnOutputIsAFailure)
{
    EXPECT_EQ(during([&] {
                  EXPECT_EQ(Drv_GetPeerBoardHardBadStatus(nullptr), minus_one);
                  EXPECT_EQ(drvboot_impl_get_peerbrd_hardbad_status(nullptr), minus_one);
              }),
              nothing());
}

TEST_F(PeerTest, ARegistrationWithoutAnOutputIsAFailureThatSaysSo)
{
    board.set_item(board0, registration_item, 1);
    EXPECT_EQ(during([&] { EXPECT_EQ(MOX_GetSlaveBoardRegStatus(nullptr), minus_one); }),
              failure("Get tlv: /dev/board0,l2_type=0x10003044 input arg is null\n") +
                  failure("Drvboot get slave board reg status not success, excute cmd return 0xffffffff\n"));
    EXPECT_TRUE(operations().empty());
}

} // namespace
} // namespace test
