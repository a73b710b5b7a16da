// SPDX-License-Identifier: Apache-2.0
// The watchdog's operations: what goes to the board driver, what to the kernel's service, what is refused.
#include "reset/reset_test.hpp"

namespace test
{
namespace
{

using WatchdogTest = ResetTest;
using Lines = std::vector<std::string>;

// What the channel and the watchdog say of an item that the driver refuses.
Said refused(std::uint32_t item, std::uint32_t result)
{
    return failure(text("Not succeed to set /dev/board0 l2_type=0x%x, ret=0x%x.\n", item, result)) +
           failure(text("Not succeed to set pre rst reason,ret=0x%x.\n", result));
}

Said control_failed(std::uint32_t op, std::uint32_t result)
{
    return information(text("wdt ctrl operate 0x%x, ret:%u\n", op, result));
}

TEST_F(WatchdogTest, StartAndStopAreTheDrivers)
{
    EXPECT_EQ(during([&] {
                  EXPECT_EQ(WDT_Ctrl(0), 0u);
                  EXPECT_TRUE(board.watchdog().enabled);
                  EXPECT_EQ(WDT_Ctrl(1), 0u);
                  EXPECT_FALSE(board.watchdog().enabled);
              }),
              nothing());
    EXPECT_EQ(requests(), (Lines{"set /dev/board0 0x10002808 1", "set /dev/board0 0x10002808 0"}));
}

TEST_F(WatchdogTest, StartAndStopAreToldByTheirNames)
{
    EXPECT_EQ(during([] { EXPECT_EQ(MOX_WDTStart(), 0u); }),
              information("Drvboot enable WDG begin\n") + information("Drvboot enable WDG end\n"));
    EXPECT_EQ(during([] { EXPECT_EQ(MOX_WDTStop(), 0u); }),
              information("Drvboot stop WDG begin\n") + information("Drvboot stop WDG end\n"));
    EXPECT_EQ(requests(), (Lines{"set /dev/board0 0x10002808 1", "set /dev/board0 0x10002808 0"}));
}

TEST_F(WatchdogTest, ARefusedStartOrStopIsReportedWithTheChannelsResult)
{
    board.remove_item(board0, watchdog_enable);
    EXPECT_EQ(during([] { EXPECT_EQ(WDT_Ctrl(0), err_ioctl); }),
              refused(watchdog_enable, err_ioctl) + control_failed(0, err_ioctl));
    EXPECT_EQ(during([] { EXPECT_EQ(drvboot_impl_wdt_ctrl(1), err_ioctl); }),
              refused(watchdog_enable, err_ioctl));
    deny(board0, EACCES, 2);
    EXPECT_EQ(during([] { MOX_WDTStop(); }),
              all({information("Drvboot stop WDG begin\n"), refused(watchdog_enable, minus_one),
                   control_failed(1, minus_one), information("Drvboot stop WDG end\n")}));
    EXPECT_EQ(during([] { MOX_WDTStart(); }),
              all({information("Drvboot enable WDG begin\n"), refused(watchdog_enable, minus_one),
                   control_failed(0, minus_one), information("Drvboot enable WDG end\n")}));
}

TEST_F(WatchdogTest, ANextGenerationBoardIsClearedByTheDriver)
{
    for (auto clear :
         {+[] { return WDT_Ctrl(2); }, +[] { return drvboot_impl_wdt_ctrl(2); }, &MOX_WDTClear}) {
        forget_journal();
        EXPECT_EQ(during([&] { EXPECT_EQ(clear(), 0u); }), nothing());
        EXPECT_EQ(operations(), (Lines{"open /dev/board0", "get /dev/board0 0x8000001", "open /dev/board0",
                                       "set /dev/board0 0x1000280a 0"}));
    }
    EXPECT_TRUE(writes().empty());
    EXPECT_EQ(g_fd_wdt, -1);
    EXPECT_EQ(g_CLEAR_KERNEL_DOG, 0);
}

// There is no second way for such a board.
TEST_F(WatchdogTest, ARefusedClearOfANextGenerationBoardIsReported)
{
    board.remove_item(board0, watchdog_clear);
    EXPECT_EQ(during([] { EXPECT_EQ(MOX_WDTClear(), err_ioctl); }),
              refused(watchdog_clear, err_ioctl) + control_failed(2, err_ioctl));
    EXPECT_THAT(operations(), testing::Not(testing::Contains("open /proc/wdt")));
    EXPECT_EQ(g_CLEAR_DOG_ERROR, 0);
}

TEST_F(WatchdogTest, AllOtherBoardsAreClearedByTheService)
{
    for (std::uint32_t hard_type : {an_old_mpu, a_line_card, 0x90020759u}) {
        be(hard_type);
        forget_journal();
        EXPECT_EQ(WDT_Ctrl(2), 0u);
        EXPECT_THAT(requests(), testing::Contains("wdt clear /proc/wdt 0"));
        EXPECT_THAT(requests(), testing::Not(testing::Contains("set /dev/board0 0x1000280a 0")));
    }
}

TEST_F(WatchdogTest, ABoardThatCannotTellIsClearedByTheService)
{
    board.remove_item(board0, item_hard_type);
    EXPECT_EQ(during([] { EXPECT_EQ(WDT_Ctrl(2), 0u); }),
              all({failure("Not succeed to get board hardtype,ret=0x2710.\n"),
                   failure("Drvboot get board type unsuccessfully.\n"),
                   information("Drvboot clear dog first time\n")}));
    EXPECT_EQ(writes().size(), 3u);
}

TEST_F(WatchdogTest, UnknownOperationsAreRefused)
{
    EXPECT_EQ(during([] { EXPECT_EQ(WDT_Ctrl(3), minus_one); }),
              failure("Drvboot found unknown WDG operations 0x3\n") +
                  information("wdt ctrl operate 0x3, ret:4294967295\n"));
    for (std::uint32_t op : {3u, 9u, 0xabcd1234u, minus_one})
        EXPECT_EQ(during([&] { EXPECT_EQ(drvboot_impl_wdt_ctrl(op), minus_one); }),
                  failure(text("Drvboot found unknown WDG operations 0x%x\n", op)));
    EXPECT_TRUE(operations().empty());
}

} // namespace
} // namespace test
