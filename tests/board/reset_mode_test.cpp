// SPDX-License-Identifier: Apache-2.0
// Reset modes: the constant answer, and the extra copy of a failure on the console.
#include "support/board_test.hpp"

namespace test
{
namespace
{

constexpr std::uint32_t mode_item = 0x10004723;
constexpr std::uint32_t pre_mode_item = 0x10004725;
constexpr std::uint32_t soft_reset_item = 0x1100aaaa;

class ResetModeTest : public BoardTest
{
  protected:
    std::uint32_t mode = 99;
};

TEST_F(ResetModeTest, TheModeIsAlwaysTwo)
{
    for (std::uint32_t value : {0u, 1u, 2u, 3u, minus_one}) {
        board.set_item(board0, mode_item, value);
        mode = 99;
        EXPECT_EQ(during([&] { EXPECT_EQ(MOX_GetResetMode(&mode), 0u); }), nothing());
        EXPECT_EQ(mode, 2u);
    }
}

// The failure's line ends twice; its copy, which goes to the system log and both console streams once more,
// ends once.
TEST_F(ResetModeTest, AFailedModeIsToldThreeTimes)
{
    Said said = during([&] { EXPECT_EQ(MOX_GetResetMode(&mode), minus_one); });
    EXPECT_EQ(said.trace,
              (std::vector<TraceLine>{{0, 4, "Not succeed to get board rst mode, ret is 0x2710.\r\n\n"}}));
    EXPECT_EQ(said.syslog,
              (std::vector<std::string>{"Not succeed to get board rst mode, ret is 0x2710.\r\n\n",
                                        "Not succeed to get board rst mode, ret is 0x2710.\r\n"}));
    EXPECT_EQ(said.err, "\rNot succeed to get board rst mode, ret is 0x2710.\r\n\n\n"
                        "\rNot succeed to get board rst mode, ret is 0x2710.\r\n\n");
    EXPECT_EQ(said.out, "[boot_info]\rNot succeed to get board rst mode, ret is 0x2710.\r\n\n\n"
                        "[boot_info]\rNot succeed to get board rst mode, ret is 0x2710.\r\n\n");
    EXPECT_EQ(mode, 99u);
}

TEST_F(ResetModeTest, ThePreResetCopyHasNoLineEnd)
{
    EXPECT_EQ(during([&] { EXPECT_EQ(drvboot_impl_pre_rstmode(&mode), minus_one); }),
              failure("[PRRESET]Not succeed to get board pre rst mode, ret is 0x2710.\n") +
                  message(2, "[PRRESET]Not succeed to get board pre rst mode, ret is 0x2710."));
    EXPECT_EQ(mode, 99u);
}

TEST_F(ResetModeTest, ThePreResetModeIsTheDrivers)
{
    board.set_item(board0, pre_mode_item, 6);
    EXPECT_EQ(during([&] { EXPECT_EQ(drvboot_impl_pre_rstmode(&mode), 0u); }), nothing());
    EXPECT_EQ(mode, 6u);
}

TEST_F(ResetModeTest, ASystemThatCannotTellSupportsNoSoftReset)
{
    EXPECT_EQ(during([&] { EXPECT_EQ(drvboot_impl_is_system_support_softrst(), 0u); }),
              failure("Not succeed to get softrst supported status, ret is 0x2710.\r\n\n") +
                  message(2, "Not succeed to get softrst supported status, ret is 0x2710.\r\n"));
    board.set_item(board0, soft_reset_item, 0x80000000);
    EXPECT_EQ(drvboot_impl_is_system_support_softrst(), 1u);
}

TEST_F(ResetModeTest, AModeWithoutAnOutputIsAFailure)
{
    EXPECT_EQ(during([&] { EXPECT_EQ(MOX_GetResetMode(nullptr), minus_one); }), nothing());
    during([&] { EXPECT_EQ(drvboot_impl_pre_rstmode(nullptr), minus_one); });
    EXPECT_TRUE(operations().empty());
}

} // namespace
} // namespace test
