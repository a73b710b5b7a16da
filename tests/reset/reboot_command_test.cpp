// SPDX-License-Identifier: Apache-2.0
// The last step of a reboot: the command, run by this process or by the root proxy, and the wait for the end.
#include "reset/never_returns.hpp"
#include "reset/reset_test.hpp"

#include <csignal>

namespace test
{
namespace
{

class RebootCommandTest : public ResetTest
{
  protected:
    Said reboot()
    {
        return during([] { until_asleep(drvboot_reboot); });
    }
    static void need_proxy(int answer)
    {
        forget_plans();
        fail_libc("execv", EPERM, 0, 1000);
        answer_platform("IsNeedRootProxy", answer);
    }
};

const std::vector<std::string> watchdog_first = {"get /dev/board0 0x8000001", "set /dev/board0 0x1000280a 0",
                                                 "set /dev/board0 0x10002808 1"};

TEST_F(RebootCommandTest, IsRunInPlaceOfThisProcess)
{
    for (int answer : {0, 2, -1}) {
        need_proxy(answer);
        forget_journal();
        forget_calls();
        EXPECT_EQ(reboot(), failure(text("Drvboot execute reboot unsuccess for execv not ok(%d)\n", EPERM)));
        std::vector<std::string> expected = watchdog_first;
        expected.insert(expected.end(), {"execv /sbin/reboot", "sleep"});
        EXPECT_EQ(history(), expected);
    }
}

TEST_F(RebootCommandTest, IsRunByTheProxyWhereItMust)
{
    need_proxy(1);
    answer_platform("RootProxyExecCmd", 0);
    EXPECT_EQ(reboot(), nothing());
    std::vector<std::string> expected = watchdog_first;
    expected.emplace_back("sleep");
    EXPECT_EQ(history(), expected);
}

TEST_F(RebootCommandTest, IsNotTriedDirectlyWhenTheProxyFails)
{
    for (int result : {1, -1, 127}) {
        need_proxy(1);
        forget_calls();
        answer_platform("RootProxyExecCmd", result);
        EXPECT_EQ(reboot(), failure("[drv_boot] reboot by proxy unsuccessfully.\n\n"));
        EXPECT_TRUE(calls("execv").empty());
    }
}

TEST_F(RebootCommandTest, TheWaitHasNoEnd)
{
    EXPECT_EQ(during([] { until_asleep(drvboot_loop_forever, 50); }), nothing());
    EXPECT_EQ(calls().size(), calls("sleep").size());
}

// ---- signals ---------------------------------------------------------------------------------------------

// Whether all signals that can be blocked are, or none is.
void expect_blocked(bool blocked)
{
    sigset_t now;
    sigprocmask(SIG_BLOCK, nullptr, &now);
    for (int signal = 1; signal < 32; ++signal) {
        if (signal != SIGKILL && signal != SIGSTOP) {
            EXPECT_EQ(sigismember(&now, signal), blocked ? 1 : 0) << signal;
        }
    }
    EXPECT_EQ(sigismember(&now, SIGRTMIN), blocked ? 1 : 0);
    // An emulator keeps the last real-time signals to itself.
    EXPECT_EQ(sigismember(&now, SIGRTMIN + 8), blocked ? 1 : 0);
}

TEST_F(RebootCommandTest, AllSignalsAreBlockedAndUnblocked)
{
    for (int how : {SIG_BLOCK, SIG_SETMASK}) {
        forget_calls();
        EXPECT_EQ(drvboot_sigprocmask_allsigs(how), 0);
        expect_blocked(true);
        ASSERT_EQ(calls().size(), 1u);
        EXPECT_EQ(calls("sigprocmask").at(0).size, static_cast<std::size_t>(how));
        EXPECT_EQ(drvboot_sigprocmask_allsigs(SIG_UNBLOCK), 0);
        expect_blocked(false);
    }
    errno = 0;
    EXPECT_EQ(drvboot_sigprocmask_allsigs(77), -1);
    EXPECT_EQ(errno, EINVAL);
    expect_blocked(false);
}

TEST_F(RebootCommandTest, TheResultIsTheKernels)
{
    answer_libc("sigprocmask", -5);
    EXPECT_EQ(drvboot_sigprocmask_allsigs(SIG_BLOCK), -5);
    expect_blocked(false);
}

} // namespace
} // namespace test
