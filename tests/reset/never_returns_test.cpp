// SPDX-License-Identifier: Apache-2.0
// What does not come back, in a process of its own and watched from outside: it goes on sleeping, a second at
// a time, until somebody ends it.
#include "reset/reset_test.hpp"

#include <csignal>
#include <sys/wait.h>
#include <unistd.h>

namespace
{

int told_to = -1; // the pipe to the watching process

// What runs when nothing else is left to do: tells the watching process, and does not wait.
unsigned tell(unsigned seconds)
{
    const char round = seconds == 1 ? 's' : '?';
    return write(told_to, &round, 1) == 1 ? 0 : seconds;
}

} // namespace

extern "C" unsigned sleep(unsigned seconds)
{
    return tell(seconds);
}

namespace test
{
namespace
{

class NeverReturnsTest : public ResetTest
{
  protected:
    // Runs the call in another process. True when that sleeps round after round and has to be ended.
    static bool never_returns(const std::function<void()> &call)
    {
        int ends[2];
        EXPECT_EQ(pipe(ends), 0);
        const pid_t child = fork();
        if (child == 0) {
            close(ends[0]);
            told_to = ends[1];
            call();
            _exit(0);
        }
        close(ends[1]);
        int rounds = 0;
        for (char round = 's'; rounds < 100 && round == 's' && read(ends[0], &round, 1) == 1;)
            rounds += round == 's' ? 1 : 0;
        kill(child, SIGKILL);
        int status = 0;
        EXPECT_EQ(waitpid(child, &status, 0), child);
        close(ends[0]);
        return rounds == 100 && WIFSIGNALED(status) && WTERMSIG(status) == SIGKILL;
    }
};

TEST_F(NeverReturnsTest, TheLoopGoesOnForEver)
{
    EXPECT_TRUE(never_returns(drvboot_loop_forever));
}

TEST_F(NeverReturnsTest, ARebootWhoseCommandFailsWaitsForTheWatchdog)
{
    fail_libc("execv", ENOENT);
    EXPECT_TRUE(never_returns([] { MOX_RebootOS(5, &a_date); }));
}

TEST_F(NeverReturnsTest, ARebootThroughTheProxyWaitsForTheBoardToGoDown)
{
    answer_platform("IsNeedRootProxy", 1);
    answer_platform("RootProxyExecCmd", 0);
    EXPECT_TRUE(never_returns([] { MOX_RebootOS(5, &a_date); }));
}

TEST_F(NeverReturnsTest, ASoftRebootDoesNotComeBackEither)
{
    fail_libc("execv", ENOENT);
    EXPECT_TRUE(never_returns([] { MOX_SoftRebootOS(5, &a_date); }));
}

TEST_F(NeverReturnsTest, AFastRebootComesBack)
{
    EXPECT_FALSE(never_returns([] { MOX_RebootOS(0, nullptr); }));
}

} // namespace
} // namespace test
