// SPDX-License-Identifier: Apache-2.0
// Clearing the watchdog through the kernel's service: the taking over, the usual path, and the latch that a
// failure leaves. All of it is kept by the process, so each test needs one of its own.
#include "reset/reset_test.hpp"

#include <fcntl.h>

namespace test
{
namespace
{

using Lines = std::vector<std::string>;

const std::string clear_request = "wdt clear /proc/wdt 0";
const std::string stop_request = "wdt stop kernel feeder /proc/wdt 0";
const std::string threshold_request = "wdt set threshold /proc/wdt 1";

const Said first_time = information("Drvboot clear dog first time\n");

Said gave_up(int error)
{
    return failure(text("Drvboot wdt clr dog no success errno(%d). \n", error));
}

class WatchdogServiceTest : public ResetTest
{
  protected:
    WatchdogServiceTest()
    {
        be(an_old_mpu);
    }
    // The first call fails, saying this; every later one fails without a word and without a system call.
    void expect_broken(const Said &said, const Lines &asked, std::uint16_t taken_over = 0)
    {
        forget_journal();
        EXPECT_EQ(during([] { EXPECT_EQ(WDT_Clear_Dog(), minus_one); }), said);
        EXPECT_EQ(requests(), asked);
        EXPECT_EQ(g_fd_wdt, -1);
        EXPECT_EQ(g_CLEAR_DOG_ERROR, 1);
        EXPECT_EQ(g_CLEAR_KERNEL_DOG, taken_over);
        EXPECT_EQ(calls("open").size(), calls("close").size());
        forget_calls();
        EXPECT_EQ(during([] {
                      EXPECT_EQ(WDT_Clear_Dog(), minus_one);
                      EXPECT_EQ(drvboot_impl_wdt_clr_dog(), minus_one);
                  }),
                  nothing());
        EXPECT_TRUE(calls().empty());
    }
};

TEST_F(WatchdogServiceTest, TheFirstClearTakesTheFeedingOver)
{
    EXPECT_EQ(g_fd_wdt, -1);
    EXPECT_EQ(during([] { EXPECT_EQ(WDT_Clear_Dog(), 0u); }), first_time);
    EXPECT_EQ(operations(), (Lines{"open /proc/wdt", clear_request, stop_request, threshold_request}));
    EXPECT_EQ(writes(), (std::vector<std::size_t>{8, 8, 8}));
    EXPECT_EQ(calls("open").at(0).size & (O_ACCMODE | O_CREAT | O_TRUNC | O_NONBLOCK), std::size_t{O_WRONLY});
    EXPECT_GE(g_fd_wdt, 0);
    EXPECT_EQ(g_CLEAR_KERNEL_DOG, 1);
    EXPECT_EQ(g_CLEAR_DOG_ERROR, 0);
    EXPECT_FALSE(board.watchdog().kernel_feeder);
    EXPECT_EQ(board.watchdog().threshold, 1u);
}

TEST_F(WatchdogServiceTest, LaterClearsAreOneWriteEach)
{
    ASSERT_EQ(WDT_Clear_Dog(), 0u);
    const int fd = g_fd_wdt;
    forget_journal();
    forget_calls();
    EXPECT_EQ(during([] {
                  EXPECT_EQ(WDT_Clear_Dog(), 0u);
                  EXPECT_EQ(drvboot_impl_wdt_clr_dog(), 0u);
              }),
              nothing());
    EXPECT_EQ(operations(), (Lines{clear_request, clear_request}));
    ASSERT_EQ(calls().size(), 2u) << "nothing but the writes";
    for (const Call &call : calls())
        EXPECT_EQ(call, (Call{"write", "", fd, 8, 0}));
    EXPECT_EQ(g_fd_wdt, fd);
}

TEST_F(WatchdogServiceTest, TheOperationIsTheSameClear)
{
    EXPECT_EQ(WDT_Ctrl(2), 0u);
    EXPECT_EQ(requests(),
              (Lines{"get /dev/board0 0x8000001", clear_request, stop_request, threshold_request}));
    forget_journal();
    EXPECT_EQ(MOX_WDTClear(), 0u);
    EXPECT_EQ(requests(), (Lines{"get /dev/board0 0x8000001", clear_request}));
}

TEST_F(WatchdogServiceTest, AKernelWithoutAFeederIsTakenOverAsWell)
{
    spoil_watchdog(EINVAL, 1);
    EXPECT_EQ(during([] { EXPECT_EQ(WDT_Clear_Dog(), 0u); }), first_time);
    EXPECT_EQ(requests(), (Lines{clear_request, stop_request, threshold_request}));
    EXPECT_EQ(g_CLEAR_KERNEL_DOG, 1);
    EXPECT_EQ(g_CLEAR_DOG_ERROR, 0);
}

TEST_F(WatchdogServiceTest, AServiceThatDoesNotOpenIsNeverTriedAgain)
{
    deny(watchdog_service, ENOENT);
    EXPECT_EQ(during([] { EXPECT_EQ(WDT_Clear_Dog(), minus_one); }),
              failure("Drvboot clear dog not success, fd -1\n") + gave_up(ENOENT));
    EXPECT_EQ(operations(), Lines{"open /proc/wdt"});
    EXPECT_EQ(g_CLEAR_DOG_ERROR, 1);
    forget_calls();
    EXPECT_EQ(during([] { EXPECT_EQ(WDT_Clear_Dog(), minus_one); }), nothing());
    EXPECT_TRUE(calls().empty());
    EXPECT_EQ(during([] { EXPECT_EQ(WDT_Ctrl(2), minus_one); }),
              information("wdt ctrl operate 0x2, ret:4294967295\n"));
    EXPECT_TRUE(writes().empty());
}

TEST_F(WatchdogServiceTest, ACounterThatIsNotClearedAtFirstBreaksIt)
{
    spoil_watchdog(EIO);
    expect_broken(failure("Drvboot clear WDG counter not success.\n") + gave_up(EIO), {clear_request});
}

TEST_F(WatchdogServiceTest, ACounterThatIsNotClearedLaterBreaksIt)
{
    ASSERT_EQ(WDT_Clear_Dog(), 0u);
    spoil_watchdog(EINVAL); // accepted from the kernel's feeder only
    expect_broken(failure("Drvboot clear WDG counter not success.\n") + gave_up(EINVAL), {clear_request}, 1);
}

TEST_F(WatchdogServiceTest, AFeederThatDoesNotStopBreaksIt)
{
    spoil_watchdog(EPERM, 1);
    expect_broken(all({first_time, failure("Drvboot stop kernel WDG thread not success.\n"), gave_up(EPERM)}),
                  {clear_request, stop_request});
}

TEST_F(WatchdogServiceTest, AThresholdThatIsNotSetBreaksIt)
{
    spoil_watchdog(EINVAL, 2);
    expect_broken(all({first_time, failure("Drvboot set WDG threshold not success.\n"), gave_up(EINVAL)}),
                  {clear_request, stop_request, threshold_request});
}

TEST_F(WatchdogServiceTest, ABrokenServiceDoesNotKeepTheDriverFromItsPart)
{
    spoil_watchdog(EIO);
    ASSERT_EQ(WDT_Clear_Dog(), minus_one);
    EXPECT_EQ(WDT_Ctrl(0), 0u);
    EXPECT_TRUE(board.watchdog().enabled);
    EXPECT_EQ(WDT_Ctrl(1), 0u);
    EXPECT_FALSE(board.watchdog().enabled);
    be(an_mpu); // one that the driver clears
    forget_journal();
    EXPECT_EQ(during([] { EXPECT_EQ(WDT_Ctrl(2), 0u); }), nothing());
    EXPECT_EQ(requests(), (Lines{"get /dev/board0 0x8000001", "set /dev/board0 0x1000280a 0"}));
}

} // namespace
} // namespace test
